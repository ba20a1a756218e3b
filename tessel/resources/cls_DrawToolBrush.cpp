#include <tessel/resources/Description.h>
#include <tessel/resources/cls_DrawToolBrush.h>

namespace tessel {

Ref<cls_DrawBrush> cls_DrawToolBrush::SOLID(Call, const Variant& pColor) { return make<cls_DrawBrush>()->SOLID(pColor); }

Ref<cls_DrawBrush> cls_DrawToolBrush::GRADIENT(Call, const Variant& pRect, const Variant& pC1, const Variant& pC2,
                                               double pAngle) {
  return make<cls_DrawBrush>()->GRADIENT(pRect, pC1, pC2, pAngle);
}

Ref<cls_DrawBrush> cls_DrawToolBrush::AUTO(Call, const Variant& pAny) {
  if (IsNoResource(pAny)) return make<cls_DrawBrush>();  // empty: HANDLE 0
  return make<cls_DrawBrush>()->AUTO(pAny);
}

// Shared and deliberately unprotected: a caller that fills it changes every later NONE.
Ref<cls_DrawBrush> cls_DrawToolBrush::NONE(Call) { return none_; }

Ref<cls_DrawBrush> cls_DrawToolBrush::texture(Call, const Variant& pImage, enm_Draw_Wrap pWrapMode) {
  return make<cls_DrawBrush>()->texture(pImage, pWrapMode);
}

}  // namespace tessel
