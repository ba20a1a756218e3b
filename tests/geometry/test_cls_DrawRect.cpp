// The rectangle: inclusive edges, the size clamp, events in order, derived rectangles and
// points, hit tests and merging, and failures under each operation's own source.
#include <tessel/tessel.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "geometry/GeometryTesting.h"

using namespace tessel;
using C = enm_UIRectCorner;
using S = enm_UIRectSide;

namespace {

Ref<cls_DrawRect> rect(float x, float y, float w, float h) { return make<cls_DrawRect>()->MOVE(x, y, w, h); }

// No rectangle, no point, but with the properties that are read by name.
class cls_Span final : public ObjectOf<cls_Span> {
 public:
  static constexpr std::string_view ClassName = "cls_Span";
  static const ClassInfo& typeInfo();
  double X() const { return 0; }
  double x2() const { return 40; }
  double Y() const { return 0; }
  double y2() const { return 3; }
};
const ClassInfo& cls_Span::typeInfo() {
  static const ClassInfo info = ClassBuilder<cls_Span>()
      .get("X", &cls_Span::X).get("Y", &cls_Span::Y).get("x2", &cls_Span::x2).get("y2", &cls_Span::y2);
  return info;
}
TESSEL_REGISTER_CLASS(cls_Span)

}  // namespace

TEST(cls_DrawRect, InclusiveEdgesAndInfo) {
  auto r = make<cls_DrawRect>();
  EXPECT_EQ(r->INFO(), u"(0,0)-(-1,-1)");
  EXPECT_FALSE(r->HITTESTXY(0, 0));  // an empty rectangle covers nothing
  r->MOVE(10, 20, 5, 10);
  EXPECT_EQ(r->INFO(), u"(10,20)-(14,29)");
  EXPECT_EQ(r->XC(), 12);
  EXPECT_TRUE(r->HITTESTXY(14, 29) && r->HITTESTXY(10, 20));
  EXPECT_FALSE(r->HITTESTXY(15, 29) || r->HITTESTXY(14, 30) || r->HITTESTXY(9.5f, 25));
  r->MOVE(-1, 49.5f, 1e7f + 2, 1);
  EXPECT_EQ(r->INFO(), u"(-1,49.5)-(1E+07,49.5)");
}

TEST(cls_DrawRect, SizeClampAppliesWhereItShouldAndOnlyThere) {
  auto r = make<cls_DrawRect>();
  r->WMIN = 5, r->WMAX = 20, r->HMAX = -3;  // 0 or less: inactive
  r->W(0);
  EXPECT_EQ(r->W(), 5);
  r->W(100), r->H(100);
  EXPECT_EQ(dims(r), "0,0,20,100");
  r->WMAX = 10;     // a new bound leaves the current size alone
  r->SIZE(-1, 7);   // and -1 keeps it, even outside the bounds
  EXPECT_EQ(dims(r), "0,0,20,7");
  r->MOVE(0, 0, 1, -1);
  EXPECT_EQ(dims(r), "0,0,5,7");
  r->x2(100);
  EXPECT_EQ(r->W(), 10);
  // Moving edges, growing, spanning and merging are not clamped.
  EXPECT_EQ(r->MOVEOFFSET(0, 0, 50, 0)->W(), 60);
  EXPECT_EQ(r->EXPAND(10)->W(), 80);
  EXPECT_EQ(dims(r->LINEXY(0, 0, 1, 1)), "0,0,2,2");
  r->MERGE(Variant(rect(0, 0, 300, 1)));
  EXPECT_EQ(r->W(), 300);
}

TEST(cls_DrawRect, EventsComeInTheStatedOrder) {
  auto r = rect(10, 10, 5, 5);
  EventLog log(*r);
  EXPECT_EQ(log.during([&] {
    r->X(10), r->W(5), r->MOVE(10, 10), r->MOVEBY(0, 0), r->MOVEOFFSET(0, 0, 0, 0), r->CLEAR();
    r->COPY(rect(10, 10, 5, 5)), r->MERGE(Variant(rect(11, 11, 1, 1)));
  }), "");  // nothing changed, nothing raised
  EXPECT_EQ(log.during([&] { r->EXPAND(2); }), "RM");
  EXPECT_EQ(dims(r), "8,8,9,9");
  EXPECT_EQ(log.during([&] { r->MOVE(1, 2); }), "MM");  // a setter each
  EXPECT_EQ(log.during([&] { r->MOVE(1, 2, -1, 7); }), "R");
  EXPECT_EQ(dims(r), "1,2,9,7");
  EXPECT_EQ(log.during([&] { r->MOVE(0, 2, 6, 8); }), "MR");  // one RESIZE for both dimensions
  EXPECT_EQ(log.during([&] { r->MOVEBY(0, 1); }), "M");
  EXPECT_EQ(log.during([&] { r->MOVEOFFSET(0, 0, 0, 1); }), "MR");
  EXPECT_EQ(log.during([&] { r->x2(-4); }), "MR");  // left of X: the old left edge becomes the right edge
  EXPECT_EQ(dims(r), "-4,3,5,9");
  EXPECT_EQ(log.during([&] { r->COPY(rect(0, 0, 1, 1)); }), "MR");
  EXPECT_EQ(log.during([&] { r->MERGE(Variant(rect(0, 0, 5, 1))); }), "R");  // only the right edge grows
  EXPECT_EQ(log.during([&] { r->XC(100); }), "M");
  EXPECT_EQ(dims(r), "98,0,5,1");
  EXPECT_EQ(log.during([&] { r->CLONE()->X(0); }), "");  // the clone has listeners of its own
}

// A handler that drops the last reference: MOVE raises MOVED, then goes on to resize the
// rectangle and raise RESIZE. The rectangle lives until MOVE returns (watch it under ASan).
TEST(cls_DrawRect, SurvivesAHandlerThatDropsTheLastReference) {
  for (bool lateBound : {false, true}) {
    Ref<cls_DrawRect> r = make<cls_DrawRect>();
    cls_DrawRect* raw = r.get();
    int resized = 0;
    Connection moved = raw->MOVED.connect([&] { r = nullptr; });
    Connection resize = raw->RESIZE.connect([&] { ++resized; });
    if (lateBound) Invoke(raw, "MOVE", InvokeKind::Method, {1, 2, 3, 4});
    else raw->MOVE(1, 2, 3, 4);
    EXPECT_FALSE(r);
    EXPECT_EQ(resized, 1);
  }
}

TEST(cls_DrawRect, SidesCornersAndCornerSquares) {
  auto r = rect(0, 0, 100, 50);
  std::string sides;
  for (int i = 0; i < 4; ++i) sides += dims(r->SIDE(static_cast<S>(i))) + " ";
  EXPECT_EQ(sides, "0,0,100,0 99,0,0,50 0,49,100,0 0,0,0,50 ");  // top, right, bottom, left
  EXPECT_TRUE(Invoke(r.get(), "SIDE", InvokeKind::Method, {4}).isNothing());

  // Column-major: left column, centre, right; top, middle, bottom within each.
  const double xs[] = {0, 49.5, 99}, ys[] = {0, 24.5, 49};
  const char* squares[] = {"0,0", "0,19.5", "0,40", "44.5,0", "44.5,19.5", "44.5,40", "90,0", "90,19.5", "90,40"};
  for (int i = 0; i < 9; ++i) {
    auto p = r->CORNER(static_cast<C>(i));
    EXPECT_EQ(p->X(), xs[i / 3]) << i;
    EXPECT_EQ(p->Y(), ys[i % 3]) << i;
    EXPECT_EQ(dims(r->CORNERRECT(static_cast<C>(i), 10)), std::string(squares[i]) + ",10,10");
  }
  EXPECT_EQ(raisedBy([&] { r->CORNER(static_cast<C>(9)); }).description(), "Ungültiger Parameter (5)");
}

TEST(cls_DrawRect, HitTestsIntersectionAndMerge) {
  auto r = rect(0, 0, 10, 10);
  auto point = [](double x, double y) { return Variant(make<cls_DrawToolPoint>()->POINT(x, y)); };
  EXPECT_TRUE(r->HITTEST(point(9, 9)));
  EXPECT_FALSE(r->HITTEST(point(9, 9.5)) || r->HITTEST(point(1e300, 0)));  // far outside is no overflow
  EXPECT_TRUE(r->HITTEST(Variant(rect(0, 0, 10, 10))));  // containment, edges included
  EXPECT_FALSE(r->HITTEST(Variant(rect(1, 1, 10, 5))));
  EXPECT_TRUE(r->HITTEST(Variant(u"9")));  // (9,0,0,0) through the factory

  EXPECT_TRUE(r->INTERSECTS(rect(9, 9, 5, 5)));
  EXPECT_FALSE(r->INTERSECTS(rect(10, 0, 5, 5)) || r->INTERSECTS(rect(-5, 10, 20, 1)));
  EXPECT_FALSE(r->INTERSECTS(rect(5, 5, 0, 3)));  // an empty rectangle overlaps nothing
  EXPECT_EQ(raisedBy([&] { r->INTERSECTS(nullptr); }).description(), "Objekt-Fehler (91)");

  r->MERGE(Variant(make<cls_Span>()));  // read by name: (0,0)-(40,3)
  EXPECT_EQ(dims(r), "0,0,41,10");
  r->MERGE(Variant(u"-5"));  // (-5,0,0,0): its corner counts even though it is empty
  EXPECT_EQ(dims(r), "-5,0,46,10");
}

TEST(cls_DrawRect, SpanningAndCentring) {
  auto r = make<cls_DrawRect>();
  EXPECT_EQ(r->LINEXY(10, 20, 4, 2).obj(), r.get());
  EXPECT_EQ(dims(r), "4,2,7,19");
  auto a = make<cls_DrawToolPoint>()->POINT(3, 8);
  EXPECT_EQ(r->LINES(Variant(make<cls_Span>()), Variant(a)).get(), r.get());  // any object with X and Y
  EXPECT_EQ(dims(r), "0,0,4,9");

  r = rect(0, 0, 100, 50);
  EventLog log(*r);
  EXPECT_EQ(log.during([&] { EXPECT_EQ(r->MOVECENTER(Variant(a)).obj(), r.get()); }), "MM");
  EXPECT_EQ(dims(r), "-46.5,-16.5,100,50");
  r->MOVECENTER(Variant(u"10"));  // a point on the x-axis
  EXPECT_EQ(r->XC() + r->YC(), 10);
}

TEST(cls_DrawRect, FailuresLeaveTheRectangleAlone) {
  auto r = rect(10, 10, 5, 5);
  EventLog log(*r);
  Error e = raisedBy([&] { r->MOVECENTER(Variant(u"1,2")); });
  EXPECT_EQ(e.number(), kTypeMismatch);
  EXPECT_EQ(e.source(), "cls_DrawRect.MOVECENTER");
  EXPECT_EQ(e.description(), "Ungültiger Parameter (13)");
  EXPECT_EQ(raisedBy([&] { r->MERGE(Variant(u"x")); }).source(), "cls_DrawRect.MERGE");
  EXPECT_EQ(log.during([&] { e = raisedBy([&] { r->MOVEBY(3e38f, 0)->MOVEBY(3e38f, 0); }); }), "M");
  EXPECT_EQ(e.number(), kOverflow);
  EXPECT_EQ(e.source(), "cls_DrawRect.MOVEBY");
  EXPECT_EQ(raisedBy([&] { r->MOVE(0, 0, std::numeric_limits<float>::infinity()); }).source(), "cls_DrawRect.MOVE");
  EXPECT_EQ(dims(r), "3E+38,10,5,5");  // only the first MOVEBY went through
  r->W(3e38f);
  EXPECT_EQ(raisedBy([&] { r->x2(); }).source(), "cls_DrawRect.x2.GET");
  e = raisedBy([&] { Invoke(r.get(), "X", InvokeKind::Let, {Variant(u"1e39")}); });
  EXPECT_EQ(e.number(), kOverflow);
  EXPECT_EQ(e.source(), "cls_DrawRect.X.LET");
}

// The bounds take what a Single holds, nothing else; a bound that C++ code sets to a value the
// lets refuse does not block later sizes.
TEST(cls_DrawRect, BoundsRefuseWhatASingleCannotHold) {
  auto r = rect(0, 0, 5, 5);
  const float inf = std::numeric_limits<float>::infinity();
  for (const char* bound : {"WMIN", "WMAX", "HMIN", "HMAX"}) {
    for (Variant bad : {Variant(std::nan("")), Variant(inf), Variant(-inf), Variant(1e39), Variant(u"1e39")}) {
      Error e = raisedBy([&] { Invoke(r.get(), bound, InvokeKind::Let, {bad}); });
      EXPECT_EQ(e.number(), kOverflow) << bound;
      EXPECT_EQ(e.source(), std::string("cls_DrawRect.") + bound + ".LET");
    }
  }
  EXPECT_EQ(r->WMIN, 0);
  r->WMIN = inf;
  r->HMAX = std::nanf("");
  r->W(7);
  r->H(8);
  EXPECT_EQ(dims(r), "0,0,7,8");
}

TEST(cls_DrawRect, TypeLibraryEntry) {
  auto& ci = cls_DrawRect::typeInfo();
  EXPECT_EQ(ci.events()[0].name + ci.events()[1].name, "RESIZEMOVED");
  auto r = TypeLib::findClass("cls_DrawRect")->create();
  Invoke(r.get(), "wmin", InvokeKind::Let, {Variant(4)});
  Invoke(r.get(), "MOVE", InvokeKind::Method, {Variant(u"1"), Variant(2)});  // pW, pH default to -1
  Invoke(r.get(), "SIZE", InvokeKind::Method, {Variant(1)});
  EXPECT_EQ(Invoke(r.get(), "INFO", InvokeKind::Method).toUtf8(), "(1,2)-(4,1)");
  int found = 0;
  for (auto& e : TypeLib::enums())
    found += (e.name == "enm_UIRectCorner" && e.members[3].first == "ID_UIRectCorner_XCenterYTop") +
             (e.name == "enm_UIRectSide" && e.members[1].first == "ID_UIRectSide_Right");
  EXPECT_EQ(found, 2);
}
