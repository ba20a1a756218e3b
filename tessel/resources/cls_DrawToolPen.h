// The pen factory (cls_DrawToolPen.members), with the pen descriptions of the parameter language.
#pragma once

#include <tessel/core/TypeLib.h>
#include <tessel/resources/cls_DrawPen.h>
#include <tessel/resources/cls_DrawToolPen.members.h>

namespace tessel {

class cls_DrawToolPen final : public ObjectOf<cls_DrawToolPen> {
  TESSEL_MEMBERS(cls_DrawToolPen)

 public:
  cls_DrawToolPen();

 private:
  Ref<cls_DrawPen> hDescribed(const std::u16string& text);
  Ref<cls_DrawPen> none_;
};

}  // namespace tessel
