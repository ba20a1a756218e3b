// Image attributes: the matrices as scripts address them, the native attributes made and freed
// once, and what drawing through them really does to pixels.
#include <tessel/root/cls_DrawTool.h>

#include <gtest/gtest.h>

#include <cstdlib>

#include "TestSupport.h"

using namespace tessel;
namespace gp = tessel::mdl_GDIPlus;
using M = enm_Draw_Matrix;

namespace {

const M kColor = M::ID_Draw_Matrix_Color;

// A w × h bitmap of one colour.
gp::ImageHandle bitmap(gp::ARGB colour, int w = 2, int h = 2) {
  gp::GpBitmap* b = nullptr;
  EXPECT_EQ(gp::GdipCreateBitmapFromScan0(w, h, 0, gp::PixelFormat32bppARGB, nullptr, &b), enm_Draw_Status::OK);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) gp::GdipBitmapSetPixel(b, x, y, colour);
  return gp::ImageHandle(b);
}

// Draws `source` over a white bitmap through the attributes and reads the pixel at (1, 1).
gp::ARGB drawnThrough(const gp::ImageHandle& source, const Ref<cls_DrawImageAttributes>& attributes) {
  gp::ImageHandle target = bitmap(0xFFFFFFFF);
  gp::GpGraphics* g = nullptr;
  EXPECT_EQ(gp::GdipGetImageGraphicsContext(target.get(), &g), enm_Draw_Status::OK);
  gp::GraphicsHandle graphics(g);
  auto* native = reinterpret_cast<gp::GpImageAttributes*>(static_cast<intptr_t>(attributes->HANDLE()));
  EXPECT_EQ(gp::GdipDrawImageRectRectI(g, source.get(), 0, 0, 2, 2, 0, 0, 2, 2, gp::UnitPixel, native, nullptr, nullptr),
            enm_Draw_Status::OK);
  graphics.reset();
  gp::ARGB pixel = 0;
  gp::GdipBitmapGetPixel(static_cast<gp::GpBitmap*>(target.get()), 1, 1, &pixel);
  return pixel;
}

int channel(gp::ARGB c, int shift) { return static_cast<int>((c >> shift) & 0xFF); }

class ImageAttributes : public testing::Test {
 protected:
  void SetUp() override {
    mdl_Global::DRAW()->INIT();
    start_ = gp::ImageAttributesHandle::live();
  }
  void TearDown() override { EXPECT_EQ(gp::ImageAttributesHandle::live(), start_); }
  long start_ = 0;
};

}  // namespace

TEST_F(ImageAttributes, MatricesAsScriptsAddressThem) {
  auto a = make<cls_DrawImageAttributes>();
  EXPECT_EQ(a->HANDLE(), 0);
  EXPECT_EQ(a->ALPHA(), 1.0f);  // reading it makes the native attributes
  EXPECT_NE(a->HANDLE(), 0);
  a->ALPHA(0.5f);
  EXPECT_EQ(a->MATRIX(kColor, 3, 3), 0.5f);
  a->MATRIX(kColor, 0, 3, 0.2f);
  a->MATRIX(kColor, 1, 1, 0.3f);
  a->MATRIXRESET();  // the diagonal only
  EXPECT_EQ(a->MATRIX(kColor, 0, 3), 0.2f);
  EXPECT_EQ(a->MATRIX(kColor, 1, 1), 1.0f);
  EXPECT_EQ(a->MATRIX(kColor, 3, 3), 1.0f);
  EXPECT_EQ(a->MATRIX(M::ID_Draw_Matrix_Grey, 2, 2), 0.0f);

  Error e = raisedBy([&] { Invoke(a.get(), "MATRIX", InvokeKind::Get, {3, 0, 0}); });
  EXPECT_EQ(e.number(), objectError(9));
  EXPECT_EQ(e.source(), "cls_DrawImageAttributes.MATRIX.GET");
  EXPECT_EQ(raisedBy([&] { a->MATRIX(kColor, 0, 5, 1); }).source(), "cls_DrawImageAttributes.MATRIX.LET");

  auto factory = mdl_Global::DRAW()->imageAttributes();
  EXPECT_EQ(factory, mdl_Global::DRAW()->imageAttributes());
  EXPECT_EQ(factory->ALPHA(1)->HANDLE(), 0);  // nothing to update
  EXPECT_NE(factory->ALPHA(0.25f)->HANDLE(), 0);
}

TEST_F(ImageAttributes, NativeAttributesAreFreedOnceInEveryOrder) {
  auto a = make<cls_DrawImageAttributes>();
  a->MATRIXUPDATE();
  a->MATRIXUPDATE();  // the same native attributes, updated
  EXPECT_EQ(gp::ImageAttributesHandle::live(), start_ + 1);
  a->DELETE()->DELETE();
  EXPECT_EQ(a->HANDLE(), 0);
  auto b = make<cls_DrawImageAttributes>();
  b->COPY(a);  // makes b's own, takes nothing, leaves no clone behind
  EXPECT_EQ(gp::ImageAttributesHandle::live(), start_ + 1);
  EXPECT_EQ(a->HANDLE(), 0);
  a->ALPHA(0.1f);
  b = nullptr;  // dropped with its native attributes
  EXPECT_EQ(gp::ImageAttributesHandle::live(), start_ + 1);
}

TEST_F(ImageAttributes, DrawingThroughThemFadesAndRecolours) {
  gp::ImageHandle red = bitmap(0xFFFF0000);
  auto a = make<cls_DrawImageAttributes>();
  a->ALPHA(0.5f);
  const gp::ARGB half = drawnThrough(red, a);  // half red over white
  EXPECT_EQ(channel(half, 16), 255);
  EXPECT_LE(std::abs(channel(half, 8) - 127), 2);
  EXPECT_LE(std::abs(channel(half, 0) - 127), 2);

  a->ALPHA(1);
  // Red goes to blue: element (i, j) is row j, column i, so it feeds output i from input j.
  a->MATRIX(kColor, 0, 0, 0);
  a->MATRIX(kColor, 2, 0, 1);
  const gp::ARGB blue = drawnThrough(red, a);
  EXPECT_EQ(blue & 0xFFFFFF, 0x0000FFu);
}
