// The point factory: conversions, the default member, type mismatches, and DRAW.POINT.
#include <tessel/tessel.h>

#include <gtest/gtest.h>

#include "geometry/GeometryTesting.h"

using namespace tessel;

TEST(cls_DrawToolPoint, NumbersAndNumericTextOnly) {
  auto f = make<cls_DrawToolPoint>();
  auto a = f->POINT(1.5, -2);
  EXPECT_EQ(a->X() + a->Y(), -0.5);
  auto b = f->AUTO(Variant(u" 7 "));
  EXPECT_EQ(b->X(), 7);
  EXPECT_EQ(b->Y(), 0);  // on the x-axis when pY is omitted
  EXPECT_NE(f->AUTO(Variant(1)).get(), f->AUTO(Variant(1)).get());
  Variant c = Invoke(f.get(), "", InvokeKind::Method, {Variant(u"3"), Variant(u"4.5")});  // AUTO by default
  EXPECT_EQ(Invoke(c, "Y", InvokeKind::Get), Variant(4.5));

  for (Variant v : {Variant(u"abc"), Variant(u"1,2"), Variant(u" (1,2)"), Variant(make<cls_DrawPoint>()),
                    Variant::missing(), Variant(std::vector<Variant>{Variant(1), Variant(u"x")})}) {
    Error e = raisedBy([&] { f->AUTO(v); });
    EXPECT_EQ(e.number(), kTypeMismatch) << typeName(v);
    EXPECT_EQ(e.source(), "cls_DrawToolPoint.AUTO");
    EXPECT_EQ(e.description(), "Ungültiger Parameter (13)");
  }
}

TEST(cls_DrawToolPoint, ABracketedTextOrAnArrayIsAWholePoint) {
  auto f = make<cls_DrawToolPoint>();
  auto p = f->AUTO(Variant(u"(10, 20)"), 99);  // pY is not read
  EXPECT_EQ(p->X(), 10);
  EXPECT_EQ(p->Y(), 20);
  p = f->AUTO(Variant(u"(7)"));
  EXPECT_EQ(p->X() * 100 + p->Y(), 700);
  p = f->AUTO(Variant(std::vector<Variant>{Variant(1.5), Variant(u"2")}));
  EXPECT_EQ(p->X() + p->Y(), 3.5);
  for (Variant v : {Variant(u"(1,2,3)"), Variant(std::vector<Variant>{Variant(1), Variant(2), Variant(3)})})
    EXPECT_EQ(raisedNumber([&] { f->AUTO(v); }), objectError(rt::InvalidCall));
  // What takes a loose point takes these too.
  auto r = make<cls_DrawRect>()->MOVE(0, 0, 100, 100);
  EXPECT_TRUE(r->HITTEST(Variant(std::vector<Variant>{Variant(70), Variant(50)})));
  EXPECT_FALSE(r->HITTEST(Variant(u"(170,50)")));
}

TEST(cls_DrawToolPoint, TheRootObjectHoldsAReplaceableOne) {
  auto draw = mdl_Global::DRAW();
  EXPECT_EQ(draw->POINT().get(), draw->POINT().get());
  auto other = make<cls_DrawToolPoint>();
  Invoke(draw.get(), "point", InvokeKind::Set, {Variant(other)});
  EXPECT_EQ(draw->POINT().get(), other.get());
  draw->POINT(nullptr);  // Nothing: the next read makes a new one
  EXPECT_TRUE(draw->POINT());
  EXPECT_NE(draw->POINT().get(), other.get());
  Error e = raisedBy([&] { Invoke(draw.get(), "POINT", InvokeKind::Set, {Variant(make<cls_DrawToolRect>())}); });
  EXPECT_EQ(e.source(), "cls_DrawTool.POINT.SET");
}
