// Drawing the control tree: paint order, culling, the child origin, what RENDER puts back, the
// redraw cycle of RENDERWINDOW, repaint requests of nested nodes, and failures inside a render.
#include <tessel/tessel.h>

#include <gtest/gtest.h>

#include "TestSupport.h"
#include "controls/ControlScene.h"

using namespace tessel;

namespace {

using K = enm_UIControl;
constexpr uint32_t kRed = 0xFF0000, kGreen = 0x00FF00, kBlue = 0x0000FF, kWhite = 0xFFFFFF;

Variant rect(float x, float y, float w, float h) {
  auto r = make<cls_DrawRect>();
  r->MOVE(x, y, w, h);
  return Variant(r);
}

// A desktop-less root: a container without a body of its own would still paint one, so the root
// is a node with no kind, which paints nothing and only holds children.
Ref<cls_DrawControl> bareRoot(float w = 200, float h = 150) { return control(static_cast<K>(0), u"root", 0, 0, w, h); }

}  // namespace

TEST(ControlRender, ChildrenArePaintedFromTheBackSoPositionOneLiesOnTop) {
  Scene s;
  auto root = bareRoot();
  root->CHILDADD(swatch(u"1", u"#FF0000", 10, 10, 40));
  root->CHILDADD(swatch(u"2", u"#00FF00", 30, 10, 40));
  root->CHILDADD(swatch(u"3", u"#0000FF", 50, 10, 40));
  root->RENDER(s.surface);
  EXPECT_EQ(s.rgb(40, 30), kRed);    // 1 over 2
  EXPECT_EQ(s.rgb(60, 30), kGreen);  // 2 over 3
  EXPECT_EQ(s.rgb(80, 30), kBlue);
  EXPECT_EQ(s.rgb(150, 30), kWhite);
  // A node of no kind paints no body.
  EXPECT_EQ(s.rgb(150, 120), kWhite);
}

TEST(ControlRender, ChildrenLiveAtTheChildOriginAtEveryDepth) {
  Scene s;
  auto root = bareRoot();
  auto outer = root->CHILDADD(control(static_cast<K>(0), u"outer", 20, 30, 150, 100));
  outer->CHILDBOX()->MOVE(5, 6, 100, 80);  // a width: children start at its corner
  auto inner = outer->CHILDADD(control(static_cast<K>(0), u"inner", 10, 10, 80, 60));
  inner->CHILDADD(swatch(u"s", u"#FF0000", 1, 2, 10));
  root->RENDER(s.surface);
  // 20 + 5 + 10 + 1 = 36 across, 30 + 6 + 10 + 2 = 48 down.
  EXPECT_EQ(s.rgb(36, 48), kRed);
  EXPECT_EQ(s.rgb(45, 57), kRed);
  EXPECT_EQ(s.rgb(35, 48), kWhite);
  EXPECT_EQ(s.rgb(36, 47), kWhite);
}

TEST(ControlRender, OnlyNodesOverlappingTheRenderRectangleAreDrawnWithTheirChildren) {
  Scene s;
  auto root = bareRoot();
  root->CHILDADD(swatch(u"in", u"#FF0000", 0, 0, 20));
  root->CHILDADD(swatch(u"half", u"#00FF00", 50, 0, 20));  // overlaps the area, is not inside it
  root->CHILDADD(swatch(u"out", u"#0000FF", 100, 0, 20));
  // A parent outside the area hides a child that would lie inside it.
  auto away = root->CHILDADD(control(static_cast<K>(0), u"away", 120, 100, 20, 20));
  away->CHILDADD(swatch(u"under", u"#0000FF", -110, -90, 20));
  root->RENDER(s.surface, rect(0, 0, 60, 60));
  EXPECT_EQ(s.rgb(10, 10), kRed);
  EXPECT_EQ(s.rgb(65, 10), kGreen);  // drawn whole: no clip here
  EXPECT_EQ(s.rgb(110, 10), kWhite);
  EXPECT_EQ(s.rgb(15, 15), kRed);  // not the child of "away"
  // The rectangle may come in any form the rectangle factory takes.
  Scene t;
  root->RENDER(t.surface, Variant(u"(100,0,20,20)"));
  EXPECT_EQ(t.rgb(110, 10), kBlue);
  EXPECT_EQ(t.rgb(10, 10), kWhite);
}

TEST(ControlRender, TheRenderRectangleAndTheProjectionComeBack) {
  Scene s;
  auto root = control(K::ID_UIControl_Window, u"w", 13.25f, 7.5f, 150, 120);
  root->CHILDADD(control(K::ID_UIControl_Container, u"c", 3, 3, 100, 60))
      ->CHILDADD(control(K::ID_UIControl_Button, u"b", 2, 2, 50, 20));
  auto area = make<cls_DrawRect>();
  area->MOVE(0.1f, 0.3f, 199.7f, 149.9f);
  const std::string before = info(area);
  root->RENDER(s.surface, Variant(area));
  EXPECT_EQ(info(area), before);
  auto p = refCast<cls_DrawPoint>(s.surface->PROJECT(Variant(u"(40,50)")));
  EXPECT_EQ(p->X(), 40);
  EXPECT_EQ(p->Y(), 50);
}

TEST(ControlRender, AWindowSetsItsClientAreaOnEveryRender) {
  Scene s;
  auto w = control(K::ID_UIControl_Window, u"w", 10, 10, 120, 90);
  w->CHILDBOX()->MOVE(0, 0, 1, 1);
  w->RENDER(s.surface);
  EXPECT_EQ(info(w->CHILDBOX()), "(5,30)-(114,84)");
  auto c = control(K::ID_UIControl_Container, u"c", 10, 10, 120, 90);
  c->CHILDBOX()->MOVE(1, 2, 3, 4);
  c->RENDER(s.surface);
  EXPECT_EQ(info(c->CHILDBOX()), "(1,2)-(3,5)");  // another kind keeps the application's
}

TEST(ControlRender, ASurfaceThatIsNotReadyDrawsNothingAndAttachesNothing) {
  auto n = control(K::ID_UIControl_Button, u"b", 0, 0, 50, 20);
  n->RENDER(make<cls_DrawGraphics>());
  EXPECT_FALSE(n->attached());
  Scene s;
  n->RENDER(s.surface);
  EXPECT_EQ(n->attached().get(), s.surface.get());
  EXPECT_EQ(raisedNumber([&] { n->RENDER(nullptr); }), objectError(rt::ObjectNotSet));
}

// A change asks for its box; RENDERWINDOW draws exactly that, presents it and empties the area.
// The pixels equal those of a full render of the changed tree.
TEST(ControlRender, RenderWindowRedrawsThePendingAreaAsAFullRenderWould) {
  auto build = [] {
    auto desk = control(K::ID_UIControl_Desktop, u"d", 0, 0, 200, 150);
    auto w = desk->CHILDADD(control(K::ID_UIControl_Window, u"w", 20, 10, 160, 120));
    w->TEXT(u"Window");
    for (int i = 0; i < 3; ++i) {
      auto b = w->CHILDADD(control(K::ID_UIControl_Button, u"b", 10, 8 + 26.0f * i, 100, 22));
      b->TEXT(u"Button");
    }
    return desk;
  };
  Scene live, fresh;
  auto desk = build();
  desk->RENDER(live.surface);
  auto button = desk->CHILD(Variant(1))->CHILD(Variant(2));
  button->HOVER(true);
  button->TEXT(u"Lit");
  EXPECT_EQ(info(live.surface->REDRAWAREA()), "(35,74)-(134,95)");  // the button on the device
  desk->RENDERWINDOW(live.surface);
  EXPECT_EQ(live.surface->REDRAWAREA()->W(), 0);

  auto again = build();
  again->CHILD(Variant(1))->CHILD(Variant(2))->HOVER(true);
  again->CHILD(Variant(1))->CHILD(Variant(2))->TEXT(u"Lit");
  again->RENDER(fresh.surface);
  EXPECT_TRUE(live.same(fresh));

  // Nothing pending: nothing drawn.
  Scene idle;
  desk->RENDERWINDOW(idle.surface);
  EXPECT_EQ(idle.rgb(100, 75), kWhite);
}

// Through a window host's surface, whose projection lasts: a nested node asks for its box where
// it was drawn, also when the application changes it outside any render or pointer event.
TEST(ControlRender, ANestedNodeAsksForTheBoxWhereItWasDrawn) {
  mdl_Global::DRAW()->INIT();
  auto box = make<PictureBox>();
  box->ScaleMode(3);
  box->Move(0, 0, 300, 200);
  auto g = make<cls_DrawGraphics>();
  g->CONNECT(box);
  g->OFFSET(Variant(u"(10,20)"));
  auto desk = control(K::ID_UIControl_Desktop, u"d", 0, 0, 300, 200);
  auto w = desk->CHILDADD(control(K::ID_UIControl_Window, u"w", 40, 30, 200, 150));
  auto b = w->CHILDADD(control(K::ID_UIControl_Button, u"b", 7, 8, 60, 20));
  desk->RENDER(g);
  g->REDRAWAREA(nullptr);
  b->TEXT(u"Changed");
  // 10 + 40 + 5 + 7 = 62, 20 + 30 + 30 + 8 = 88.
  EXPECT_EQ(info(g->REDRAWAREA()), "(62,88)-(121,107)");
}

TEST(ControlRender, AFailingChildStopsTheRenderAndLeavesItsTraces) {
  Scene s;
  auto root = bareRoot();
  auto parent = root->CHILDADD(control(static_cast<K>(0), u"p", 30, 40, 100, 100));
  auto broken = parent->CHILDADD(control(K::ID_UIControl_Button, u"x", 0, 0, 10, 10));
  broken->BOX(nullptr);
  const Error e = raisedBy([&] { root->RENDER(s.surface); });
  EXPECT_EQ(e.number(), objectError(rt::ObjectNotSet));
  EXPECT_EQ(e.source(), "cls_DrawControl.RENDER");

  // Under RENDERWINDOW the area stays pending and the shifts stay on the projection.
  Scene t;
  t.surface->RENDERWINDOW(rect(0, 0, 50, 50));
  EXPECT_EQ(raisedBy([&] { root->RENDERWINDOW(t.surface); }).source(), "cls_DrawControl.RENDERWINDOW");
  EXPECT_EQ(t.surface->REDRAWAREA()->W(), 50);
  auto p = refCast<cls_DrawPoint>(t.surface->PROJECT(Variant(u"(30,40)")));
  EXPECT_EQ(p->X(), 0);
  EXPECT_EQ(p->Y(), 0);
}

// A node added under itself would never end its descent: error 5, and the node works again after.
TEST(ControlRender, ANodeUnderItselfFailsInsteadOfDescendingForever) {
  Scene s;
  auto root = bareRoot();
  auto inner = root->CHILDADD(control(K::ID_UIControl_Container, u"c", 10, 10, 50, 50));
  inner->CHILDADD(root);
  // Counted references cannot free a cycle, and no node can be taken out of it: kept reachable,
  // so that the leak check does not count it.
  static Ref<cls_DrawControl> cycle;
  cycle = root;
  EXPECT_EQ(raisedNumber([&] { root->RENDER(s.surface); }), objectError(rt::InvalidCall));
  EXPECT_EQ(raisedNumber([&] { root->EVENTHANDLER(enm_UIMouseEvent::ID_UIMouseEvent_Down, 0, 0, Variant(u"(20,20)")); }),
            objectError(rt::InvalidCall));
  // The same node twice side by side is no cycle.
  Scene t;
  auto twice = bareRoot();
  auto sw = swatch(u"s", u"#FF0000", 0, 0, 10);
  twice->CHILDADD(sw);
  twice->CHILDADD(sw);
  twice->RENDER(t.surface);
  EXPECT_EQ(t.rgb(5, 5), kRed);
}
