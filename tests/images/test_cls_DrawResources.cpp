// The image cache: named entries and their order, folders of images, and the root's cache
// behind the factory's AUTO, which reads a file once while it stays unchanged.
#include <tessel/core/Text.h>
#include <tessel/root/cls_DrawTool.h>

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "TestSupport.h"
#include "core/ErrorCapture.h"

using namespace tessel;
namespace gp = tessel::mdl_GDIPlus;
namespace fs = std::filesystem;

namespace {

class Resources : public testing::Test {
 protected:
  void SetUp() override {
    mdl_Global::DRAW()->INIT();
    fs::create_directories(dir_);
    start_ = gp::ImageHandle::live();
  }
  void TearDown() override {
    mdl_Global::DRAW()->RESOURCES()->CLEAR();
    EXPECT_EQ(gp::ImageHandle::live(), start_);
    fs::remove_all(dir_);
  }
  // A real PNG file of side × side pixels; any other text for a file that is no image.
  std::u16string write(const std::string& name, int32_t side, const char* text = nullptr) {
    const std::u16string file = toUtf16((dir_ / name).string());
    if (text) {
      std::ofstream(dir_ / name) << text;
    } else {
      gp::GUID png;
      EXPECT_TRUE(gp::GetEncoderClsid(u"image/png", png));
      auto image = make<cls_DrawImage>()->CREATE(side, side);
      EXPECT_EQ(gp::GdipSaveImageToFile(image->bitmap(), file.c_str(), &png, nullptr), gp::GpStatus::OK);
    }
    return file;
  }
  static std::vector<std::u16string> names(const Ref<cls_DrawResources>& cache) {
    std::vector<std::u16string> out;
    for (int32_t k = 1; k <= cache->count(); ++k) out.push_back(cache->NAMES()->ITEM(k));
    return out;
  }

  ErrorCapture capture_;
  fs::path dir_ = fs::temp_directory_path() / ("tessel-resources-" + std::to_string(getpid()));
  long start_ = 0;
};

}  // namespace

TEST_F(Resources, NamedEntriesIgnoreCaseAndKeepTheirPlace) {
  auto cache = make<cls_DrawResources>();
  auto ok = make<cls_DrawImage>()->CREATE(2, 2);
  EXPECT_EQ(cache->ADD(u"Ok", Variant(ok)), ok);  // as it is, not a copy
  cache->ADD(u"blank", Variant(u"(3,4)"));
  cache->ADD(u"dot", Variant(int32_t(1)));
  EXPECT_EQ(cache->ITEM(u"OK"), ok);

  // Replacing keeps the place and takes the new spelling; NAMES is a snapshot.
  auto before = cache->NAMES();
  cache->ADD(u"BLANK", Variant(u"5,5"));
  EXPECT_EQ(names(cache), (std::vector<std::u16string>{u"Ok", u"BLANK", u"dot"}));
  EXPECT_EQ(cache->ITEM(u"blank")->WIDTH(), 5);
  EXPECT_EQ(before->ITEM(2), u"blank");
  EXPECT_EQ(raisedNumber([&] { before->ITEM(4); }), objectError(9));

  EXPECT_TRUE(cache->REMOVE(u"ok"));
  EXPECT_FALSE(cache->EXISTS(u"Ok"));
  const Error missing = raisedBy([&] { cache->ITEM(u"ok"); });
  EXPECT_EQ(missing.number(), objectError(5));
  EXPECT_EQ(missing.source(), "cls_DrawResources.ITEM");
  EXPECT_EQ(raisedNumber([&] { cache->ADD(u"dot", Variant(u"(0,3)")); }), objectError(5));
  EXPECT_EQ(cache->ITEM(u"dot")->WIDTH(), 1);  // a bad image changes nothing
}

TEST_F(Resources, LoadFolderTakesMatchingImagesInOrderAndSkipsStrayFiles) {
  for (const char* name : {"b.png", "A.png", ".hidden.png", "icon.bmp.png"}) write(name, 3);
  write("README.png", 0, "not an image");
  fs::create_directory(dir_ / "sub");
  write("sub/deep.png", 2);
  const std::u16string dir = toUtf16(dir_.string());

  auto cache = make<cls_DrawResources>();
  EXPECT_EQ(cache->LOADFOLDER(dir), 3);
  EXPECT_EQ(names(cache), (std::vector<std::u16string>{u"A", u"b", u"icon.bmp"}));
  EXPECT_EQ(cache->LOADFOLDER(dir, u".h*"), 1);
  EXPECT_EQ(cache->LOADFOLDER(dir, u"*.PNG"), 0);  // as case-sensitive as the files

  // No such folder, or a file where the folder should be: 76, after the file-error dialog.
  for (const char* bad : {"nowhere", "b.png"}) {
    capture_.answers = {MsgResult::Abort};
    EXPECT_EQ(raisedNumber([&] { cache->LOADFOLDER(toUtf16((dir_ / bad).string())); }), objectError(76));
  }
  EXPECT_EQ(capture_.shown.size(), 2u);
  EXPECT_EQ(cache->count(), 4);
}

TEST_F(Resources, AutoReadsAFileOnceUntilItChanges) {
  auto images = mdl_Global::DRAW()->Image();
  const std::u16string file = write("icon.png", 4);
  const int64_t reads = cls_DrawImage::fileReads();
  auto first = images->AUTO(Variant(file));
  EXPECT_EQ(images->AUTO(Variant(toUtf16((dir_ / "sub/.././icon.png").string()))), first);  // one path
  EXPECT_NE(images->LOAD(file), first);  // LOAD always reads
  EXPECT_EQ(cls_DrawImage::fileReads(), reads + 2);
  EXPECT_EQ(names(mdl_Global::DRAW()->RESOURCES()), std::vector<std::u16string>{file});
  first->DELETE();  // emptied by one user: read again, not handed out empty
  EXPECT_EQ(images->AUTO(Variant(file))->WIDTH(), 4);

  write("icon.png", 6);
  fs::last_write_time(dir_ / "icon.png", fs::last_write_time(dir_ / "icon.png") + std::chrono::seconds(5));
  EXPECT_EQ(images->AUTO(Variant(file))->WIDTH(), 6);
  EXPECT_EQ(cls_DrawImage::fileReads(), reads + 4);

  // Failures reach the caller as before, one dialog for a missing file, and nothing is kept.
  capture_.answers = {MsgResult::Abort};
  EXPECT_EQ(raisedNumber([&] { images->AUTO(Variant(toUtf16((dir_ / "gone.png").string()))); }), objectError(53));
  EXPECT_EQ(capture_.shown.size(), 1u);
  EXPECT_EQ(raisedNumber([&] { images->AUTO(Variant(write("junk.png", 0, "junk"))); }), objectError(481));
  EXPECT_EQ(mdl_Global::DRAW()->RESOURCES()->count(), 1);
}
