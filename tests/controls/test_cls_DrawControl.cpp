// The control node's data: its start, the setters' repaint requests, the behaviour table and its
// reset by SORT, and the children with their look-up and z-order.
#include <tessel/tessel.h>

#include <gtest/gtest.h>

#include <string>

#include "TestSupport.h"

using namespace tessel;

namespace {

using B = enm_UIControlBehaviour;

std::string info(const Ref<cls_DrawRect>& r) { return toUtf8(r->INFO()); }

Ref<cls_DrawControl> node(const char16_t* id, enm_UIControl sort = enm_UIControl::ID_UIControl_Button) {
  auto n = make<cls_DrawControl>();
  n->ID(id);
  n->SORT(sort);
  return n;
}

std::string order(const Ref<cls_DrawControl>& parent) {
  std::string ids;
  for (int32_t i = 1; i <= parent->CHILDREN(); ++i) ids += toUtf8(parent->CHILD(Variant(i))->ID());
  return ids;
}

// A surface on an image, attached as a render attaches it, whose pending area shows the requests.
struct Attached {
  Attached(const Ref<cls_DrawControl>& n) : surface(make<cls_DrawGraphics>()) {
    mdl_Global::DRAW()->INIT();
    surface->CONNECT(mdl_Global::DRAW()->Image()->CREATE(300, 300));
    n->attach(surface);
  }
  bool requested() {
    const bool pending = surface->REDRAWAREA()->W() != 0;
    surface->REDRAWAREA(nullptr);  // empty again on the next read
    return pending;
  }
  Ref<cls_DrawGraphics> surface;
};

}  // namespace

TEST(cls_DrawControl, ANewNodeHasNoKindAndTheDefaults) {
  auto n = make<cls_DrawControl>();
  EXPECT_EQ(static_cast<int>(n->SORT()), 0);
  for (int i = 0; i <= 20; ++i) EXPECT_FALSE(n->BEHAVIOUR(static_cast<B>(i))) << i;
  EXPECT_EQ(n->PADDING(), 4);
  EXPECT_TRUE(n->ENABLED());
  EXPECT_EQ(n->TEXT(), u"Control");
  EXPECT_EQ(n->TEXTALIGN(), enm_TextAlign::ID_TextAlign_CenterMiddle);
  EXPECT_EQ(info(n->BOX()), "(0,0)-(199,49)");
  EXPECT_EQ(n->CHILDREN(), 0);
  EXPECT_EQ(n->CHILDBOX()->W(), 0);
  EXPECT_FALSE(n->ICON());
  EXPECT_EQ(raisedNumber([&] { n->BEHAVIOUR(static_cast<B>(21)); }), objectError(rt::SubscriptOutOfRange));
  EXPECT_EQ(raisedBy([&] { n->BEHAVIOUR(static_cast<B>(-1), true); }).source(), "cls_DrawControl.BEHAVIOUR.LET");
}

TEST(cls_DrawControl, SortResetsTheBehaviourTable) {
  auto n = make<cls_DrawControl>();
  n->BEHAVIOUR(B::ID_UIControlBehaviour_CanPressed, true);
  n->BEHAVIOUR(static_cast<B>(20), true);
  n->SORT(enm_UIControl::ID_UIControl_Window);
  EXPECT_FALSE(n->BEHAVIOUR(B::ID_UIControlBehaviour_CanPressed));
  EXPECT_FALSE(n->BEHAVIOUR(static_cast<B>(20)));
  EXPECT_TRUE(n->BEHAVIOUR(B::ID_UIControlBehaviour_CanFocus));
  EXPECT_TRUE(n->BEHAVIOUR(B::ID_UIControlBehaviour_FocusToFront));
  n->SORT(enm_UIControl::ID_UIControl_Button);
  EXPECT_TRUE(n->BEHAVIOUR(B::ID_UIControlBehaviour_CanPressed));
  EXPECT_TRUE(n->BEHAVIOUR(B::ID_UIControlBehaviour_HoverEffect));
  EXPECT_FALSE(n->BEHAVIOUR(B::ID_UIControlBehaviour_FocusToFront));
  n->SORT(enm_UIControl::ID_UIControl_Container);
  for (int i = 0; i <= 20; ++i) EXPECT_FALSE(n->BEHAVIOUR(static_cast<B>(i))) << i;
}

TEST(cls_DrawControl, PressedAndHoverFollowTheBehaviours) {
  auto container = node(u"c", enm_UIControl::ID_UIControl_Container);
  container->PRESSED(true);
  EXPECT_FALSE(container->PRESSED());
  auto button = node(u"b");
  button->PRESSED(true);
  EXPECT_TRUE(button->PRESSED());

  auto window = node(u"w", enm_UIControl::ID_UIControl_Window);
  Attached onWindow(window), onButton(button);
  window->HOVER(true);
  EXPECT_TRUE(window->HOVER());
  EXPECT_FALSE(onWindow.requested());  // stored, not shown
  button->HOVER(true);
  EXPECT_TRUE(onButton.requested());
}

TEST(cls_DrawControl, ASetterAsksForARepaintOfTheProjectedBoxOnlyWhenTheValueChanges) {
  auto n = node(u"n");
  n->TEXT(u"Same");
  Attached a(n);
  n->BOX()->MOVE(10, 20, 30, 40);
  n->TEXT(u"Same");
  n->PADDING(4);
  n->ENABLED(true);
  EXPECT_FALSE(a.requested());
  n->TEXT(u"Other");
  EXPECT_EQ(info(a.surface->REDRAWAREA()), "(10,20)-(39,59)");
  a.requested();
  for (auto change : std::initializer_list<std::function<void()>>{
           [&] { n->ICONSIZE(16); }, [&] { n->ICONPOSITION(enm_UIIconPosition::ID_UIIconPosition_Top); },
           [&] { n->PADDING(8); }, [&] { n->FOCUS(true); }, [&] { n->ENABLED(false); },
           [&] { n->TEXTALIGN(enm_TextAlign::ID_TextAlign_LeftTop); }, [&] { n->PRESSED(true); },
           [&] { n->SORT(enm_UIControl::ID_UIControl_Window); }}) {
    change();
    EXPECT_TRUE(a.requested());
  }
  n->ID(u"quiet");
  n->BEHAVIOUR(B::ID_UIControlBehaviour_CanPressed, true);
  EXPECT_FALSE(a.requested());  // plain data: no repaint
}

TEST(cls_DrawControl, ChildrenAreFoundByIdentityIdOrPosition) {
  auto parent = node(u"p", enm_UIControl::ID_UIControl_Container);
  auto a = node(u"A"), b = node(u"B");
  EXPECT_EQ(parent->CHILDFIND(Variant(int32_t(1))), 0);
  EXPECT_EQ(parent->CHILDADD(a).get(), a.get());
  parent->CHILDADD(b);
  parent->CHILDADD(a);  // twice: listed twice
  EXPECT_EQ(parent->CHILDREN(), 3);
  EXPECT_EQ(order(parent), "ABA");

  EXPECT_EQ(parent->CHILDFIND(Variant(b)), 2);
  EXPECT_EQ(parent->CHILDFIND(Variant(a)), 1);  // the first
  EXPECT_EQ(parent->CHILDFIND(Variant(node(u"B"))), 0);  // identity, not equality
  EXPECT_EQ(parent->CHILDFIND(Variant(u"B")), 2);
  EXPECT_EQ(parent->CHILDFIND(Variant(u"b")), 0);  // exact
  EXPECT_EQ(parent->CHILDFIND(Variant(u"2")), 0);  // a text is an ID
  EXPECT_EQ(parent->CHILDFIND(Variant(int32_t(2))), 2);
  EXPECT_EQ(parent->CHILDFIND(Variant(2.5)), 2);  // half to even
  EXPECT_EQ(parent->CHILDFIND(Variant(1.5)), 2);
  EXPECT_EQ(parent->CHILDFIND(Variant(int32_t(0))), 0);
  EXPECT_EQ(parent->CHILDFIND(Variant(int32_t(4))), 0);
  EXPECT_EQ(parent->CHILDFIND(Variant(1e300)), 0);
  EXPECT_EQ(parent->CHILD(Variant(u"B")).get(), b.get());
  EXPECT_FALSE(parent->CHILD(Variant(u"none")));
}

TEST(cls_DrawControl, ZOrderAlwaysExchangesWithTheFront) {
  auto parent = node(u"p", enm_UIControl::ID_UIControl_Container);
  auto a = node(u"A"), b = node(u"B"), c = node(u"C");
  for (auto& n : {a, b, c}) parent->CHILDADD(n);
  parent->CHILDZORDER(Variant(c), 1);
  EXPECT_EQ(order(parent), "CBA");
  parent->CHILDZORDER(Variant(c), 1);  // there already
  EXPECT_EQ(order(parent), "CBA");
  parent->CHILDZORDER(Variant(u"A"), 3);  // at 3 already: nothing
  EXPECT_EQ(order(parent), "CBA");
  parent->CHILDZORDER(Variant(u"B"), 3);  // not at 3: exchanged with the front all the same
  EXPECT_EQ(order(parent), "BCA");
  parent->CHILDZORDER(Variant(u"X"), 1);
  EXPECT_EQ(order(parent), "BCA");
}
