// The image factory (cls_DrawToolImage.members).
#pragma once

#include <tessel/core/TypeLib.h>
#include <tessel/images/cls_DrawImage.h>
#include <tessel/images/cls_DrawToolImage.members.h>

namespace tessel {

class cls_DrawToolImage final : public ObjectOf<cls_DrawToolImage> {
  TESSEL_MEMBERS(cls_DrawToolImage)

 public:
  // What AUTO makes of its argument. With `cached` a file is read through the root's image
  // cache; without, it is read afresh (the cache's ADD, which stores it under a name of its own).
  static Ref<cls_DrawImage> imageOf(const Variant& pImage, bool cached);
};

}  // namespace tessel
