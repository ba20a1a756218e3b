// The native-handle owner: every object freed exactly once, handles zeroed, counts per kind.
#include <tessel/core/Handle.h>
#include <tessel/core/mdl_GDIPlus.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <type_traits>
#include <vector>

using namespace tessel;

namespace {

struct FakeBrush { int id; };
struct FakeGraphics { int id; };

// Counting fakes of the flat API's delete functions.
std::vector<const void*> gFreed;
enm_Draw_Status deleteFakeBrush(FakeBrush* p) {
  gFreed.push_back(p);
  return enm_Draw_Status::OK;
}
enm_Draw_Status deleteBusyGraphics(FakeGraphics* p) {  // fails, as libgdiplus does while a DC is out
  gFreed.push_back(p);
  return enm_Draw_Status::ObjectBusy;
}

using FakeBrushHandle = Handle<FakeBrush, &deleteFakeBrush>;
using FakeGraphicsHandle = Handle<FakeGraphics, &deleteBusyGraphics>;

static_assert(!std::is_copy_constructible_v<FakeBrushHandle> && !std::is_copy_assignable_v<FakeBrushHandle>);
static_assert(std::is_nothrow_move_constructible_v<FakeBrushHandle> &&
              std::is_nothrow_move_assignable_v<FakeBrushHandle>);
static_assert(std::is_nothrow_destructible_v<FakeGraphicsHandle>);

long timesFreed(const void* p) { return std::count(gFreed.begin(), gFreed.end(), p); }

class HandleTest : public testing::Test {
 protected:
  void SetUp() override { gFreed.clear(); }
  void TearDown() override {
    EXPECT_EQ(FakeBrushHandle::live(), 0);
    EXPECT_EQ(FakeGraphicsHandle::live(), 0);
  }
  FakeBrush a{1}, b{2}, c{3};
};

}  // namespace

TEST_F(HandleTest, FreesOnResetReplacementAndDestructionExactlyOnce) {
  {
    FakeBrushHandle h(&a);
    EXPECT_EQ(h.get(), &a);
    h.reset(&a);  // the object it holds: kept, not freed
    EXPECT_EQ(timesFreed(&a), 0);
    h.reset(&b);  // replacement frees the old one
    EXPECT_EQ(timesFreed(&a), 1);
    EXPECT_EQ(h.get(), &b);
    h.reset();
    EXPECT_FALSE(h);
    h.reset();  // a second reset is harmless
    h.reset(&c);
  }  // destruction frees the last one
  EXPECT_EQ(gFreed, (std::vector<const void*>{&a, &b, &c}));
}

TEST_F(HandleTest, MovesNeverFreeTwice) {
  {
    FakeBrushHandle h1(&a);
    FakeBrushHandle h2(std::move(h1));
    EXPECT_EQ(h1.get(), nullptr);
    EXPECT_EQ(h2.get(), &a);

    FakeBrushHandle h3(&b);
    h3 = std::move(h2);  // frees b, takes a
    EXPECT_EQ(gFreed, (std::vector<const void*>{&b}));
    EXPECT_EQ(h2.get(), nullptr);
    EXPECT_EQ(h3.get(), &a);

    auto& self = h3;
    h3 = std::move(self);  // self-move keeps the object
    EXPECT_EQ(h3.get(), &a);
    h1 = std::move(h2);  // empty into empty
    EXPECT_EQ(FakeBrushHandle::live(), 1);
  }
  EXPECT_EQ(gFreed, (std::vector<const void*>{&b, &a}));
}

TEST_F(HandleTest, CountsLiveHandlesPerKind) {
  FakeBrushHandle b1(&a), b2(&b);
  FakeGraphics g{7};
  FakeGraphicsHandle gh(&g);
  EXPECT_EQ(FakeBrushHandle::live(), 2);
  EXPECT_EQ(FakeGraphicsHandle::live(), 1);

  FakeBrush* given = b2.release();  // a new owner frees it: no longer counted, not freed here
  EXPECT_EQ(given, &b);
  EXPECT_EQ(b2.get(), nullptr);
  EXPECT_EQ(FakeBrushHandle::live(), 1);
  b1.reset();
  gh.reset();
  EXPECT_EQ(FakeBrushHandle::live(), 0);
  EXPECT_EQ(FakeGraphicsHandle::live(), 0);
  EXPECT_EQ(timesFreed(&b), 0);
}

TEST_F(HandleTest, AFailingDeleteIsSwallowedAndTheHandleStillLetsGo) {
  FakeGraphics g1{1}, g2{2};
  {
    FakeGraphicsHandle h(&g1);
    h.reset(&g2);  // ObjectBusy from the delete: no exception, g1 is let go
    EXPECT_EQ(h.get(), &g2);
    EXPECT_EQ(FakeGraphicsHandle::live(), 1);
  }  // the destructor meets the same failure and does not throw
  EXPECT_EQ(timesFreed(&g1), 1);
  EXPECT_EQ(timesFreed(&g2), 1);
}

// The real kinds, on libgdiplus: its objects go through their owners and none outlives them.
TEST(Handle, NativeObjectsOfLibgdiplus) {
  namespace gp = mdl_GDIPlus;
  uint32_t token = 0;
  gp::GdiplusStartupInput input;
  ASSERT_EQ(gp::GdiplusStartup(&token, &input, nullptr), enm_Draw_Status::OK);

  const long images = gp::ImageHandle::live(), brushes = gp::BrushHandle::live();
  {
    gp::GpBitmap* bitmap = nullptr;
    ASSERT_EQ(gp::GdipCreateBitmapFromScan0(4, 4, 0, gp::PixelFormat32bppARGB, nullptr, &bitmap),
              enm_Draw_Status::OK);
    gp::ImageHandle image(bitmap);
    gp::GpGraphics* g = nullptr;
    ASSERT_EQ(gp::GdipGetImageGraphicsContext(image.get(), &g), enm_Draw_Status::OK);
    gp::GraphicsHandle graphics(g);

    gp::BrushHandle brush;
    for (uint32_t i = 0; i < 1000; ++i) {  // each replacement frees the brush before it
      gp::GpSolidFill* fill = nullptr;
      ASSERT_EQ(gp::GdipCreateSolidFill(0xFF000000u | i, &fill), enm_Draw_Status::OK);
      brush.reset(fill);
      ASSERT_EQ(gp::BrushHandle::live(), brushes + 1);
    }
    EXPECT_EQ(gp::GdipFillRectangle(graphics.get(), brush.get(), 0, 0, 4, 4), enm_Draw_Status::OK);
    graphics.reset();  // before the image it draws on
    gp::ARGB pixel = 0;
    ASSERT_EQ(gp::GdipBitmapGetPixel(bitmap, 1, 1, &pixel), enm_Draw_Status::OK);
    EXPECT_EQ(pixel, 0xFF0003E7u);  // the last brush, 999
    EXPECT_EQ(gp::ImageHandle::live(), images + 1);
  }
  EXPECT_EQ(gp::ImageHandle::live(), images);
  EXPECT_EQ(gp::BrushHandle::live(), brushes);
  EXPECT_EQ(gp::GraphicsHandle::live(), 0);
}
