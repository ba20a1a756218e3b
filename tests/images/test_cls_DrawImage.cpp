// Images: creation, pixels and their bounds, files in every format and their failures with the
// file-error dialog's answers, resampling, copies and pictures, memory lent in place, and the
// factory's reading of loose arguments.
#include <tessel/core/Text.h>
#include <tessel/root/cls_DrawTool.h>

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>

#include "TestSupport.h"
#include "core/ErrorCapture.h"

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
  ErrorCapture capture_;  // file errors ask
  long start_ = 0;
};

// A folder of its own per test, gone afterwards.
class ImageFiles : public Images {
 protected:
  void SetUp() override {
    Images::SetUp();
    std::filesystem::create_directories(dir_);
  }
  void TearDown() override {
    std::filesystem::remove_all(dir_);
    Images::TearDown();
  }
  std::u16string file(const std::string& name) const { return toUtf16((dir_ / name).string()); }
  // Four opaque colours in the corners, one translucent pixel, a gradient row between.
  Ref<cls_DrawImage> pattern() {
    auto image = factory()->CREATE(16, 8, Variant(u"#FFFFFF"));
    image->PIXEL(0, 0, static_cast<int32_t>(0xFFFF0000u));
    image->PIXEL(15, 0, static_cast<int32_t>(0xFF00FF00u));
    image->PIXEL(0, 7, static_cast<int32_t>(0xFF0000FFu));
    image->PIXEL(15, 7, static_cast<int32_t>(0xFF000000u));
    for (int32_t x = 0; x < 16; ++x) image->PIXEL(x, 3, static_cast<int32_t>(0xFF000000u | (x * 16) << 8));
    return image;
  }
  // The largest difference of any channel of any pixel.
  static int maxDifference(const Ref<cls_DrawImage>& a, const Ref<cls_DrawImage>& b) {
    int worst = 0;
    for (int32_t y = 0; y < a->HEIGHT(); ++y)
      for (int32_t x = 0; x < a->WIDTH(); ++x)
        for (int shift : {0, 8, 16, 24})
          worst = std::max(worst, std::abs(int(uint32_t(a->PIXEL(x, y)) >> shift & 0xFF) -
                                           int(uint32_t(b->PIXEL(x, y)) >> shift & 0xFF)));
    return worst;
  }

  std::filesystem::path dir_ = std::filesystem::temp_directory_path() / ("tessel-images-" + std::to_string(getpid()));
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

TEST_F(ImageFiles, EveryFormatRoundTrips) {
  auto original = pattern();
  // Lossless formats give every pixel back; GIF keeps a fixed palette of 5 bits a channel.
  for (auto [type, name, tolerance] : {std::tuple{u"image/png", "a.png", 0}, {u"IMAGE/BMP", "a.bmp", 0},
                                       {u"image/tiff", "a.tif", 0}, {u"image/gif", "a.gif", 8}}) {
    ASSERT_TRUE(original->SAVE(file(name), type, 95)) << name;
    // A new file gets the mode the umask gives, whichever encoder wrote it.
    EXPECT_EQ(std::filesystem::status(dir_ / name).permissions(), std::filesystem::status(dir_ / "a.png").permissions())
        << name;
    EXPECT_EQ(original->FILENAME(), file(name));
    auto back = factory()->LOAD(file(name));
    EXPECT_EQ(back->FILENAME(), file(name));
    ASSERT_EQ(back->WIDTH(), 16);
    EXPECT_LE(maxDifference(original, back), tolerance) << name;
  }
  // JPEG is lossy: flat areas come back close, and the quality shows in the size.
  auto halves = factory()->CREATE(32, 16, Variant(u"#C02040"));
  for (int32_t y = 0; y < 16; ++y)
    for (int32_t x = 16; x < 32; ++x) halves->PIXEL(x, y, static_cast<int32_t>(0xFF3060E0u));
  halves->SAVE(file("a.jpg"), u"image/jpeg", 95);
  auto jpeg = factory()->LOAD(file("a.jpg"));
  for (auto [x, y] : {std::pair{3, 8}, {28, 8}})
    for (int shift : {0, 8, 16})
      EXPECT_NEAR(uint32_t(jpeg->PIXEL(x, y)) >> shift & 0xFF, uint32_t(halves->PIXEL(x, y)) >> shift & 0xFF, 6);
  auto detail = original->CLONE()->RESIZE(128, 64);
  auto size = [&](int32_t quality) {
    detail->SAVE(file("q.jpg"), u"IMAGE/JPEG", quality);
    return std::filesystem::file_size(dir_ / "q.jpg");
  };
  EXPECT_LT(size(15), size(90));
  EXPECT_EQ(size(-20), size(0));  // clamped
  EXPECT_EQ(size(150), size(100));
  // A translucent pixel is written straight, not premultiplied.
  original->PIXEL(5, 5, static_cast<int32_t>(0x80FF8040u));
  original->SAVE(file("t.png"));
  EXPECT_EQ(factory()->LOAD(file("t.png"))->PIXEL(5, 5), original->PIXEL(5, 5));
}

TEST_F(ImageFiles, SaveFailures) {
  auto image = pattern();
  Error e = raisedBy([&] { image->SAVE(file("a.webp"), u"image/webp"); });
  EXPECT_EQ(e.number(), objectError(5));
  EXPECT_EQ(e.description(), "Ungültiger Parameter (5)");
  EXPECT_EQ(raisedNumber([&] { make<cls_DrawImage>()->SAVE(file("empty.png")); }), objectError(5));
  // A folder that does not exist: a file error, whose dialog offers abort, retry and ignore.
  capture_.answers = {MsgResult::Abort, MsgResult::Ignore};
  EXPECT_EQ(raisedNumber([&] { image->SAVE(file("no/such/folder.png")); }), objectError(75));
  EXPECT_FALSE(image->SAVE(toUtf16(dir_.string())));  // a folder is no file; ignored: False
  ASSERT_EQ(capture_.shown.size(), 2u);
  EXPECT_EQ(capture_.shown[0].title, "Datei-Fehler!");
  EXPECT_FALSE(std::filesystem::exists(dir_ / "no"));
  EXPECT_TRUE(image->FILENAME().empty());
}

TEST_F(ImageFiles, MissingFileDialogAnswers) {
  auto image = factory()->CREATE(2, 2);
  const int64_t kept = image->HANDLE();
  const std::u16string missing = file("later.png");
  // Abort: the error reaches the caller, after one dialog that names the file.
  capture_.answers = {MsgResult::Abort};
  Error e = raisedBy([&] { image->LOAD(missing); });
  EXPECT_EQ(e.number(), objectError(53));
  EXPECT_EQ(e.source(), "cls_DrawImage.LOAD");
  ASSERT_EQ(capture_.shown.size(), 1u);
  EXPECT_NE(capture_.shown[0].prompt.find(toUtf8(missing)), std::string::npos);
  // Ignore: the image comes back as it was.
  capture_.answers = {MsgResult::Ignore};
  EXPECT_EQ(image->LOAD(missing), image);
  EXPECT_EQ(image->HANDLE(), kept);
  EXPECT_TRUE(image->FILENAME().empty());
  // Retry: the file is there by then, and is read.
  setMessageBoxHandler([&](const MsgBoxRequest& r) {
    capture_.shown.push_back(r);
    pattern()->SAVE(missing);
    return MsgResult::Retry;
  });
  EXPECT_EQ(image->LOAD(missing)->WIDTH(), 16);
  EXPECT_EQ(image->FILENAME(), missing);
  // Through the factory's layers the failed access is still one question.
  capture_.shown.clear();
  setMessageBoxHandler([&](const MsgBoxRequest& r) {
    capture_.shown.push_back(r);
    return MsgResult::Abort;
  });
  EXPECT_EQ(raisedNumber([&] { factory()->LOAD(file("gone.png")); }), objectError(53));
  EXPECT_EQ(capture_.shown.size(), 1u);
  // The factory ignored: an empty image.
  ErrorCapture ignoring;  // answers Ignore
  EXPECT_EQ(factory()->AUTO(Variant(file("gone.png")))->HANDLE(), 0);
  EXPECT_EQ(factory()->LOAD(file("gone.png"))->HANDLE(), 0);
}

TEST_F(ImageFiles, DamagedFilesAreNoImages) {
  auto image = pattern();
  const int64_t kept = image->HANDLE();
  for (auto [type, name] : {std::pair{u"image/png", "a.png"}, {u"image/jpeg", "a.jpg"}, {u"image/bmp", "a.bmp"},
                            {u"image/gif", "a.gif"}, {u"image/tiff", "a.tif"}}) {
    image->SAVE(file(name), type);
    std::filesystem::resize_file(dir_ / name, std::filesystem::file_size(dir_ / name) / 2);
    EXPECT_EQ(raisedNumber([&] { image->LOAD(file(name)); }), objectError(481)) << name << " cut in half";
  }
  std::ofstream(dir_ / "junk.png") << "not an image at all";
  std::ofstream(dir_ / "empty.png");
  for (const char* bad : {"junk.png", "empty.png", ""})
    EXPECT_EQ(raisedNumber([&] { image->LOAD(file(bad)); }), objectError(481)) << bad;
  EXPECT_EQ(image->HANDLE(), kept);
  EXPECT_EQ(image->FILENAME(), file("a.tif"));  // the last file saved
}

TEST_F(Images, ResizeResamplesWithoutFadingTheEdges) {
  auto image = factory()->CREATE(30, 20, Variant(u"#2060A0"));
  image->RESIZE(7, 50);
  EXPECT_EQ(image->WIDTH(), 7);
  EXPECT_EQ(image->HEIGHT(), 50);
  for (auto [x, y] : {std::pair{0, 0}, {6, 49}, {3, 25}}) EXPECT_EQ(uint32_t(image->PIXEL(x, y)), 0xFF2060A0u);
  // The aspect kept: the largest such image inside the box.
  EXPECT_EQ(image->RESIZE(100, 100, true)->WIDTH(), 14);
  EXPECT_EQ(image->HEIGHT(), 100);
  EXPECT_EQ(image->RESIZE(1, 1000, true)->HEIGHT(), 7);
  // A black and white edge stays an edge, and overshoot never leaves the channel range.
  auto edge = factory()->CREATE(8, 1, Variant(u"#000000"));
  for (int32_t x = 4; x < 8; ++x) edge->PIXEL(x, 0, -1);
  edge->RESIZE(32, 1);
  EXPECT_EQ(uint32_t(edge->PIXEL(0, 0)), 0xFF000000u);
  EXPECT_EQ(uint32_t(edge->PIXEL(31, 0)), 0xFFFFFFFFu);
  const int64_t kept = image->HANDLE();
  for (auto [w, h] : {std::pair{0, 5}, {5, 40000}}) EXPECT_EQ(raisedNumber([&] { image->RESIZE(w, h); }), objectError(5));
  EXPECT_EQ(image->HANDLE(), kept);
  EXPECT_EQ(raisedNumber([&] { make<cls_DrawImage>()->RESIZE(5, 5); }), objectError(5));
}

TEST_F(Images, ClonesAndPicturesCopyThePixels) {
  auto image = factory()->CREATE(5, 4, Variant(u"#102030"));
  image->PIXEL(4, 3, static_cast<int32_t>(0x80FF0000u));  // translucent: copies keep it as it is
  EXPECT_EQ(factory()->AUTO(Variant(factory()->AUTO(Variant(image->PICTURE()))->PICTURE()))->PIXEL(4, 3),
            image->PIXEL(4, 3));
  auto copy = image->CLONE();
  copy->PIXEL(1, 1, -1);
  EXPECT_EQ(uint32_t(image->PIXEL(1, 1)), 0xFF102030u);
  EXPECT_EQ(make<cls_DrawImage>()->CLONE()->HANDLE(), 0);

  Ref<Picture> picture = copy->PICTURE();
  EXPECT_EQ(picture->Type(), Picture::kPictureBitmap);
  EXPECT_EQ(picture->Width(), 5);
  EXPECT_NE(picture->Handle(), copy->HANDLE());
  copy->DELETE();  // the picture has a copy of its own
  auto back = factory()->AUTO(Variant(picture));
  EXPECT_EQ(uint32_t(back->PIXEL(1, 1)), 0xFFFFFFFFu);
  EXPECT_EQ(make<cls_DrawImage>()->PICTURE()->Type(), Picture::kPictureNone);
  EXPECT_EQ(factory()->AUTO(Variant(make<Picture>()))->HANDLE(), 0);
}

TEST_F(Images, LentMemoryIsTheBitmapAndPinsIt) {
  auto image = factory()->CREATE(3, 2, Variant(u"#FF8000"));
  ExportedBuffer view;
  ASSERT_TRUE(image->exportBuffer(view));
  EXPECT_EQ(view.rows, 2);
  EXPECT_EQ(view.columns, 3);
  auto* bytes = static_cast<uint8_t*>(view.data);
  EXPECT_EQ(bytes[0] | bytes[1] << 8 | bytes[2] << 16 | bytes[3] << 24, 0xFFFF8000);  // BGRA
  bytes[view.rowStride + 4] = 0xFF;  // blue of pixel (1, 1)
  EXPECT_EQ(uint32_t(image->PIXEL(1, 1)), 0xFFFF80FFu);
  for (auto replace : std::initializer_list<std::function<void()>>{
           [&] { image->RESIZE(4, 4); }, [&] { image->CREATE(2, 2); }, [&] { image->DELETE(); }})
    EXPECT_EQ(raisedNumber(replace), objectError(10));
  EXPECT_EQ(image->WIDTH(), 3);
  image->unexportBuffer();
  EXPECT_EQ(image->RESIZE(4, 4)->WIDTH(), 4);
  EXPECT_EQ(image->toPng().substr(1, 3), "PNG");
  EXPECT_FALSE(make<cls_DrawImage>()->exportBuffer(view));
  EXPECT_TRUE(make<cls_DrawImage>()->toPng().empty());
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
  capture_.answers = {MsgResult::Abort};
  EXPECT_EQ(raisedNumber([&] { f->AUTO(Variant(u"(7,x)")); }), objectError(53));  // a file name
  EXPECT_EQ(raisedNumber([&] { f->AUTO(Variant(make<cls_DrawRect>())); }), objectError(13));
}
