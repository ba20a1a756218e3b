// The image (cls_DrawImage.members): one native bitmap, always 32-bit ARGB, under the shared
// resource lifecycle. Operations that would replace the bitmap make the new one first, so a
// failure leaves the image as it was.
#pragma once

#include <tessel/core/NativeResource.h>
#include <tessel/core/TypeLib.h>
#include <tessel/core/mdl_GDIPlus.h>
#include <tessel/images/cls_DrawImage.members.h>

namespace tessel {

class cls_DrawGraphics;

class cls_DrawImage final : public ObjectOf<cls_DrawImage> {
  TESSEL_MEMBERS(cls_DrawImage)

 public:
  // The bitmap for drawing code; null for an empty image.
  mdl_GDIPlus::GpBitmap* bitmap() const noexcept { return static_cast<mdl_GDIPlus::GpBitmap*>(native_.get()); }

  // Changes whenever the bitmap is replaced or freed, and never comes back.
  uint64_t bitmapStamp() const noexcept { return native_.stamp(); }

  // The surface that GRAPHICS handed out, while it stays bound to this image. A plain pointer:
  // the surface holds the image, and clears it when it leaves.
  cls_DrawGraphics* boundGraphics() const noexcept { return graphics_; }
  void boundGraphics(cls_DrawGraphics* g) noexcept { graphics_ = g; }

 private:
  // The pixel's place, after checking that it lies on the bitmap (5 when it does not).
  void checkPixel(int32_t x, int32_t y) const;

  NativeResource<mdl_GDIPlus::ImageHandle> native_;
  mutable cls_DrawGraphics* graphics_ = nullptr;
};

}  // namespace tessel
