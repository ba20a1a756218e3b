// Brushes: the shared lifecycle (protection stops everything but DELETE), the factory's cases,
// what solid, gradient and texture brushes really paint, and the colour's cached brush and pens.
#include <tessel/root/cls_DrawTool.h>

#include <gtest/gtest.h>

#include "TestSupport.h"
#include "resources/Canvas.h"

using namespace tessel;
namespace gp = tessel::mdl_GDIPlus;

namespace {

class Brushes : public testing::Test {
 protected:
  void SetUp() override {
    mdl_Global::DRAW()->INIT();
    brushes_ = gp::BrushHandle::live();
    pens_ = gp::PenHandle::live();
  }
  void TearDown() override {
    EXPECT_EQ(gp::BrushHandle::live(), brushes_);
    EXPECT_EQ(gp::PenHandle::live(), pens_);
  }
  Ref<cls_DrawToolBrush> factory() { return mdl_Global::DRAW()->BRUSH(); }
  long brushes_ = 0, pens_ = 0;
};

// A white 20 × 20 bitmap filled with the brush, for probing what it paints.
struct Filled {
  explicit Filled(const Ref<cls_DrawBrush>& brush) {
    gp::GdipFillRectangle(canvas.graphics(), brush->brush(), 0, 0, 20, 20);
  }
  gp::ARGB at(int x, int y) { return canvas.pixel(x, y); }
  Canvas canvas{20, 20};
};

Variant box(int32_t w, int32_t h) { return Variant(mdl_Global::DRAW()->RECT()->RECT(Variant(int32_t(0)), 0, w, h)); }

int red(gp::ARGB p) { return (p >> 16) & 0xFF; }
int blue(gp::ARGB p) { return p & 0xFF; }

}  // namespace

TEST_F(Brushes, LifecycleAndProtection) {
  auto brush = make<cls_DrawBrush>();
  EXPECT_EQ(brush->HANDLE(), 0);
  brush->SOLID(Variant(u"#FF0000"))->GRADIENT(box(10, 10), Variant(u"#000000"), Variant(u"#FFFFFF"), 0);
  EXPECT_EQ(gp::BrushHandle::live(), brushes_ + 1);  // the solid one was freed first
  brush->DELETE()->DELETE();
  EXPECT_EQ(brush->HANDLE(), 0);

  brush->SOLID(Variant(u"#00FF00"));
  const int64_t kept = brush->HANDLE();
  brush->PROTECTED(true);
  brush->PROTECTED(false);  // one-way
  EXPECT_TRUE(brush->PROTECTED());
  brush->SOLID(Variant(u"#0000FF"))->AUTO(Variant(u"#0000FF"));
  brush->GRADIENT(box(10, 10), Variant(u"#000000"), Variant(u"#FFFFFF"), 0);
  brush->texture(Variant(u"(4,4)"));
  EXPECT_EQ(brush->HANDLE(), kept);
  brush->DELETE();  // even a protected brush
  EXPECT_EQ(brush->HANDLE(), 0);
  brush->SOLID(Variant(u"#0000FF"));  // and it stays protected: no new one
  EXPECT_EQ(brush->HANDLE(), 0);

  // Dropped while holding one: freed (checked by TearDown).
  make<cls_DrawBrush>()->SOLID(Variant(u"#123456"));
}

TEST_F(Brushes, FactoryCases) {
  auto f = factory();
  EXPECT_EQ(f->AUTO(Variant::missing())->HANDLE(), 0);
  EXPECT_EQ(f->AUTO(Variant(u""))->HANDLE(), 0);
  EXPECT_EQ(Invoke(f.get(), "", InvokeKind::Method, {Variant(u"#00FF00")}).obj()->typeName(), "cls_DrawBrush");
  EXPECT_EQ(Filled(f->AUTO(Variant(u"#00FF00"))).at(5, 5), 0xFF00FF00u);
  EXPECT_EQ(Filled(f->AUTO(Variant(int32_t(0x0000FF)))).at(5, 5), 0xFFFF0000u);  // a host colour: red in the low byte
  // Half transparent over white: half way to white.
  EXPECT_NEAR(red(Filled(f->SOLID(Variant(mdl_Global::DRAW()->COLOR()->RGB(1, 2, 3, 128)))).at(5, 5)), 128, 2);

  auto none = f->NONE();
  EXPECT_EQ(none, f->NONE());
  EXPECT_FALSE(none->PROTECTED());  // deliberately shared and writable
  none->SOLID(Variant(u"#FF0000"));
  EXPECT_NE(f->NONE()->HANDLE(), 0);
  none->DELETE();

  // A brush is no colour.
  Error e = raisedBy([&] { f->AUTO(Variant(f->SOLID(Variant(u"#FF0000")))); });
  EXPECT_EQ(e.source(), "cls_DrawToolBrush.AUTO");
  e = raisedBy([&] { make<cls_DrawBrush>()->GRADIENT(Variant(make<cls_DrawPoint>()), Variant(), Variant(), 0); });
  EXPECT_EQ(e.number(), objectError(13));
  EXPECT_EQ(e.source(), "cls_DrawBrush.GRADIENT");
}

TEST_F(Brushes, GradientAndTexturePaintWhatTheyClaim) {
  auto f = factory();
  // Black to white, left to right over the whole bitmap; turned 90 degrees it runs top to bottom.
  Filled across(f->GRADIENT(box(20, 20), Variant(u"#FF0000"), Variant(u"#0000FF"), 0));
  EXPECT_GT(red(across.at(1, 10)), 200);
  EXPECT_GT(blue(across.at(18, 10)), 200);
  EXPECT_EQ(across.at(1, 2), across.at(1, 17));  // constant down a column
  Filled down(f->GRADIENT(box(20, 20), Variant(u"#FF0000"), Variant(u"#0000FF"), 90));
  EXPECT_GT(red(down.at(10, 1)), 200);
  EXPECT_GT(blue(down.at(10, 18)), 200);

  // A 2 × 2 checker, tiled: the pattern repeats every two pixels; clamped it paints once.
  auto tile = mdl_Global::DRAW()->Image()->CREATE(2, 2, Variant(u"#FFFFFF"));
  tile->PIXEL(0, 0, static_cast<int32_t>(0xFF000000u));
  tile->PIXEL(1, 1, static_cast<int32_t>(0xFF000000u));
  Filled tiled(f->texture(Variant(tile)));
  for (int y = 0; y < 6; ++y)
    for (int x = 0; x < 6; ++x) EXPECT_EQ(tiled.at(x, y), (x + y) % 2 ? 0xFFFFFFFFu : 0xFF000000u) << x << "," << y;
  tile = nullptr;  // the brush copied the pixels
  Filled clamped(f->texture(Variant(mdl_Global::DRAW()->Image()->CREATE(2, 2, Variant(u"#00FF00"))),
                            enm_Draw_Wrap::ID_Draw_Warp_Clamp));
  EXPECT_EQ(clamped.at(1, 1), 0xFF00FF00u);
  EXPECT_NE(clamped.at(10, 10), 0xFF00FF00u);

  EXPECT_NE(f->texture(Variant(u"(3,3)"))->HANDLE(), 0);  // loose: the image factory's AUTO
  EXPECT_EQ(raisedBy([&] { f->texture(Variant(u"(3,3)"), static_cast<enm_Draw_Wrap>(5)); }).number(), objectError(5));
  EXPECT_EQ(raisedBy([&] { f->texture(Variant(make<cls_DrawRect>())); }).number(), objectError(13));
}

TEST_F(Brushes, AColourCachesItsBrushAndPens) {
  auto colour = mdl_Global::DRAW()->COLOR()->RGB(10, 20, 30);
  auto brush = colour->BRUSH();
  EXPECT_EQ(brush, colour->BRUSH());
  EXPECT_TRUE(brush->PROTECTED());
  EXPECT_EQ(Filled(brush).at(3, 3), 0xFF0A141Eu);
  colour->R(10);  // the same value: no change
  EXPECT_EQ(colour->BRUSH(), brush);
  colour->R(11);
  EXPECT_NE(colour->BRUSH(), brush);

  EXPECT_EQ(colour->PEN(0), colour->PEN(1));  // widths clamp to 1..10, styles to 0..5
  EXPECT_EQ(colour->PEN(25), colour->PEN(10));
  auto custom = colour->PEN(3, static_cast<enm_Draw_PenDash>(9));
  EXPECT_EQ(custom->DASHSTYLE(), enm_Draw_PenDash::ID_Draw_PenDash_Custom);
  EXPECT_TRUE(custom->PROTECTED());
  EXPECT_EQ(Invoke(colour.get(), "PEN", InvokeKind::Get, {Variant(int32_t(3)), Variant(int32_t(5))}).obj(), custom.get());

  // The caller's DELETE empties the shared brush; the colour makes a new one only on a change.
  colour->BRUSH()->DELETE();
  EXPECT_EQ(colour->BRUSH()->HANDLE(), 0);
  colour->B(99);
  EXPECT_NE(colour->BRUSH()->HANDLE(), 0);
  // No cycle: dropping the colour frees its brush and pens (checked by TearDown).
}
