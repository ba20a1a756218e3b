#include <tessel/images/cls_DrawImage.h>

#include <tessel/color/cls_DrawToolColor.h>
#include <tessel/core/Resample.h>
#include <tessel/core/Text.h>
#include <tessel/core/mdl_Err.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tessel {

namespace gp = mdl_GDIPlus;

namespace {

constexpr int32_t kMaxSide = 32767;  // the largest surface the rasteriser makes

bool validSide(int32_t side) { return side >= 1 && side <= kMaxSide; }

// A new premultiplied bitmap of the size, transparent; raises when the platform cannot make it.
gp::ImageHandle newBitmap(int32_t width, int32_t height) {
  if (!validSide(width) || !validSide(height)) raise(rt::InvalidCall);
  gp::GpBitmap* made = nullptr;
  if (!gp::Succeeded(gp::GdipCreateBitmapFromScan0(width, height, 0, gp::PixelFormat32bppPARGB, nullptr, &made)))
    raise(rt::OutOfMemory);
  return gp::ImageHandle(made);
}

gp::GpBitmap* asBitmap(const gp::ImageHandle& h) { return static_cast<gp::GpBitmap*>(h.get()); }

// A bitmap's memory. Locked for reading in its own format, libgdiplus hands out the bitmap's
// own rows and copies nothing back on unlocking; the rows stay where they are while the bitmap
// lives.
struct Rows {
  uint8_t* scan0 = nullptr;
  int32_t stride = 0;
  uint32_t width = 0;
  uint32_t height = 0;
  uint32_t* row(uint32_t y) const { return reinterpret_cast<uint32_t*>(scan0 + static_cast<ptrdiff_t>(y) * stride); }
};

// Locks `bitmap` for reading in `format` and hands the rows to `use` before unlocking; false when
// the platform would not lock it.
template <class F>
bool withRows(gp::GpBitmap* bitmap, gp::PixelFormat format, F&& use) {
  gp::BitmapData data{};
  if (!gp::Succeeded(gp::GdipBitmapLockBits(bitmap, nullptr, gp::ImageLockModeRead, format, &data))) return false;
  use(Rows{static_cast<uint8_t*>(data.Scan0), data.Stride, data.Width, data.Height});
  gp::GdipBitmapUnlockBits(bitmap, &data);
  return true;
}

// The rows of one of the image's own bitmaps, which are premultiplied already.
Rows ownRows(gp::GpBitmap* bitmap) {
  Rows rows;
  withRows(bitmap, gp::PixelFormat32bppPARGB, [&](const Rows& r) { rows = r; });
  return rows;
}

uint32_t premultiplied(uint32_t argb) {
  const uint32_t a = argb >> 24;
  if (a == 255) return argb;
  if (a == 0) return 0;
  auto channel = [&](int shift) { return (((argb >> shift) & 0xFF) * a + 127) / 255 << shift; };
  return (a << 24) | channel(16) | channel(8) | channel(0);
}

uint32_t straight(uint32_t pargb) {
  const uint32_t a = pargb >> 24;
  if (a == 255 || a == 0) return pargb;
  auto channel = [&](int shift) { return std::min<uint32_t>(255, (((pargb >> shift) & 0xFF) * 255 + a / 2) / a) << shift; };
  return (a << 24) | channel(16) | channel(8) | channel(0);
}

// A premultiplied copy of any bitmap libgdiplus can read (palette, 24 bits, grey, straight or
// premultiplied alpha). libgdiplus converts to straight ARGB on locking, except that it copies a
// premultiplied bitmap's bytes as they are; the premultiplication is ours. Null when the
// bitmap's pixels cannot be read.
gp::ImageHandle premultipliedCopy(gp::GpBitmap* source) {
  uint32_t width = 0, height = 0;
  gp::PixelFormat format = 0;
  if (!gp::Succeeded(gp::GdipGetImageWidth(source, &width)) || !gp::Succeeded(gp::GdipGetImageHeight(source, &height)) ||
      !gp::Succeeded(gp::GdipGetImagePixelFormat(source, &format)) || !validSide(static_cast<int32_t>(width)) ||
      !validSide(static_cast<int32_t>(height)))
    return {};
  gp::ImageHandle made = newBitmap(static_cast<int32_t>(width), static_cast<int32_t>(height));
  const Rows to = ownRows(asBitmap(made));
  const bool premultipliedAlready = format == gp::PixelFormat32bppPARGB;
  const bool read = withRows(source, premultipliedAlready ? gp::PixelFormat32bppPARGB : gp::PixelFormat32bppARGB,
                             [&](const Rows& from) {
                               for (uint32_t y = 0; y < height; ++y) {
                                 if (premultipliedAlready) std::copy(from.row(y), from.row(y) + width, to.row(y));
                                 else std::transform(from.row(y), from.row(y) + width, to.row(y), premultiplied);
                               }
                             });
  return read && to.scan0 ? std::move(made) : gp::ImageHandle();
}

// A straight-ARGB copy of one of the image's bitmaps, which is what the encoders expect: they
// write a premultiplied bitmap's bytes as they are.
gp::ImageHandle straightCopy(gp::GpBitmap* bitmap) {
  const Rows from = ownRows(bitmap);
  gp::GpBitmap* made = nullptr;
  if (!from.scan0 || !gp::Succeeded(gp::GdipCreateBitmapFromScan0(static_cast<int>(from.width),
                                                                   static_cast<int>(from.height), 0,
                                                                   gp::PixelFormat32bppARGB, nullptr, &made)))
    raise(rt::OutOfMemory);
  gp::ImageHandle copy(made);
  withRows(made, gp::PixelFormat32bppARGB, [&](const Rows& to) {
    for (uint32_t y = 0; y < from.height; ++y)
      std::transform(from.row(y), from.row(y) + from.width, to.row(y), straight);
  });
  return copy;
}

std::atomic<int64_t> gFileReads{0};  // files handed to the codecs, for cls_DrawImage::fileReads

std::string fileText(int32_t number, const std::u16string& file) {
  return runtimeErrorText(number) + ": " + toUtf8(file);
}

// libjpeg decodes a JPEG cut short with a warning and fills the missing rows with grey, and
// libgdiplus takes that for success. A whole JPEG ends its scans with an end-of-image marker;
// inside the compressed data a 0xFF byte is always followed by 0x00 or a restart marker, so the
// marker cannot occur there by chance. Markers before the first scan are walked by their lengths,
// which skips the thumbnail an EXIF block may carry. False only for a JPEG that is cut short.
bool jpegComplete(const std::string& path) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return true;  // the decoder reports it
  struct stat st {};
  void* map = ::fstat(fd, &st) == 0 && st.st_size > 4 ? ::mmap(nullptr, st.st_size, PROT_READ, MAP_PRIVATE, fd, 0) : MAP_FAILED;
  ::close(fd);
  if (map == MAP_FAILED) return true;
  const auto* b = static_cast<const uint8_t*>(map);
  const auto n = static_cast<size_t>(st.st_size);
  bool complete = true;
  if (b[0] == 0xFF && b[1] == 0xD8) {
    size_t at = 2;
    while (at + 4 <= n && b[at] == 0xFF && b[at + 1] != 0xDA) at += 2 + (static_cast<size_t>(b[at + 2]) << 8 | b[at + 3]);
    complete = false;
    for (size_t i = at; i + 1 < n && !complete; ++i) complete = b[i] == 0xFF && b[i + 1] == 0xD9;
  }
  ::munmap(map, n);
  return complete;
}

// The file's image, premultiplied; 53 when there is no such file, 481 when it holds no image.
gp::ImageHandle readImageFile(const std::u16string& file) {
  std::error_code ec;
  const auto kind = std::filesystem::status(toUtf8(file), ec).type();
  if (kind == std::filesystem::file_type::not_found || kind == std::filesystem::file_type::none)
    raise(rt::FileNotFound, fileText(rt::FileNotFound, file));
  if (kind == std::filesystem::file_type::directory) raise(rt::InvalidPicture, fileText(rt::InvalidPicture, file));
  gFileReads.fetch_add(1, std::memory_order_relaxed);
  // Checked before decoding: libgdiplus also leaks the decoder's memory when libjpeg gives up.
  if (!jpegComplete(toUtf8(file))) raise(rt::InvalidPicture, fileText(rt::InvalidPicture, file));
  gp::GpImage* read = nullptr;
  if (!gp::Succeeded(gp::GdipLoadImageFromFile(file.c_str(), &read)))
    raise(rt::InvalidPicture, fileText(rt::InvalidPicture, file));
  gp::ImageHandle decoded(read);
  gp::ImageHandle made = premultipliedCopy(static_cast<gp::GpBitmap*>(read));
  if (!made) raise(rt::InvalidPicture, fileText(rt::InvalidPicture, file));
  return made;
}

// 75 unless the file can be created or replaced: the encoders only answer a failing status.
void checkWritable(const std::u16string& file) {
  namespace fs = std::filesystem;
  const fs::path path(toUtf8(file));
  std::error_code ec;
  const auto kind = fs::status(path, ec).type();
  const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
  const bool ok = kind == fs::file_type::not_found ? ::access(folder.c_str(), W_OK | X_OK) == 0
                                                   : kind == fs::file_type::regular && ::access(path.c_str(), W_OK) == 0;
  if (file.empty() || !ok) raise(rt::PathFileAccess, fileText(rt::PathFileAccess, file));
}

}  // namespace

void cls_DrawImage::replaceBitmap(gp::ImageHandle made) {
  if (exports_ > 0) raise(rt::ArrayLocked);
  native_.adopt(made.release());
}

Ref<cls_DrawImage> cls_DrawImage::fromBitmap(gp::GpBitmap* bitmap) {
  gp::ImageHandle made = bitmap ? premultipliedCopy(bitmap) : gp::ImageHandle();
  if (!made) raise(rt::InvalidPicture);
  auto image = make<cls_DrawImage>();
  image->native_.adopt(made.release());
  return image;
}

int64_t cls_DrawImage::fileReads() noexcept { return gFileReads.load(std::memory_order_relaxed); }

Ref<cls_DrawImage> cls_DrawImage::read(const std::u16string& file) {
  auto image = make<cls_DrawImage>();
  image->native_.adopt(readImageFile(file).release());
  image->fileName_ = file;
  return image;
}

Ref<cls_DrawImage> cls_DrawImage::CREATE(Call, int32_t pWidth, int32_t pHeight, const Variant& pColor) {
  gp::ImageHandle made = newBitmap(pWidth, pHeight);
  if (!pColor.isMissing()) {
    const gp::ARGB argb = ColorArgb(pColor);
    gp::GpGraphics* g = nullptr;
    gp::Check(gp::GdipGetImageGraphicsContext(made.get(), &g));
    gp::GraphicsHandle graphics(g);
    gp::Check(gp::GdipGraphicsClear(g, argb));
  }
  replaceBitmap(std::move(made));
  return Ref<cls_DrawImage>(this);
}

// In steps, so that a file error's dialog answered with Ignore still returns the image as it was.
Ref<cls_DrawImage> cls_DrawImage::LOAD(Procedure& p, const std::u16string& pFile) {
  gp::ImageHandle read;
  p.step([&] {
    if (exports_ > 0) raise(rt::ArrayLocked);
    read = readImageFile(pFile);
  });
  if (read) {
    native_.adopt(read.release());
    fileName_ = pFile;
  }
  return Ref<cls_DrawImage>(this);
}

bool cls_DrawImage::SAVE(Call, const std::u16string& pFile, const std::u16string& pType, int32_t pQuality) {
  gp::GUID encoder{};
  if (native_.empty() || !gp::GetEncoderClsid(pType, encoder)) raise(rt::InvalidCall);
  checkWritable(pFile);
  gp::ImageHandle copy = straightCopy(bitmap());
  // Only the JPEG encoder reads a quality; the others ignore the parameter.
  int32_t quality = std::clamp(pQuality, 0, 100);
  gp::EncoderParameters params{1, {{gp::EncoderQuality, 1, gp::EncoderParameterValueTypeLong, &quality}}};
  // A new file is made here first, with the mode the umask gives: the GIF encoder would make it
  // readable by its owner only.
  const std::string path = toUtf8(pFile);
  const int made = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (made >= 0) ::close(made);
  if (!gp::Succeeded(gp::GdipSaveImageToFile(copy.get(), pFile.c_str(), &encoder, &params))) {
    if (made >= 0) ::unlink(path.c_str());
    return false;
  }
  fileName_ = pFile;
  return true;
}

int32_t cls_DrawImage::side(bool height) const {
  uint32_t n = 0;
  if (!native_.empty()) (height ? gp::GdipGetImageHeight : gp::GdipGetImageWidth)(native_.get(), &n);
  return static_cast<int32_t>(n);
}

float cls_DrawImage::WIDTH(Get) const { return static_cast<float>(side(false)); }
float cls_DrawImage::HEIGHT(Get) const { return static_cast<float>(side(true)); }
int64_t cls_DrawImage::HANDLE(Get) const { return native_.handleValue(); }
std::u16string cls_DrawImage::FILENAME(Get) const { return fileName_; }

Ref<cls_DrawImage> cls_DrawImage::RESIZE(Call, int32_t pWidth, int32_t pHeight, bool pKeepAspectRatio) {
  if (native_.empty() || !validSide(pWidth) || !validSide(pHeight)) raise(rt::InvalidCall);
  const int32_t width = side(false), height = side(true);
  if (pKeepAspectRatio) {
    const double scale = std::min(static_cast<double>(pWidth) / width, static_cast<double>(pHeight) / height);
    pWidth = std::clamp(static_cast<int32_t>(std::lround(width * scale)), 1, pWidth);
    pHeight = std::clamp(static_cast<int32_t>(std::lround(height * scale)), 1, pHeight);
  }
  gp::ImageHandle made = newBitmap(pWidth, pHeight);
  const Rows from = ownRows(bitmap()), to = ownRows(asBitmap(made));
  if (!from.scan0 || !to.scan0) raise(rt::OutOfMemory);
  ResampleBicubic(PixelRows{from.scan0, width, height, from.stride}, PixelRows{to.scan0, pWidth, pHeight, to.stride});
  replaceBitmap(std::move(made));
  return Ref<cls_DrawImage>(this);
}

void cls_DrawImage::checkPixel(int32_t x, int32_t y) const {
  if (native_.empty() || x < 0 || y < 0 || x >= side(false) || y >= side(true)) raise(rt::InvalidCall);
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

Ref<Picture> cls_DrawImage::PICTURE(Get) const { return Picture::copyOf(bitmap()); }

Ref<cls_DrawImage> cls_DrawImage::CLONE(Call) const {
  auto copy = make<cls_DrawImage>();
  copy->fileName_ = fileName_;
  if (native_.empty()) return copy;
  gp::GpBitmap* pixels = nullptr;
  if (!gp::Succeeded(gp::GdipCloneBitmapAreaI(0, 0, side(false), side(true), gp::PixelFormat32bppPARGB, bitmap(), &pixels)))
    raise(rt::OutOfMemory);
  copy->native_.adopt(pixels);
  return copy;
}

Ref<cls_DrawImage> cls_DrawImage::DELETE(Call) {
  if (exports_ > 0) raise(rt::ArrayLocked);
  native_.free();
  return Ref<cls_DrawImage>(this);
}

bool cls_DrawImage::exportBuffer(ExportedBuffer& view) {
  if (native_.empty()) return false;
  const Rows rows = ownRows(bitmap());
  if (!rows.scan0) return false;
  view = ExportedBuffer{rows.scan0, rows.height, rows.width, 4, rows.stride, "BGRA"};
  ++exports_;
  return true;
}

void cls_DrawImage::unexportBuffer() noexcept {
  if (exports_ > 0) --exports_;
}

// libgdiplus writes files only, so the PNG goes to a file that lives in memory. A host asks
// outside any trap: a failure is an empty answer.
std::string cls_DrawImage::toPng() try {
  gp::GUID png{};
  if (native_.empty() || !gp::GetEncoderClsid(u"image/png", png)) return {};
  gp::ImageHandle copy = straightCopy(bitmap());
  const int fd = ::memfd_create("tessel-png", MFD_CLOEXEC);
  if (fd < 0) return {};
  std::string bytes;
  const std::u16string name = toUtf16("/proc/self/fd/" + std::to_string(fd));
  if (gp::Succeeded(gp::GdipSaveImageToFile(copy.get(), name.c_str(), &png, nullptr))) {
    const off_t size = ::lseek(fd, 0, SEEK_END);
    bytes.resize(size > 0 ? static_cast<size_t>(size) : 0);
    if (::pread(fd, bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) bytes.clear();
  }
  ::close(fd);
  return bytes;
} catch (...) {
  return {};
}

}  // namespace tessel
