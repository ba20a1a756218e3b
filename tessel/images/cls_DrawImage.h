// The image (cls_DrawImage.members): one native bitmap, always 32-bit ARGB, under the shared
// resource lifecycle. Operations that would replace the bitmap make the new one first, so a
// failure leaves the image as it was.
#pragma once

#include <tessel/core/NativeResource.h>
#include <tessel/core/TypeLib.h>
#include <tessel/core/mdl_GDIPlus.h>
#include <tessel/images/cls_DrawImage.members.h>

#include <cstdint>
#include <string>

namespace tessel {

class cls_DrawImage final : public ObjectOf<cls_DrawImage> {
  TESSEL_MEMBERS(cls_DrawImage)

 public:
  // The bitmap for drawing code; null for an empty image.
  mdl_GDIPlus::GpBitmap* bitmap() const noexcept { return static_cast<mdl_GDIPlus::GpBitmap*>(native_.get()); }

  // A new image read from the file, as LOAD reads it but outside any trap: 53 or 481 reach the
  // caller as they are (the image cache skips or reports them itself).
  static Ref<cls_DrawImage> read(const std::u16string& file);

  // How many files the process has handed to the codecs so far (LOAD, read): lets tests see
  // that a cached file is not read again.
  static int64_t fileReads() noexcept;

 private:
  // The pixel's place, after checking that it lies on the bitmap (5 when it does not).
  void checkPixel(int32_t x, int32_t y) const;

  NativeResource<mdl_GDIPlus::ImageHandle> native_;
};

}  // namespace tessel
