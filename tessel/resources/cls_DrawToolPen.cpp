#include <tessel/resources/cls_DrawToolPen.h>

#include <tessel/color/cls_DrawToolColor.h>
#include <tessel/core/Root.h>
#include <tessel/core/Text.h>
#include <tessel/core/mdl_Basalt.h>
#include <tessel/core/mdl_Global.h>

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
// winning; any other kind of piece is reported through ERRORSET and gives an empty pen. Only the
// whole text is trimmed: a piece keeps its blanks, so " bold" reads as a name (as the object
// model has it).
Ref<cls_DrawPen> cls_DrawToolPen::hDescribed(const std::u16string& text) {
  std::u16string cleaned(trimBlanks(text));
  for (char16_t& c : cleaned)
    if (c == u'\'') c = u'"';
  int32_t width = 1;
  Variant red = int32_t(0), green = int32_t(0), blue = int32_t(0), alpha = int32_t(255);
  for (const std::u16string& piece : mdl_Basalt::Split(cleaned, u',', u"(", u")", u'"')) {
    if (piece.empty()) continue;
    int32_t kind = -1;
    Variant v1, v2, v3, v4;
    mdl_Global::PARADECODE(piece, kind, v1, v2, v3, v4);
    if (kind == kColorPiece) {
      red = v1, green = v2, blue = v3, alpha = v4;
    } else if (kind == kWidthPiece) {
      width = v1.toLong();
    } else {
      rootErrorSet(u"Wrong arguments '" + text + u"' for pen creation: Parameter '" + piece + u"' (type " +
                   mdl_Global::PARATYPETEXT(kind) + u") not accepted");
      return make<cls_DrawPen>();
    }
  }
  auto colour = rootFactory<cls_DrawToolColor>()->RGB(red.toLong(), green.toLong(), blue.toLong(), alpha.toLong());
  return make<cls_DrawPen>()->SOLID(Variant(colour), width);
}

Ref<cls_DrawPen> cls_DrawToolPen::SOLID(Call, const Variant& pColor, int32_t pWidth) {
  return make<cls_DrawPen>()->SOLID(pColor, pWidth);
}

Ref<cls_DrawPen> cls_DrawToolPen::AUTO(Call, const Variant& pAny) {
  if (pAny.isMissing() || (pAny.isString() && pAny.str().empty())) return make<cls_DrawPen>();
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
