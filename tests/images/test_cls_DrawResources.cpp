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
    dir_ = fs::temp_directory_path() / ("tessel-resources-" + std::to_string(getpid()));
    fs::create_directories(dir_);
    start_ = gp::ImageHandle::live();
  }
  void TearDown() override {
    mdl_Global::DRAW()->RESOURCES()->CLEAR();
    EXPECT_EQ(gp::ImageHandle::live(), start_);
    fs::remove_all(dir_);
  }

  // A real PNG file of the size, filled with one colour.
  fs::path writePng(const std::string& name, int32_t side) {
    const fs::path file = dir_ / name;
    auto image = mdl_Global::DRAW()->Image()->CREATE(side, side, Variant(u"#2F6690"));
    gp::GUID png;
    EXPECT_TRUE(gp::GetEncoderClsid(u"image/png", png));
    const std::u16string path = toUtf16(file.string());
    EXPECT_EQ(gp::GdipSaveImageToFile(image->bitmap(), path.c_str(), &png, nullptr), gp::GpStatus::OK);
    return file;
  }
  void writeText(const std::string& name) { std::ofstream((dir_ / name).string()) << "not an image"; }

  static std::vector<std::u16string> names(const Ref<cls_DrawResources>& cache) {
    std::vector<std::u16string> out;
    auto list = cache->NAMES();
    for (int32_t k = 1; k <= list->count(); ++k) out.push_back(list->ITEM(k));
    return out;
  }

  ErrorCapture capture_;
  fs::path dir_;
  long start_ = 0;
};

}  // namespace

TEST_F(Resources, NamedEntriesIgnoreCaseAndKeepTheirPlace) {
  auto cache = make<cls_DrawResources>();
  auto ok = make<cls_DrawImage>()->CREATE(2, 2);
  EXPECT_EQ(cache->ADD(u"Ok", Variant(ok)), ok);  // an image as it is, not a copy
  cache->ADD(u"blank", Variant(u"(3,4)"));
  cache->ADD(u"dot", Variant(int32_t(1)));
  EXPECT_EQ(cache->ITEM(u"OK"), ok);
  EXPECT_EQ(cache->ITEM(u"BLANK")->HEIGHT(), 4);

  // Replacing keeps the place and takes the new spelling; NAMES is a snapshot.
  auto before = cache->NAMES();
  cache->ADD(u"BLANK", Variant(u"5,5"));
  EXPECT_EQ(names(cache), (std::vector<std::u16string>{u"Ok", u"BLANK", u"dot"}));
  EXPECT_EQ(before->ITEM(2), u"blank");
  EXPECT_EQ(raisedNumber([&] { before->ITEM(4); }), objectError(9));
  EXPECT_EQ(cache->ITEM(u"blank")->WIDTH(), 5);

  EXPECT_TRUE(cache->REMOVE(u"ok"));
  EXPECT_FALSE(cache->REMOVE(u"ok"));
  EXPECT_FALSE(cache->EXISTS(u"Ok"));
  EXPECT_EQ(cache->count(), 2);
  const Error missing = raisedBy([&] { cache->ITEM(u"ok"); });
  EXPECT_EQ(missing.number(), objectError(5));
  EXPECT_EQ(missing.source(), "cls_DrawResources.ITEM");
  // A bad image leaves the cache as it was.
  EXPECT_EQ(raisedNumber([&] { cache->ADD(u"dot", Variant(u"(0,3)")); }), objectError(5));
  EXPECT_EQ(cache->ITEM(u"dot")->WIDTH(), 1);

  EXPECT_EQ(cache->CLEAR()->count(), 0);
  ok = nullptr;
  EXPECT_EQ(gp::ImageHandle::live(), start_);
}

TEST_F(Resources, LoadFolderTakesMatchingImagesInOrderAndSkipsStrayFiles) {
  writePng("b.png", 2);
  writePng("A.png", 3);
  writePng(".hidden.png", 2);
  writePng("icon.bmp.png", 2);
  writeText("README.png");
  writeText("notes.txt");
  fs::create_directory(dir_ / "sub");
  writePng("sub/deep.png", 2);

  auto cache = make<cls_DrawResources>();
  EXPECT_EQ(cache->LOADFOLDER(toUtf16(dir_.string())), 3);
  EXPECT_EQ(names(cache), (std::vector<std::u16string>{u"A", u"b", u"icon.bmp"}));
  EXPECT_EQ(cache->ITEM(u"a")->WIDTH(), 3);
  EXPECT_EQ(cache->LOADFOLDER(toUtf16(dir_.string()), u".h*"), 1);
  EXPECT_TRUE(cache->EXISTS(u".hidden"));
  EXPECT_EQ(cache->LOADFOLDER(toUtf16(dir_.string()), u"*.PNG"), 0);  // as case-sensitive as the files

  // No such folder, or a file where the folder should be: 76, after the file-error dialog.
  for (const fs::path& bad : {dir_ / "nowhere", dir_ / "b.png"}) {
    capture_.answers = {MsgResult::Abort};
    EXPECT_EQ(raisedNumber([&] { cache->LOADFOLDER(toUtf16(bad.string())); }), objectError(76));
  }
  EXPECT_EQ(capture_.shown.size(), 2u);
  EXPECT_EQ(cache->count(), 4);
}

TEST_F(Resources, AutoReadsAFileOnceUntilItChanges) {
  auto images = mdl_Global::DRAW()->Image();
  auto cache = mdl_Global::DRAW()->RESOURCES();
  const fs::path file = writePng("icon.png", 4);
  const int64_t reads = cls_DrawImage::fileReads();
  auto first = images->AUTO(Variant(toUtf16(file.string())));
  // Another spelling of the same path is the same entry.
  EXPECT_EQ(images->AUTO(Variant(toUtf16((dir_ / "sub" / ".." / "." / "icon.png").string()))), first);
  EXPECT_EQ(cls_DrawImage::fileReads(), reads + 1);
  EXPECT_EQ(names(cache), std::vector<std::u16string>{toUtf16(file.string())});
  // LOAD always reads, and makes an image of its own.
  EXPECT_NE(images->LOAD(toUtf16(file.string())), first);
  EXPECT_EQ(cls_DrawImage::fileReads(), reads + 2);
  first->DELETE();  // emptied by one user: read again, not handed out empty
  first = images->AUTO(Variant(toUtf16(file.string())));
  EXPECT_EQ(first->WIDTH(), 4);
  EXPECT_EQ(cls_DrawImage::fileReads(), reads + 3);

  writePng("icon.png", 6);
  fs::last_write_time(file, fs::last_write_time(file) + std::chrono::seconds(5));
  auto second = images->AUTO(Variant(toUtf16(file.string())));
  EXPECT_EQ(second->WIDTH(), 6);
  EXPECT_EQ(first->WIDTH(), 4);  // whoever holds the old image keeps it
  EXPECT_EQ(cache->count(), 1);

  // Failures reach the caller as before, one dialog for a missing file, and nothing is kept.
  writeText("junk.png");
  capture_.answers = {MsgResult::Abort};
  EXPECT_EQ(raisedNumber([&] { images->AUTO(Variant(toUtf16((dir_ / "gone.png").string()))); }), objectError(53));
  EXPECT_EQ(capture_.shown.size(), 1u);
  EXPECT_EQ(raisedNumber([&] { images->AUTO(Variant(toUtf16((dir_ / "junk.png").string()))); }), objectError(481));
  EXPECT_EQ(cache->count(), 1);
}
