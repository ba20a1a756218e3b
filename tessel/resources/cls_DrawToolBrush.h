// The brush factory (cls_DrawToolBrush.members).
#pragma once

#include <tessel/core/TypeLib.h>
#include <tessel/resources/cls_DrawBrush.h>
#include <tessel/resources/cls_DrawToolBrush.members.h>

namespace tessel {

class cls_DrawToolBrush final : public ObjectOf<cls_DrawToolBrush> {
  TESSEL_MEMBERS(cls_DrawToolBrush)

  Ref<cls_DrawBrush> none_ = make<cls_DrawBrush>();
};

}  // namespace tessel
