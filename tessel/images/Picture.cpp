#include <tessel/images/Picture.h>

#include <tessel/images/cls_DrawImage.h>

namespace tessel {

int64_t Picture::Handle(Get) const { return reinterpret_cast<intptr_t>(bitmap_.get()); }
int32_t Picture::Width(Get) const { return width_; }
int32_t Picture::Height(Get) const { return height_; }
int16_t Picture::Type(Get) const { return bitmap_ ? kPictureBitmap : kPictureNone; }

Ref<Picture> Picture::copyOf(mdl_GDIPlus::GpBitmap* bitmap) {
  namespace gp = mdl_GDIPlus;
  if (!bitmap) return make<Picture>();
  uint32_t width = 0, height = 0;
  gp::GpBitmap* copy = nullptr;
  // libgdiplus keeps the source's format whatever the argument says.
  if (!gp::Succeeded(gp::GdipGetImageWidth(bitmap, &width)) || !gp::Succeeded(gp::GdipGetImageHeight(bitmap, &height)) ||
      !gp::Succeeded(gp::GdipCloneBitmapAreaI(0, 0, static_cast<int>(width), static_cast<int>(height),
                                              gp::PixelFormat32bppPARGB, bitmap, &copy)))
    raise(rt::OutOfMemory);
  auto picture = make<Picture>();
  picture->bitmap_.reset(copy);
  picture->width_ = static_cast<int32_t>(width);
  picture->height_ = static_cast<int32_t>(height);
  return picture;
}

std::string Picture::toPng() try {
  return bitmap_ ? cls_DrawImage::fromBitmap(bitmap())->toPng() : std::string();
} catch (...) {
  return {};
}

bool Picture::SAVE(Call, const std::u16string& pFile) const {
  if (!bitmap_) raise(rt::InvalidCall);
  return cls_DrawImage::fromBitmap(bitmap())->SAVE(pFile);
}

Ref<Picture> mdl_GDIPlus::HandleToPicture(int64_t pHandle, int32_t pType, int64_t) {
  return Trap(ProcInfo{"mdl_GDIPlus", "HandleToPicture"}, [&] {
    if (pType != Picture::kPictureBitmap && !(pType == Picture::kPictureNone && pHandle == 0)) raise(rt::InvalidCall);
    auto picture = make<Picture>();
    auto* image = reinterpret_cast<GpImage*>(static_cast<intptr_t>(pHandle));
    if (!image) return picture;
    uint32_t width = 0, height = 0;
    // The size first: a handle that is no image is refused before the picture takes it over.
    if (!Succeeded(GdipGetImageWidth(image, &width)) || !Succeeded(GdipGetImageHeight(image, &height)))
      raise(rt::InvalidCall);
    picture->bitmap_.reset(image);
    picture->width_ = static_cast<int32_t>(width);
    picture->height_ = static_cast<int32_t>(height);
    return picture;
  });
}

}  // namespace tessel
