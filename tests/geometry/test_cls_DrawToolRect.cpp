// The rectangle factory: AUTO's empty default, numbers only (no parameter text), LINES and
// LINEXY, and the replaceable DRAW.RECT.
#include <tessel/tessel.h>

#include <gtest/gtest.h>

#include <algorithm>

#include "geometry/GeometryTesting.h"

using namespace tessel;

TEST(cls_DrawToolRect, AutoTakesTheEmptyTextNumbersABracketedTextOrAnArray) {
  auto f = make<cls_DrawToolRect>();
  EXPECT_EQ(dims(f->AUTO()), "0,0,0,0");
  EXPECT_EQ(dims(Invoke(f.get(), "", InvokeKind::Method)), "0,0,0,0");  // the default member
  EXPECT_EQ(dims(f->AUTO(Variant())), "0,0,0,0");                       // Empty equals ""
  EXPECT_EQ(dims(f->AUTO(Variant(u"5"), 6, 7, 8)), dims(f->RECT(Variant(5), 6, 7, 8)));
  EXPECT_EQ(dims(Invoke(f.get(), "AUTO", InvokeKind::Method, {Variant(2.5), Variant(u"1")})), "2.5,1,0,0");
  EXPECT_NE(f->AUTO().get(), f->AUTO().get());

  for (Variant v : {Variant(u"abc"), Variant(u"5;6;7;8"), Variant(u"#FF0000"), Variant(make<cls_DrawRect>())}) {
    Error e = raisedBy([&] { f->AUTO(v, 1, 1, 1); });
    EXPECT_EQ(e.number(), kTypeMismatch) << typeName(v);
    EXPECT_EQ(e.source(), "cls_DrawToolRect.AUTO");
    EXPECT_EQ(e.description(), "Ungültiger Parameter (13)");
  }
  EXPECT_EQ(raisedBy([&] { f->RECT(Variant(u"x"), 0, 0, 0); }).source(), "cls_DrawToolRect.RECT");

  // A whole rectangle in the first argument; the others are not read, missing numbers are 0.
  EXPECT_EQ(dims(f->AUTO(Variant(u"(10,10,50,50)"), 1, 2, 3)), "10,10,50,50");
  EXPECT_EQ(dims(f->AUTO(Variant(u"( 1.5 , 2)"))), "1.5,2,0,0");
  EXPECT_EQ(dims(f->AUTO(Variant(std::vector<Variant>{Variant(1), Variant(u"2"), Variant(3.5), Variant(4)}))),
            "1,2,3.5,4");
  EXPECT_EQ(dims(f->AUTO(Variant(std::vector<Variant>{}))), "0,0,0,0");
  EXPECT_EQ(raisedNumber([&] { f->AUTO(Variant(u"(1,2,3,4,5)")); }), objectError(rt::InvalidCall));
  EXPECT_EQ(raisedNumber([&] { f->AUTO(Variant(std::vector<Variant>{Variant(u"a")})); }), kTypeMismatch);
  EXPECT_EQ(raisedNumber([&] { f->AUTO(Variant(std::vector<Variant>{Variant(1e39)})); }), objectError(rt::Overflow));
}

TEST(cls_DrawToolRect, SpanningTwoPoints) {
  auto f = make<cls_DrawToolRect>();
  EXPECT_EQ(dims(f->LINEXY()), "0,0,1,1");
  EXPECT_EQ(dims(f->LINEXY(8, 1, 2, 5)), "2,1,7,5");
  EXPECT_EQ(dims(f->LINES(Variant(3), Variant(u"10"))), "3,0,8,1");  // numbers lie on the x-axis
  auto p = make<cls_DrawToolPoint>()->POINT(20, 40);
  EXPECT_EQ(dims(f->LINES(Variant(p), Variant(make<cls_DrawToolPoint>()->POINT(12, 30)))), "12,30,9,11");
  EXPECT_EQ(raisedBy([&] { f->LINES(Variant(1), Variant(u"?")); }).source(), "cls_DrawToolRect.LINES");
}

TEST(cls_DrawToolRect, TheRootObjectHoldsAReplaceableOne) {
  auto draw = mdl_Global::DRAW();
  auto first = draw->RECT();
  EXPECT_EQ(Invoke(draw.get(), "rect", InvokeKind::Get).obj(), first.get());
  auto other = make<cls_DrawToolRect>();
  draw->RECT(other);
  EXPECT_EQ(draw->RECT().get(), other.get());
  Invoke(draw.get(), "RECT", InvokeKind::Set, {Variant::nothing()});  // the next read makes a new one
  EXPECT_TRUE(draw->RECT());
  EXPECT_NE(draw->RECT().get(), other.get());
  // The factories come before READY, RECT before POINT.
  auto& members = cls_DrawTool::typeInfo().members();
  auto at = [&](std::string_view n) {
    return std::find_if(members.begin(), members.end(), [&](auto& m) { return m.name == n; }) - members.begin();
  };
  EXPECT_LT(at("RECT"), at("POINT"));
  EXPECT_LT(at("POINT"), at("READY"));
}
