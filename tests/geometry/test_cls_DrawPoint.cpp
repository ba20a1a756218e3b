// The point: MOVED only on real movement (COPY never), clones, and overflow in MOVEBY.
#include <tessel/tessel.h>

#include <gtest/gtest.h>

#include <cmath>

#include "geometry/GeometryTesting.h"

using namespace tessel;

TEST(cls_DrawPoint, MovedIsRaisedOncePerRealMove) {
  auto p = make<cls_DrawPoint>();
  EventLog log(*p);
  EXPECT_EQ(log.during([&] { p->X(0), p->MOVE(0, 0), p->MOVEBY(0, 0); }), "");
  EXPECT_EQ(log.during([&] { p->MOVE(0, 2); }), "M");  // only Y changes
  EXPECT_EQ(log.during([&] { p->MOVEBY(0, 1), p->MOVEBY(-1, 1); }), "MM");
  EXPECT_EQ(log.during([&] { p->Y(-4.25); }), "M");
  EXPECT_EQ(p->X(), -1);

  auto q = make<cls_DrawPoint>()->MOVE(1e-300, 7);
  EXPECT_EQ(log.during([&] { EXPECT_EQ(p->COPY(q).get(), p.get()); }), "");  // a copy is no movement
  EXPECT_EQ(p->X(), 1e-300);
  auto c = p->CLONE();
  EXPECT_NE(c.get(), p.get());
  EXPECT_EQ(c->Y(), 7);
  EXPECT_EQ(log.during([&] { c->MOVEBY(1, 1); }), "");  // the clone does not share listeners
}

TEST(cls_DrawPoint, FailuresGoThroughTheTrap) {
  auto p = make<cls_DrawPoint>()->MOVE(0, 1e308);
  EventLog log(*p);
  Error e(0, "");
  EXPECT_EQ(log.during([&] { e = raisedBy([&] { p->MOVEBY(5, 1e308); }); }), "");
  EXPECT_EQ(e.number(), kOverflow);
  EXPECT_EQ(e.source(), "cls_DrawPoint.MOVEBY");
  EXPECT_EQ(p->X(), 5);  // already updated, and it stays so
  EXPECT_EQ(p->Y(), 1e308);

  EXPECT_EQ(raisedBy([&] { p->X(NAN); }).source(), "cls_DrawPoint.X.LET");
  EXPECT_EQ(raisedBy([&] { p->COPY(nullptr); }).description(), "Objekt-Fehler (91)");
  e = raisedBy([&] { Invoke(p.get(), "COPY", InvokeKind::Method, {Variant(make<cls_DrawRect>())}); });
  EXPECT_EQ(e.number(), kTypeMismatch);
  EXPECT_EQ(e.source(), "cls_DrawPoint.COPY");
}
