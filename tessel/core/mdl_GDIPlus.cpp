#include <tessel/core/mdl_GDIPlus.h>

#include <tessel/core/Text.h>
#include <tessel/core/mdl_Err.h>
#include <tessel/core/mdl_Global.h>

#include <vector>

namespace tessel::mdl_GDIPlus {

// Never destroyed: a font that goes while the process ends still takes it to free itself.
std::recursive_mutex& TextLock() {
  static auto* m = new std::recursive_mutex;
  return *m;
}

int32_t LogPixelsY(HDC) noexcept { return 96; }

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
