#include <tessel/resources/cls_DrawToolPen.h>

#include <tessel/color/cls_DrawToolColor.h>
#include <tessel/core/Root.h>
#include <tessel/resources/Description.h>

namespace tessel {

namespace {

constexpr int32_t kColorPiece = 1;  // PARADECODE's kinds that a pen description takes
constexpr int32_t kWidthPiece = 6;

}  // namespace

cls_DrawToolPen::cls_DrawToolPen() {
  none_ = make<cls_DrawPen>();
  none_->PROTECTED(true);
}

// "#FF0000,3px": colour and width pieces of the parameter language, the last of each kind
// winning (Description.h); any other kind of piece gives an empty pen.
Ref<cls_DrawPen> cls_DrawToolPen::hDescribed(const std::u16string& text) {
  int32_t width = 1;
  Variant red = int32_t(0), green = int32_t(0), blue = int32_t(0), alpha = int32_t(255);
  const bool read = ReadDescription(text, u"pen", [&](const DescriptionPiece& piece) {
    if (piece.kind == kColorPiece) {
      red = piece.value[0], green = piece.value[1], blue = piece.value[2], alpha = piece.value[3];
    } else if (piece.kind == kWidthPiece) {
      width = piece.value[0].toLong();
    } else {
      return false;
    }
    return true;
  });
  if (!read) return make<cls_DrawPen>();
  auto colour = rootFactory<cls_DrawToolColor>()->RGB(red.toLong(), green.toLong(), blue.toLong(), alpha.toLong());
  return make<cls_DrawPen>()->SOLID(Variant(colour), width);
}

Ref<cls_DrawPen> cls_DrawToolPen::SOLID(Call, const Variant& pColor, int32_t pWidth) {
  return make<cls_DrawPen>()->SOLID(pColor, pWidth);
}

Ref<cls_DrawPen> cls_DrawToolPen::AUTO(Call, const Variant& pAny) {
  if (IsNoResource(pAny)) return make<cls_DrawPen>();  // empty: HANDLE 0
  if (pAny.isString()) return hDescribed(pAny.str());
  return make<cls_DrawPen>()->SOLID(pAny, 1);
}

Ref<cls_DrawPen> cls_DrawToolPen::NONE(Call) {
  if (!none_) {
    none_ = make<cls_DrawPen>();
    none_->PROTECTED(true);
  }
  return none_;
}

Ref<cls_DrawPen> cls_DrawToolPen::DASHED(Call, const Variant& pColor, enm_Draw_PenDash pDashStyle, int32_t pWidth) {
  Ref<cls_DrawPen> pen = make<cls_DrawPen>()->SOLID(pColor, pWidth);
  pen->DASHSTYLE(pDashStyle);
  return pen;
}

}  // namespace tessel
