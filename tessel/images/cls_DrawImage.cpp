#include <tessel/images/cls_DrawImage.h>

#include <tessel/color/cls_DrawToolColor.h>
#include <tessel/core/Text.h>

#include <atomic>
#include <filesystem>
#include <system_error>

namespace tessel {

namespace gp = mdl_GDIPlus;

namespace {

constexpr int32_t kMaxSide = 32767;  // the largest surface the rasteriser makes

// A new 32-bit ARGB bitmap of the size, transparent; raises when the platform cannot make it.
gp::ImageHandle newBitmap(int32_t width, int32_t height) {
  if (width < 1 || height < 1 || width > kMaxSide || height > kMaxSide) raise(rt::InvalidCall);
  gp::GpBitmap* made = nullptr;
  if (!gp::Succeeded(gp::GdipCreateBitmapFromScan0(width, height, 0, gp::PixelFormat32bppARGB, nullptr, &made)))
    raise(rt::OutOfMemory);
  return gp::ImageHandle(made);
}

std::atomic<int64_t> gFileReads{0};  // files handed to the codecs, for cls_DrawImage::fileReads

// The file in a new 32-bit bitmap. Raises 53 or 481 without a trap, so that callers with their
// own (LOAD, the image cache) decide what the error becomes.
gp::ImageHandle readBitmap(const std::u16string& file) {
  std::error_code ec;
  const auto kind = std::filesystem::status(toUtf8(file), ec).type();
  if (kind == std::filesystem::file_type::not_found || kind == std::filesystem::file_type::none)
    raise(rt::FileNotFound, toUtf8(file));
  if (kind == std::filesystem::file_type::directory) raise(rt::InvalidPicture, toUtf8(file));
  gFileReads.fetch_add(1, std::memory_order_relaxed);
  gp::GpImage* read = nullptr;
  if (!gp::Succeeded(gp::GdipLoadImageFromFile(file.c_str(), &read))) raise(rt::InvalidPicture, toUtf8(file));
  gp::ImageHandle held(read);
  uint32_t width = 0, height = 0;
  gp::GdipGetImageWidth(read, &width);
  gp::GdipGetImageHeight(read, &height);
  // Whatever the file held (palette, 24 bits, grey), the image is 32-bit ARGB from here on.
  gp::GpBitmap* converted = nullptr;
  if (width == 0 || height == 0 ||
      !gp::Succeeded(gp::GdipCloneBitmapAreaI(0, 0, static_cast<int>(width), static_cast<int>(height),
                                              gp::PixelFormat32bppARGB, static_cast<gp::GpBitmap*>(read),
                                              &converted)))
    raise(rt::InvalidPicture, toUtf8(file));
  return gp::ImageHandle(converted);
}

}  // namespace

Ref<cls_DrawImage> cls_DrawImage::CREATE(Call, int32_t pWidth, int32_t pHeight, const Variant& pColor) {
  gp::ImageHandle made = newBitmap(pWidth, pHeight);
  if (!pColor.isMissing()) {
    const gp::ARGB argb = ColorArgb(pColor);
    gp::GpGraphics* g = nullptr;
    gp::Check(gp::GdipGetImageGraphicsContext(made.get(), &g));
    gp::GraphicsHandle graphics(g);
    gp::Check(gp::GdipGraphicsClear(g, argb));
  }
  native_.adopt(made.release());
  return Ref<cls_DrawImage>(this);
}

int64_t cls_DrawImage::fileReads() noexcept { return gFileReads.load(std::memory_order_relaxed); }

Ref<cls_DrawImage> cls_DrawImage::read(const std::u16string& file) {
  gp::ImageHandle bitmap = readBitmap(file);
  auto image = make<cls_DrawImage>();
  image->native_.adopt(bitmap.release());
  return image;
}

Ref<cls_DrawImage> cls_DrawImage::LOAD(Call, const std::u16string& pFile) {
  native_.adopt(readBitmap(pFile).release());
  return Ref<cls_DrawImage>(this);
}

float cls_DrawImage::WIDTH(Get) const {
  uint32_t width = 0;
  if (!native_.empty()) gp::GdipGetImageWidth(native_.get(), &width);
  return static_cast<float>(width);
}

float cls_DrawImage::HEIGHT(Get) const {
  uint32_t height = 0;
  if (!native_.empty()) gp::GdipGetImageHeight(native_.get(), &height);
  return static_cast<float>(height);
}

int64_t cls_DrawImage::HANDLE(Get) const { return native_.handleValue(); }

void cls_DrawImage::checkPixel(int32_t x, int32_t y) const {
  if (native_.empty() || x < 0 || y < 0 || x >= static_cast<int32_t>(WIDTH()) || y >= static_cast<int32_t>(HEIGHT()))
    raise(rt::InvalidCall);
}

int32_t cls_DrawImage::PIXEL(Get, int32_t pX, int32_t pY) const {
  checkPixel(pX, pY);
  gp::ARGB argb = 0;
  gp::Check(gp::GdipBitmapGetPixel(bitmap(), pX, pY, &argb));
  return static_cast<int32_t>(argb);
}

void cls_DrawImage::PIXEL(Let, int32_t pX, int32_t pY, int32_t RHS) {
  checkPixel(pX, pY);
  gp::Check(gp::GdipBitmapSetPixel(bitmap(), pX, pY, static_cast<gp::ARGB>(RHS)));
}

Ref<cls_DrawImage> cls_DrawImage::DELETE(Call) {
  native_.free();
  return Ref<cls_DrawImage>(this);
}

}  // namespace tessel
