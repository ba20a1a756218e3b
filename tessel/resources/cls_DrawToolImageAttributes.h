// The image-attributes factory (cls_DrawToolImageAttributes.members).
#pragma once

#include <tessel/core/TypeLib.h>
#include <tessel/resources/cls_DrawImageAttributes.h>
#include <tessel/resources/cls_DrawToolImageAttributes.members.h>

namespace tessel {

class cls_DrawToolImageAttributes final : public ObjectOf<cls_DrawToolImageAttributes> {
  TESSEL_MEMBERS(cls_DrawToolImageAttributes)
};

}  // namespace tessel
