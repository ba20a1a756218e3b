// Pointer handling of the control tree, driven by sequences of EVENTHANDLER calls as a host sends
// them: press and release, hover, focus with the move to the front, a window dragged by its title
// strip, and the MOUSE events each node raises.
#include <tessel/tessel.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "TestSupport.h"
#include "controls/ControlScene.h"

using namespace tessel;

namespace {

using K = enm_UIControl;
using E = enm_UIMouseEvent;

// Every MOUSE of the nodes listened to, as "id:event@x,y".
struct Recorder {
  void listen(const Ref<cls_DrawControl>& n) {
    const std::string id = toUtf8(n->ID());
    connections.push_back(n->MOUSE.connect([this, id](E e, int32_t, int32_t, Ref<cls_DrawPoint> p) {
      log.push_back(id + ":" + std::to_string(static_cast<int>(e)) + "@" + toUtf8(Variant(p->X()).toString()) + "," +
                    toUtf8(Variant(p->Y()).toString()));
    }));
  }
  std::string take() {
    std::string all;
    for (auto& line : log) all += (all.empty() ? "" : " ") + line;
    log.clear();
    return all;
  }
  std::vector<std::string> log;
  std::vector<Connection> connections;
};

bool send(const Ref<cls_DrawControl>& root, E e, const char16_t* point) {
  return root->EVENTHANDLER(e, 1, 0, Variant(point));
}

}  // namespace

TEST(ControlPointer, APressOutsideTheRootIsNotTaken) {
  auto root = control(K::ID_UIControl_Container, u"root", 10, 10, 100, 100);
  auto b = root->CHILDADD(control(K::ID_UIControl_Button, u"b", -10, -10, 50, 50));
  Recorder r;
  r.listen(root);
  r.listen(b);
  EXPECT_FALSE(send(root, E::ID_UIMouseEvent_Down, u"(5,5)"));
  EXPECT_EQ(r.take(), "");
  EXPECT_FALSE(b->PRESSED());
}

TEST(ControlPointer, APressIsRecordedAlongThePathAndReleasedWhereverThePointerIs) {
  auto root = control(K::ID_UIControl_Container, u"root", 0, 0, 200, 100);
  auto b = root->CHILDADD(control(K::ID_UIControl_Button, u"b", 20, 20, 60, 30));
  Recorder r;
  r.listen(root);
  r.listen(b);
  EXPECT_TRUE(send(root, E::ID_UIMouseEvent_Down, u"(30,25)"));
  EXPECT_TRUE(b->PRESSED());
  EXPECT_TRUE(b->FOCUS());
  EXPECT_FALSE(root->PRESSED());  // a container cannot be pressed
  EXPECT_FALSE(root->FOCUS());    // nor focused
  // Without a surface the children get the point as it is.
  EXPECT_EQ(r.take(), "root:1@30,25 b:1@30,25");

  // Released far away: the pressed button still lets go and says so.
  EXPECT_FALSE(send(root, E::ID_UIMouseEvent_Up, u"(190,90)"));
  EXPECT_FALSE(b->PRESSED());
  EXPECT_EQ(r.take(), "root:2@190,90 b:2@190,90");
  // Once let go, a release elsewhere passes it by.
  send(root, E::ID_UIMouseEvent_Up, u"(190,90)");
  EXPECT_EQ(r.take(), "root:2@190,90");
}

TEST(ControlPointer, AMoveThatEntersAButtonLightsItAndOnlyTheFrontChildTracksHover) {
  auto root = control(K::ID_UIControl_Container, u"root", 0, 0, 200, 100);
  auto front = root->CHILDADD(control(K::ID_UIControl_Button, u"f", 10, 10, 50, 30));
  auto back = root->CHILDADD(control(K::ID_UIControl_Button, u"k", 100, 10, 50, 30));
  Recorder r;
  r.listen(front);
  r.listen(back);
  EXPECT_TRUE(send(root, E::ID_UIMouseEvent_Move, u"(20,20)"));
  EXPECT_TRUE(front->HOVER());
  EXPECT_EQ(r.take(), "f:3@20,20 f:5@20,20");  // In first, from the nested call
  send(root, E::ID_UIMouseEvent_Move, u"(120,20)");
  EXPECT_FALSE(front->HOVER());
  EXPECT_FALSE(back->HOVER());  // the front child took the Move
  EXPECT_EQ(r.take(), "f:4@120,20 f:5@120,20");
  // Hosts light the others with In and Out, which are not passed on.
  EXPECT_FALSE(back->EVENTHANDLER(E::ID_UIMouseEvent_In, 0, 0, Variant(u"(0,0)")));
  EXPECT_FALSE(back->HOVER());
  back->EVENTHANDLER(E::ID_UIMouseEvent_In, 0, 0, Variant(u"(120,20)"));
  EXPECT_TRUE(back->HOVER());
  back->EVENTHANDLER(E::ID_UIMouseEvent_Out, 0, 0, Variant(u"(120,20)"));
  EXPECT_FALSE(back->HOVER());
}

TEST(ControlPointer, FocusIsExclusiveAmongSiblingsAndBringsAWindowToTheFront) {
  auto desk = control(K::ID_UIControl_Desktop, u"d", 0, 0, 400, 300);
  auto a = desk->CHILDADD(control(K::ID_UIControl_Window, u"A", 0, 0, 200, 150));
  auto b = desk->CHILDADD(control(K::ID_UIControl_Window, u"B", 100, 100, 200, 150));
  // The overlap goes to the front window only.
  EXPECT_TRUE(send(desk, E::ID_UIMouseEvent_Down, u"(150,120)"));
  send(desk, E::ID_UIMouseEvent_Up, u"(150,120)");
  EXPECT_TRUE(a->FOCUS());
  EXPECT_FALSE(b->FOCUS());
  EXPECT_EQ(desk->CHILDFIND(Variant(a)), 1);
  // Inside B only: B takes the focus from A and comes to the front.
  send(desk, E::ID_UIMouseEvent_Down, u"(250,200)");
  EXPECT_TRUE(b->FOCUS());
  EXPECT_FALSE(a->FOCUS());
  EXPECT_EQ(desk->CHILDFIND(Variant(b)), 1);
  EXPECT_EQ(desk->CHILDFIND(Variant(a)), 2);
}

TEST(ControlPointer, AWindowIsDraggedByItsTitleStrip) {
  Scene s(400, 300);
  auto desk = control(K::ID_UIControl_Desktop, u"d", 0, 0, 400, 300);
  auto w = desk->CHILDADD(control(K::ID_UIControl_Window, u"w", 50, 100, 200, 150));
  desk->RENDER(s.surface);
  s.surface->REDRAWAREA(nullptr);
  // 31 below the top is the client area: no drag.
  send(desk, E::ID_UIMouseEvent_Down, u"(60,131)");
  send(desk, E::ID_UIMouseEvent_Move, u"(70.4,136.6)");
  send(desk, E::ID_UIMouseEvent_Up, u"(70.4,136.6)");
  EXPECT_EQ(info(w->BOX()), "(50,100)-(249,249)");
  // 30 below the top is the strip.
  send(desk, E::ID_UIMouseEvent_Down, u"(60,130)");
  s.surface->REDRAWAREA(nullptr);
  EXPECT_TRUE(send(desk, E::ID_UIMouseEvent_Move, u"(70.4,135.6)"));
  EXPECT_EQ(info(w->BOX()), "(60,106)-(259,255)");  // by (10, 6)
  // The old and the new place asked to be drawn again.
  EXPECT_EQ(info(s.surface->REDRAWAREA()), "(50,100)-(259,255)");
  send(desk, E::ID_UIMouseEvent_Up, u"(70,135)");
  send(desk, E::ID_UIMouseEvent_Move, u"(90,150)");
  EXPECT_EQ(info(w->BOX()), "(60,106)-(259,255)");
  // The tree drawn again shows the window where it went, and nothing where it was.
  desk->RENDERWINDOW(s.surface);
  Scene fresh(400, 300);
  desk->RENDER(fresh.surface);
  EXPECT_TRUE(s.same(fresh));
}

// The point a node is asked about is the point drawn there, at every depth of the tree.
TEST(ControlPointer, WhatIsHitIsWhatIsDrawnAtEveryDepth) {
  Scene s(300, 200);
  auto desk = control(K::ID_UIControl_Desktop, u"d", 0, 0, 300, 200);
  auto w = desk->CHILDADD(control(K::ID_UIControl_Window, u"w", 40, 20, 240, 170));
  auto c = w->CHILDADD(control(K::ID_UIControl_Container, u"c", 10, 10, 200, 110));
  c->CHILDBOX()->MOVE(4, 6, 180, 90);
  auto target = c->CHILDADD(swatch(u"t", u"#FF0000", 20, 30, 20));
  desk->RENDER(s.surface);
  // 40 + 5 + 10 + 4 + 20 = 79 across, 20 + 30 + 10 + 6 + 30 = 96 down.
  EXPECT_EQ(s.rgb(79, 96), 0xFF0000u);
  EXPECT_NE(s.rgb(78, 96), 0xFF0000u);
  EXPECT_NE(s.rgb(79, 95), 0xFF0000u);
  Recorder r;
  r.listen(target);
  send(desk, E::ID_UIMouseEvent_Down, u"(79,96)");
  EXPECT_TRUE(target->PRESSED());
  EXPECT_EQ(r.take(), "t:1@20,30");  // in its parent's child coordinates
  send(desk, E::ID_UIMouseEvent_Up, u"(79,96)");
  send(desk, E::ID_UIMouseEvent_Down, u"(78,96)");
  EXPECT_FALSE(target->PRESSED());
  // Dispatching leaves the projection as it was.
  auto p = refCast<cls_DrawPoint>(s.surface->PROJECT(Variant(u"(5,5)")));
  EXPECT_EQ(p->X(), 5);
}

TEST(ControlPointer, PointsComeInAnyFormAndBadOnesFail) {
  auto b = control(K::ID_UIControl_Button, u"b", 0, 0, 50, 20);
  EXPECT_TRUE(b->HITTEST(Variant(u"(10,10)")));
  EXPECT_TRUE(b->HITTEST(Variant(mdl_Global::DRAW()->POINT()->AUTO(Variant(49), 19))));
  EXPECT_FALSE(b->HITTEST(Variant(u"(50,10)")));
  EXPECT_TRUE(b->HITTEST(Variant(std::vector<Variant>{Variant(3), Variant(4)})));
  EXPECT_EQ(raisedNumber([&] { b->HITTEST(Variant(u"(1,2")); }), objectError(rt::TypeMismatch));
  EXPECT_EQ(raisedBy([&] { b->EVENTHANDLER(E::ID_UIMouseEvent_Down, 0, 0, Variant(Ref<Object>())); }).source(),
            "cls_DrawControl.EVENTHANDLER");
  EXPECT_FALSE(b->PRESSED());
}
