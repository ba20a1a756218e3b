// The image factory (cls_DrawToolImage.members).
#pragma once

#include <tessel/core/TypeLib.h>
#include <tessel/images/cls_DrawImage.h>
#include <tessel/images/cls_DrawToolImage.members.h>

namespace tessel {

class cls_DrawToolImage final : public ObjectOf<cls_DrawToolImage> {
  TESSEL_MEMBERS(cls_DrawToolImage)
};

}  // namespace tessel
