// The image (cls_DrawImage.members): one native bitmap, always 32-bit ARGB, under the shared
// resource lifecycle. Operations that would replace the bitmap make the new one first, so a
// failure leaves the image as it was.
#pragma once

#include <tessel/core/NativeResource.h>
#include <tessel/core/TypeLib.h>
#include <tessel/core/mdl_GDIPlus.h>
#include <tessel/images/cls_DrawImage.members.h>

namespace tessel {

class cls_DrawImage final : public ObjectOf<cls_DrawImage> {
  TESSEL_MEMBERS(cls_DrawImage)

 public:
  // The bitmap for drawing code; null for an empty image.
  mdl_GDIPlus::GpBitmap* bitmap() const noexcept { return static_cast<mdl_GDIPlus::GpBitmap*>(native_.get()); }

 private:
  // The pixel's place, after checking that it lies on the bitmap (5 when it does not).
  void checkPixel(int32_t x, int32_t y) const;

  NativeResource<mdl_GDIPlus::ImageHandle> native_;
};

}  // namespace tessel
