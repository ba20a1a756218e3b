// Load, resize and save: a 1024 × 768 PNG read, resampled to 640 × 480 and written as PNG, through
// the typed image API against the raw flat API doing the same (the raw side lets libgdiplus draw
// the image scaled, which it does with cairo's default filter whatever the interpolation mode).
// The whole run is the target (at most 1.05× the raw one); the three steps are measured apart
// as well, to show where the time goes.
#include <tessel/tessel.h>

#include <benchmark/benchmark.h>

#include "Photo.h"

#include <cstdlib>
#include <filesystem>
#include <string>

#include <unistd.h>

using namespace tessel;
namespace gp = tessel::mdl_GDIPlus;

namespace {

constexpr int32_t kPhotoWidth = 1024, kPhotoHeight = 768, kWidth = 640, kHeight = 480;

// The photo as a PNG file and a place for the results, in a folder of their own that goes at exit.
struct Files {
  std::u16string photo, out;
};

const Files& files() {
  static const Files made = [] {
    const auto dir = std::filesystem::temp_directory_path() / ("tessel-bench-images-" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir);
    static const std::string folder = dir.string();
    std::atexit([] { std::filesystem::remove_all(folder); });
    Files f{toUtf16((dir / "photo.png").string()), toUtf16((dir / "out.png").string())};
    bench::photo(kPhotoWidth, kPhotoHeight)->SAVE(f.photo);
    return f;
  }();
  return made;
}

gp::ImageHandle rawLoad() {
  gp::GpImage* image = nullptr;
  gp::GdipLoadImageFromFile(files().photo.c_str(), &image);
  return gp::ImageHandle(image);
}

gp::ImageHandle rawResize(gp::GpImage* source, uint32_t width, uint32_t height) {
  gp::GpBitmap* made = nullptr;
  gp::GdipCreateBitmapFromScan0(kWidth, kHeight, 0, gp::PixelFormat32bppARGB, nullptr, &made);
  gp::ImageHandle result(made);
  gp::GpGraphics* context = nullptr;
  gp::GdipGetImageGraphicsContext(made, &context);
  gp::GraphicsHandle g(context);
  gp::GdipSetInterpolationMode(context, gp::InterpolationModeHighQualityBicubic);
  gp::GdipDrawImageRectRectI(context, source, 0, 0, kWidth, kHeight, 0, 0, static_cast<int>(width),
                             static_cast<int>(height), gp::UnitPixel, nullptr, nullptr, nullptr);
  return result;
}

void rawSave(gp::GpImage* image) {
  static const gp::GUID png = [] {
    gp::GUID id{};
    gp::GetEncoderClsid(u"image/png", id);
    return id;
  }();
  gp::GdipSaveImageToFile(image, files().out.c_str(), &png, nullptr);
}

void RoundTripRaw(benchmark::State& state) {
  files();
  for (auto _ : state) {
    gp::ImageHandle photo = rawLoad();
    uint32_t width = 0, height = 0;
    gp::GdipGetImageWidth(photo.get(), &width);
    gp::GdipGetImageHeight(photo.get(), &height);
    gp::ImageHandle small = rawResize(photo.get(), width, height);
    rawSave(small.get());
  }
}

void RoundTripTessel(benchmark::State& state) {
  const Files& f = files();
  for (auto _ : state) benchmark::DoNotOptimize(make<cls_DrawImage>()->LOAD(f.photo)->RESIZE(kWidth, kHeight)->SAVE(f.out));
}

void LoadRaw(benchmark::State& state) {
  files();
  for (auto _ : state) benchmark::DoNotOptimize(rawLoad().get());
}

void LoadTessel(benchmark::State& state) {
  const Files& f = files();
  for (auto _ : state) benchmark::DoNotOptimize(make<cls_DrawImage>()->LOAD(f.photo)->HANDLE());
}

void ResizeRaw(benchmark::State& state) {
  gp::ImageHandle photo = rawLoad();
  for (auto _ : state) benchmark::DoNotOptimize(rawResize(photo.get(), kPhotoWidth, kPhotoHeight).get());
}

// RESIZE replaces the image's bitmap, so every round starts from a fresh copy, made untimed.
void ResizeTessel(benchmark::State& state) {
  auto photo = make<cls_DrawImage>()->LOAD(files().photo);
  for (auto _ : state) {
    state.PauseTiming();
    auto copy = photo->CLONE();
    state.ResumeTiming();
    copy->RESIZE(kWidth, kHeight);
  }
}

void SaveRaw(benchmark::State& state) {
  gp::ImageHandle photo = rawLoad();
  gp::ImageHandle small = rawResize(photo.get(), kPhotoWidth, kPhotoHeight);
  for (auto _ : state) rawSave(small.get());
}

void SaveTessel(benchmark::State& state) {
  auto small = make<cls_DrawImage>()->LOAD(files().photo)->RESIZE(kWidth, kHeight);
  for (auto _ : state) benchmark::DoNotOptimize(small->SAVE(files().out));
}

}  // namespace

BENCHMARK(RoundTripRaw)->Name("ImageLoadResizeSave/baseline");
BENCHMARK(RoundTripTessel)->Name("ImageLoadResizeSave/tessel");
BENCHMARK(LoadRaw)->Name("ImageLoad/baseline");
BENCHMARK(LoadTessel)->Name("ImageLoad/tessel");
BENCHMARK(ResizeRaw)->Name("ImageResize/baseline");
BENCHMARK(ResizeTessel)->Name("ImageResize/tessel");
BENCHMARK(SaveRaw)->Name("ImageSave/baseline");
BENCHMARK(SaveTessel)->Name("ImageSave/tessel");
