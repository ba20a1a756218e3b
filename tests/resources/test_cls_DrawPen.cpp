// Pens: the shared lifecycle with protection that also stops DELETE, dash styles, the factory's
// cases and pen descriptions, and what a pen really draws.
#include <tessel/root/cls_DrawTool.h>

#include <gtest/gtest.h>

#include "TestSupport.h"
#include "resources/Canvas.h"

using namespace tessel;
namespace gp = tessel::mdl_GDIPlus;
using D = enm_Draw_PenDash;

namespace {

class Pens : public testing::Test {
 protected:
  void SetUp() override {
    mdl_Global::DRAW()->INIT();
    start_ = gp::PenHandle::live();
  }
  void TearDown() override { EXPECT_EQ(gp::PenHandle::live(), start_); }
  Ref<cls_DrawToolPen> pens() { return mdl_Global::DRAW()->PEN(); }
  long start_ = 0;
};

// The pixel at (x, y) after drawing a horizontal line across a white 9 × 9 bitmap at y = 4.
gp::ARGB lineDrawnWith(const Ref<cls_DrawPen>& pen, int x, int y) {
  Canvas canvas(9, 9);
  gp::GdipDrawLineI(canvas.graphics(), reinterpret_cast<gp::GpPen*>(static_cast<intptr_t>(pen->HANDLE())), 0, 4, 8, 4);
  return canvas.pixel(x, y);
}

}  // namespace

TEST_F(Pens, LifecycleAndProtection) {
  auto pen = make<cls_DrawPen>();
  EXPECT_EQ(pen->HANDLE(), 0);
  EXPECT_EQ(pen->DASHSTYLE(), D::ID_Draw_PenDash_Solid);  // empty: 0
  pen->SOLID(Variant(u"#FF0000"), 2)->SOLID(Variant(u"#00FF00"), 3);  // the first is freed
  EXPECT_EQ(gp::PenHandle::live(), start_ + 1);
  pen->DASHSTYLE(D::ID_Draw_PenDash_Dot);
  EXPECT_EQ(pen->DASHSTYLE(), D::ID_Draw_PenDash_Dot);

  const int64_t kept = pen->HANDLE();
  pen->PROTECTED(true);
  pen->PROTECTED(false);  // one-way
  EXPECT_TRUE(pen->PROTECTED());
  pen->SOLID(Variant(u"#0000FF"))->DELETE();  // both ignored
  pen->DASHSTYLE(D::ID_Draw_PenDash_Dash);
  EXPECT_EQ(pen->HANDLE(), kept);
  EXPECT_EQ(pen->DASHSTYLE(), D::ID_Draw_PenDash_Dot);
  pen = nullptr;  // freed all the same

  auto other = make<cls_DrawPen>()->SOLID(Variant(int32_t(255)));
  other->DELETE()->DELETE();
  EXPECT_EQ(other->HANDLE(), 0);
}

TEST_F(Pens, FactoryCasesAndDescriptions) {
  auto f = pens();
  EXPECT_EQ(f, mdl_Global::DRAW()->PEN());
  EXPECT_EQ(Invoke(f.get(), "", InvokeKind::Method).obj()->typeName(), "cls_DrawPen");  // AUTO, omitted
  EXPECT_EQ(f->AUTO(Variant::missing())->HANDLE(), 0);
  EXPECT_EQ(f->AUTO(Variant(u""))->HANDLE(), 0);
  EXPECT_EQ(f->NONE(), f->NONE());
  EXPECT_TRUE(f->NONE()->PROTECTED());
  EXPECT_EQ(f->NONE()->HANDLE(), 0);
  EXPECT_EQ(f->DASHED(Variant(u"navy"), D::ID_Draw_PenDash_Dot)->DASHSTYLE(), D::ID_Draw_PenDash_Dot);

  // A description: colour and width pieces, the last of a kind winning; the whole text is
  // trimmed, its pieces are not (" 3px" is still a width, " bold" a name, as the parameter
  // language reads them).
  auto described = f->AUTO(Variant(u"  #00FF00, 1px,(255,0,0), 3px  "));
  EXPECT_EQ(lineDrawnWith(described, 4, 3), 0xFFFF0000u);  // red, 3 pixels wide: covers y = 3
  EXPECT_EQ(lineDrawnWith(f->AUTO(Variant(u"(255,0,0)")), 4, 3), 0xFFFFFFFFu);  // 1 pixel: not

  for (const char16_t* bad : {u"#FF0000,(1,2)", u"red", u"3px,bold", u"3px, bold"}) {
    auto empty = f->AUTO(Variant(bad));
    EXPECT_EQ(empty->HANDLE(), 0) << toUtf8(bad);
  }
  EXPECT_EQ(toUtf8(cls_DrawTool::lastErrorMessage()),
            "Wrong arguments '3px, bold' for pen creation: Parameter ' bold' (type Name) not accepted");
  f->AUTO(Variant(u"3px,bold"));
  EXPECT_EQ(toUtf8(cls_DrawTool::lastErrorMessage()),
            "Wrong arguments '3px,bold' for pen creation: Parameter 'bold' (type Style) not accepted");
  f->AUTO(Variant(u"#FF0000,(1,2)"));
  EXPECT_EQ(toUtf8(cls_DrawTool::lastErrorMessage()),
            "Wrong arguments '#FF0000,(1,2)' for pen creation: Parameter '(1,2)' (type Coord) not accepted");
}

TEST_F(Pens, ObjectsAndNumbersAreColoursAndFaultsNameTheMember) {
  auto f = pens();
  EXPECT_EQ(lineDrawnWith(f->AUTO(Variant(int32_t(255))), 4, 4), 0xFFFF0000u);  // automation's red
  EXPECT_EQ(lineDrawnWith(f->AUTO(Variant(mdl_Global::DRAW()->COLOR()->RGB(0, 0, 255))), 4, 4), 0xFF0000FFu);
  Error e = raisedBy([&] { f->AUTO(Variant(make<cls_DrawRect>())); });  // no ATOM to read
  EXPECT_EQ(e.source(), "cls_DrawToolPen.AUTO");
  EXPECT_EQ(raisedBy([&] { Invoke(make<cls_DrawPen>().get(), "DASHSTYLE", InvokeKind::Let, {u"x"}); }).source(),
            "cls_DrawPen.DASHSTYLE.LET");
}
