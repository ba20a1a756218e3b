// Images: creation, pixels and their bounds, loading with its two failures, and the factory's
// reading of loose arguments.
#include <tessel/root/cls_DrawTool.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "TestSupport.h"

using namespace tessel;
namespace gp = tessel::mdl_GDIPlus;

namespace {

class Images : public testing::Test {
 protected:
  void SetUp() override {
    mdl_Global::DRAW()->INIT();
    start_ = gp::ImageHandle::live();
  }
  void TearDown() override { EXPECT_EQ(gp::ImageHandle::live(), start_); }
  Ref<cls_DrawToolImage> factory() { return mdl_Global::DRAW()->Image(); }
  long start_ = 0;
};

}  // namespace

TEST_F(Images, CreateAndPixels) {
  auto image = make<cls_DrawImage>();
  EXPECT_EQ(image->HANDLE(), 0);
  EXPECT_EQ(image->WIDTH(), 0);
  image->CREATE(3, 2);
  EXPECT_EQ(image->WIDTH(), 3);
  EXPECT_EQ(image->HEIGHT(), 2);
  EXPECT_EQ(image->PIXEL(2, 1), 0);  // transparent
  image->CREATE(4, 4, Variant(u"#FF8000"));
  EXPECT_EQ(static_cast<uint32_t>(image->PIXEL(3, 3)), 0xFFFF8000u);
  // Translucent pixels are kept premultiplied by the rasteriser: they come back within a step
  // of 255 / alpha.
  image->PIXEL(1, 2, static_cast<int32_t>(0x40FF8000u));
  const auto back = static_cast<uint32_t>(image->PIXEL(1, 2));
  EXPECT_EQ(back & 0xFFFF00FFu, 0x40FF0000u);
  EXPECT_NEAR((back >> 8) & 0xFF, 0x80, 2);
  EXPECT_EQ(gp::ImageHandle::live(), start_ + 1);  // the first bitmap was freed

  // Outside the bitmap, a bad size: error 5, and nothing changes.
  const int64_t kept = image->HANDLE();
  for (auto [x, y] : {std::pair{4, 0}, {0, 4}, {-1, 0}})
    EXPECT_EQ(raisedNumber([&] { image->PIXEL(x, y, 0); }), objectError(5));
  EXPECT_EQ(raisedNumber([&] { image->CREATE(0, 5); }), objectError(5));
  EXPECT_EQ(raisedNumber([&] { image->CREATE(40000, 5); }), objectError(5));
  EXPECT_EQ(image->HANDLE(), kept);
  EXPECT_EQ(raisedNumber([&] { make<cls_DrawImage>()->PIXEL(0, 0); }), objectError(5));
  image->DELETE();
  EXPECT_EQ(image->HANDLE(), 0);
}

TEST_F(Images, LoadFailuresLeaveTheImageAsItWas) {
  const auto dir = std::filesystem::temp_directory_path() / "tessel-images-test";
  std::filesystem::create_directories(dir);
  std::ofstream((dir / "junk.png").string()) << "not an image at all";
  auto image = factory()->CREATE(2, 2);
  const int64_t kept = image->HANDLE();
  Error e = raisedBy([&] { image->LOAD(toUtf16((dir / "missing.png").string())); });
  EXPECT_EQ(e.number(), objectError(53));
  EXPECT_EQ(e.source(), "cls_DrawImage.LOAD");
  for (const char* bad : {"junk.png", ""})
    EXPECT_EQ(raisedNumber([&] { image->LOAD(toUtf16((dir / bad).string())); }), objectError(481)) << bad;
  EXPECT_EQ(image->HANDLE(), kept);
  std::filesystem::remove_all(dir);
}

TEST_F(Images, FactoryReadsLooseArguments) {
  auto f = factory();
  auto image = f->CREATE(5, 6);
  EXPECT_EQ(f->AUTO(Variant(image)), image);
  for (const char16_t* text : {u"(7,8)", u" 7 , 8 "}) {
    auto made = f->AUTO(Variant(text));
    EXPECT_EQ(made->WIDTH(), 7);
    EXPECT_EQ(made->HEIGHT(), 8);
  }
  EXPECT_EQ(f->AUTO(Variant(int32_t(9)))->HEIGHT(), 9);
  EXPECT_EQ(raisedNumber([&] { f->AUTO(Variant(u"(7,x)")); }), objectError(53));  // a file name
  EXPECT_EQ(raisedNumber([&] { f->AUTO(Variant(make<cls_DrawRect>())); }), objectError(13));
}
