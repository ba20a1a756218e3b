// A picture that owns a bitmap (Picture.members): what HandleToPicture makes of a bitmap it is
// given. The bitmap is freed when the last reference to the picture goes.
#pragma once

#include <tessel/core/Handle.h>
#include <tessel/core/TypeLib.h>
#include <tessel/core/mdl_GDIPlus.h>
#include <tessel/images/Picture.members.h>

#include <cstdint>

namespace tessel {

class Picture;

namespace mdl_GDIPlus {

// A picture that takes over a GDI+ bitmap (a GpImage* as a handle value): it frees it when it
// is released. Only bitmaps (type 1) are pictures here; a handle of 0 gives an empty picture.
// Palettes have no part in 32-bit ARGB bitmaps, so pPalette is not used. Any other type is an
// invalid argument (5); the handle is then not taken over.
Ref<Picture> HandleToPicture(int64_t pHandle, int32_t pType, int64_t pPalette = 0);

}  // namespace mdl_GDIPlus

class Picture final : public ObjectOf<Picture> {
  TESSEL_MEMBERS(Picture)

 public:
  static constexpr int16_t kPictureNone = 0;
  static constexpr int16_t kPictureBitmap = 1;

  // The bitmap it owns; null for an empty picture.
  mdl_GDIPlus::GpBitmap* bitmap() const noexcept { return static_cast<mdl_GDIPlus::GpBitmap*>(bitmap_.get()); }

  // A new picture holding a copy of `bitmap` (its pixels as they are); an empty picture for null.
  // Raises 7 when the platform cannot copy it. The caller keeps `bitmap`.
  static Ref<Picture> copyOf(mdl_GDIPlus::GpBitmap* bitmap);

  // A picture shows itself as an image does.
  std::string toPng() override;

 private:
  friend Ref<Picture> mdl_GDIPlus::HandleToPicture(int64_t, int32_t, int64_t);
  mdl_GDIPlus::ImageHandle bitmap_;
  int32_t width_ = 0;
  int32_t height_ = 0;
};

}  // namespace tessel
