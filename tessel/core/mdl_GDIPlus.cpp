#include <tessel/core/mdl_GDIPlus.h>

#include <tessel/core/Text.h>
#include <tessel/core/mdl_Err.h>
#include <tessel/core/mdl_Global.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <unordered_map>
#include <vector>

namespace tessel::mdl_GDIPlus {

// Never destroyed: a font that goes while the process ends still takes it to free itself.
std::recursive_mutex& TextLock() {
  static auto* m = new std::recursive_mutex;
  return *m;
}

int32_t LogPixelsY(HDC) noexcept { return 96; }

namespace {

// Never destroyed, like the text lock: a host window may let go of its device context while the
// process ends.
struct DeviceContexts {
  std::mutex lock;
  std::atomic<uint64_t> changes{0};  // counts every registration and withdrawal
  std::unordered_map<const GpGraphics*, uint64_t> live;  // each with the stamp of its registration
  uint64_t lastStamp = 0;
};
DeviceContexts& deviceContexts() {
  static auto* d = new DeviceContexts;
  return *d;
}

const GpGraphics* asDC(int64_t hdc) noexcept { return reinterpret_cast<const GpGraphics*>(static_cast<intptr_t>(hdc)); }

}  // namespace

void RegisterHDC(GpGraphics* dc) {
  if (!dc) return;
  auto& d = deviceContexts();
  std::lock_guard hold(d.lock);
  d.live[dc] = ++d.lastStamp;
  d.changes.fetch_add(1, std::memory_order_release);
}

void UnregisterHDC(GpGraphics* dc) noexcept {
  auto& d = deviceContexts();
  std::lock_guard hold(d.lock);
  d.live.erase(dc);
  d.changes.fetch_add(1, std::memory_order_release);
}

uint64_t HDCChanges() noexcept { return deviceContexts().changes.load(std::memory_order_acquire); }

ImageHandle PaddedCopy(GpBitmap* bitmap, GpRect area) {
  uint32_t width = 0, height = 0;
  GdipGetImageWidth(bitmap, &width);
  GdipGetImageHeight(bitmap, &height);
  const int32_t x0 = std::max(area.X, 0), y0 = std::max(area.Y, 0);
  const int32_t x1 = std::min<int64_t>(int64_t{area.X} + area.Width, width), y1 = std::min<int64_t>(int64_t{area.Y} + area.Height, height);
  if (x1 <= x0 || y1 <= y0) return {};
  const GpRect part{x0, y0, x1 - x0, y1 - y0};
  GpBitmap* made = nullptr;
  if (!Succeeded(GdipCreateBitmapFromScan0(part.Width + 2, part.Height + 2, 0, PixelFormat32bppPARGB, nullptr, &made)))
    return {};
  ImageHandle copy(made);
  BitmapData from{}, to{};
  if (!Succeeded(GdipBitmapLockBits(bitmap, &part, ImageLockModeRead, PixelFormat32bppPARGB, &from))) return {};
  if (!Succeeded(GdipBitmapLockBits(made, nullptr, ImageLockModeWrite, PixelFormat32bppPARGB, &to))) {
    GdipBitmapUnlockBits(bitmap, &from);
    return {};
  }
  // Row y of the copy repeats row y - 1 of the part, clamped; each row's ends repeat its edges.
  for (int32_t y = 0; y < part.Height + 2; ++y) {
    const int32_t row = std::clamp(y - 1, 0, part.Height - 1);
    const auto* in = reinterpret_cast<const uint32_t*>(static_cast<const uint8_t*>(from.Scan0) + ptrdiff_t{from.Stride} * row);
    auto* out = reinterpret_cast<uint32_t*>(static_cast<uint8_t*>(to.Scan0) + ptrdiff_t{to.Stride} * y);
    std::memcpy(out + 1, in, size_t(part.Width) * 4);
    out[0] = in[0];
    out[part.Width + 1] = in[part.Width - 1];
  }
  GdipBitmapUnlockBits(made, &to);
  GdipBitmapUnlockBits(bitmap, &from);
  return copy;
}

uint64_t HDCStamp(int64_t hdc) noexcept {
  auto& d = deviceContexts();
  std::lock_guard hold(d.lock);
  auto it = d.live.find(asDC(hdc));
  return it == d.live.end() ? 0 : it->second;
}

GpStatus CreateFromHDC(int64_t hdc, GpGraphics** graphics) {
  auto& d = deviceContexts();
  std::lock_guard hold(d.lock);
  if (!d.live.count(asDC(hdc))) return GpStatus::InvalidParameter;
  return GdipCreateFromHDC(const_cast<GpGraphics*>(asDC(hdc)), graphics);
}

std::vector<std::pair<const char*, long>> LiveHandles() {
  return {{"brush", BrushHandle::live()},   {"pen", PenHandle::live()},
          {"font", FontHandle::live()},     {"family", FontFamilyHandle::live()},
          {"format", StringFormatHandle::live()}, {"image", ImageHandle::live()},
          {"attributes", ImageAttributesHandle::live()}, {"graphics", GraphicsHandle::live()},
          {"path", PathHandle::live()},     {"matrix", MatrixHandle::live()},
          {"region", RegionHandle::live()}};
}

bool Succeeded(GpStatus status) { return mdl_Global::Execute(status) == enm_Draw_Status::OK; }

void Check(GpStatus status) {
  if (!Succeeded(status)) raise(StatusFailed, "GDI+ status " + std::to_string(static_cast<int32_t>(status)));
}

bool GetEncoderClsid(const std::u16string& mimeType, GUID& clsid) {
  // A failing status ends the procedure, which then answers False.
  return Trap(ProcInfo{"mdl_GDIPlus", "GetEncoderClsid"}, [&] {
    uint32_t count = 0, size = 0;
    Check(GdipGetImageEncodersSize(&count, &size));
    if (count == 0) return false;
    // The descriptions and the strings they point to share one block.
    std::vector<uint64_t> block((size + sizeof(uint64_t) - 1) / sizeof(uint64_t));
    auto* codecs = reinterpret_cast<ImageCodecInfo*>(block.data());
    Check(GdipGetImageEncoders(count, size, codecs));
    for (uint32_t i = 0; i < count; ++i) {
      if (codecs[i].MimeType && equalsIgnoreCase(std::u16string_view(codecs[i].MimeType), mimeType)) {
        clsid = codecs[i].Clsid;
        return true;
      }
    }
    return false;
  });
}

}  // namespace tessel::mdl_GDIPlus

namespace tessel::detail {

void deleteStatus(enm_Draw_Status s) noexcept {
  try {
    (void)mdl_Global::Execute(s);
  } catch (...) {
    // Freeing never throws: whatever the seam does with a failed delete stays here.
  }
}

}  // namespace tessel::detail
