// The colour's cached brush and pens (cls_DrawColor_Resources.members). The colour keeps them as
// plain objects; only this layer knows what they are. A cached read is a look-up in the colour,
// with no native call.
#include <tessel/color/cls_DrawColor.h>
#include <tessel/core/Root.h>
#include <tessel/resources/cls_DrawToolBrush.h>
#include <tessel/resources/cls_DrawToolPen.h>

#include <algorithm>

namespace tessel {

// The factories are handed the colour itself, which they only read.
Ref<cls_DrawBrush> cls_DrawColor::BRUSH(Get) const {
  if (!brush_) {
    Ref<cls_DrawBrush> made = rootFactory<cls_DrawToolBrush>()->SOLID(Variant(Ref<cls_DrawColor>(const_cast<cls_DrawColor*>(this))));
    made->PROTECTED(true);
    // Kept only when it holds a native brush: one asked for before the platform was started
    // would otherwise stay empty for the colour's life.
    if (made->HANDLE() == 0) return made;
    brush_ = made;
  }
  return Ref<cls_DrawBrush>(static_cast<cls_DrawBrush*>(brush_.get()));
}

Ref<cls_DrawPen> cls_DrawColor::PEN(Get, int32_t pWidth, enm_Draw_PenDash pStyle) const {
  const int32_t width = std::clamp<int32_t>(pWidth, 1, kPenWidths);
  const auto style = std::clamp<int32_t>(static_cast<int32_t>(pStyle), 0, kPenStyles - 1);
  Ref<Object>& slot = pens_[width - 1][style];
  if (!slot) {
    const Variant self(Ref<cls_DrawColor>(const_cast<cls_DrawColor*>(this)));
    Ref<cls_DrawToolPen> pens = rootFactory<cls_DrawToolPen>();
    Ref<cls_DrawPen> made = style == 0 ? pens->SOLID(self, width) : pens->DASHED(self, static_cast<enm_Draw_PenDash>(style), width);
    made->PROTECTED(true);
    if (made->HANDLE() == 0) return made;
    slot = made;
  }
  return Ref<cls_DrawPen>(static_cast<cls_DrawPen*>(slot.get()));
}

}  // namespace tessel
