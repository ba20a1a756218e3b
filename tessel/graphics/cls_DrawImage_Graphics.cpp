// The image's GRAPHICS (cls_DrawImage_Graphics.members). The image keeps the surface it handed
// out as a plain pointer, since the surface holds the image; the surface clears it when it
// leaves the image, so the pointer never outlives the binding.
#include <tessel/graphics/cls_DrawGraphics.h>
#include <tessel/images/cls_DrawImage.h>

namespace tessel {

Ref<cls_DrawGraphics> cls_DrawImage::GRAPHICS(Get) const {
  if (graphics_) {
    // The bitmap may have been replaced by one of another size since CONNECT measured it.
    graphics_->followImageSize();
    return Ref<cls_DrawGraphics>(graphics_);
  }
  auto surface = make<cls_DrawGraphics>();
  surface->CONNECT(Ref<Object>(const_cast<cls_DrawImage*>(this)));
  graphics_ = surface.get();
  return surface;
}

}  // namespace tessel
