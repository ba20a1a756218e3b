// The font factory (cls_DrawToolFont.members), with the font descriptions of the parameter
// language.
#pragma once

#include <tessel/core/TypeLib.h>
#include <tessel/resources/cls_DrawFont.h>
#include <tessel/resources/cls_DrawToolFont.members.h>

namespace tessel {

class cls_DrawToolFont final : public ObjectOf<cls_DrawToolFont> {
  TESSEL_MEMBERS(cls_DrawToolFont)

 private:
  Ref<cls_DrawFont> hDescribed(const std::u16string& text);
};

}  // namespace tessel
