// The image (cls_DrawImage.members): one native bitmap under the shared resource lifecycle.
// Operations that would replace the bitmap make the new one first, so a failure leaves the
// image as it was.
//
// Every bitmap an image holds is 32-bit premultiplied ARGB, whatever the file held: the layout
// that the rasteriser draws into, so drawing on an image touches its memory directly, and that
// memory is what a host reads in place (exportBuffer). PIXEL and the files speak straight ARGB.
#pragma once

#include <tessel/core/NativeResource.h>
#include <tessel/core/TypeLib.h>
#include <tessel/core/mdl_GDIPlus.h>
#include <tessel/images/Picture.h>
#include <tessel/images/cls_DrawImage.members.h>

#include <cstdint>
#include <string>

namespace tessel {

class cls_DrawGraphics;

class cls_DrawImage final : public ObjectOf<cls_DrawImage> {
  TESSEL_MEMBERS(cls_DrawImage)

 public:
  // The bitmap for drawing code; null for an empty image.
  mdl_GDIPlus::GpBitmap* bitmap() const noexcept { return static_cast<mdl_GDIPlus::GpBitmap*>(native_.get()); }

  // A new image of its own holding `bitmap`'s pixels in the image's format; raises 481 when the
  // bitmap's pixels cannot be read. The caller keeps `bitmap`.
  static Ref<cls_DrawImage> fromBitmap(mdl_GDIPlus::GpBitmap* bitmap);

  // A new image read from the file, as LOAD reads it but outside any trap: 53 or 481 reach the
  // caller as they are (the image cache skips or reports them itself).
  static Ref<cls_DrawImage> read(const std::u16string& file);

  // How many files the process has handed to the codecs so far: lets tests see that a cached
  // file is not read again.
  static int64_t fileReads() noexcept;

  // The pixels, shared in place: rows top to bottom of BGRA bytes, premultiplied. While any
  // export is out the bitmap stays where it is: operations that would replace or free it fail
  // with error 10.
  bool exportBuffer(ExportedBuffer& view) override;
  void unexportBuffer() noexcept override;
  std::string toPng() override;

  // Changes whenever the bitmap is replaced or freed, and never comes back.
  uint64_t bitmapStamp() const noexcept { return native_.stamp(); }

  // The surface that GRAPHICS handed out, while it stays bound to this image. A plain pointer:
  // the surface holds the image, and clears it when it leaves.
  cls_DrawGraphics* boundGraphics() const noexcept { return graphics_; }
  void boundGraphics(cls_DrawGraphics* g) noexcept { graphics_ = g; }

 private:
  // The pixel's place, after checking that it lies on the bitmap (5 when it does not).
  void checkPixel(int32_t x, int32_t y) const;
  // Takes `made` as the new bitmap; 10 while the old one is exported.
  void replaceBitmap(mdl_GDIPlus::ImageHandle made);
  int32_t side(bool height) const;

  NativeResource<mdl_GDIPlus::ImageHandle> native_;
  std::u16string fileName_;
  int32_t exports_ = 0;

  mutable cls_DrawGraphics* graphics_ = nullptr;
};

}  // namespace tessel
