#include <tessel/resources/cls_DrawBrush.h>

#include <tessel/color/cls_DrawToolColor.h>
#include <tessel/core/Checked.h>
#include <tessel/core/Root.h>
#include <tessel/geometry/cls_DrawToolRect.h>
#include <tessel/geometry/mdl_GDIPlus_Geometry.h>
#include <tessel/images/cls_DrawToolImage.h>

namespace tessel {

namespace gp = mdl_GDIPlus;

Ref<cls_DrawBrush> cls_DrawBrush::DELETE(Call) {
  native_.free();
  return me();
}

Ref<cls_DrawBrush> cls_DrawBrush::SOLID(Call, const Variant& pColor) {
  if (native_.isProtected()) return me();
  const gp::ARGB argb = ColorArgb(pColor);
  native_.free();
  gp::GpSolidFill* made = nullptr;
  // Statuses are not examined: a brush that could not be made stays empty.
  if (gp::Succeeded(gp::GdipCreateSolidFill(argb, &made))) native_.adopt(made);
  return me();
}

Ref<cls_DrawBrush> cls_DrawBrush::GRADIENT(Call, const Variant& pRect, const Variant& pC1, const Variant& pC2,
                                           double pAngle) {
  if (native_.isProtected()) return me();
  const Ref<cls_DrawRect> rect =
      pRect.isObject() ? refCast<cls_DrawRect>(pRect.objRef()) : rootFactory<cls_DrawToolRect>()->AUTO(pRect, 0, 0, 0);
  if (!rect) raise(rt::TypeMismatch);
  const gp::ARGB from = ColorArgb(pC1), to = ColorArgb(pC2);
  const gp::GpRect area = gp::GDIPRectL(rect, true);
  const float angle = checkedSingle(pAngle);
  native_.free();
  gp::GpLineGradient* made = nullptr;
  if (gp::Succeeded(gp::GdipCreateLineBrushFromRectWithAngleI(&area, from, to, angle, 0, 0, &made)))
    native_.adopt(made);
  return me();
}

int64_t cls_DrawBrush::HANDLE(Get) const { return native_.handleValue(); }

Ref<cls_DrawBrush> cls_DrawBrush::AUTO(Call, const Variant& pAny) {
  if (native_.isProtected()) return me();
  return SOLID(Variant(rootFactory<cls_DrawToolColor>()->AUTO(pAny)));
}

Ref<cls_DrawBrush> cls_DrawBrush::texture(Call, const Variant& pImage, enm_Draw_Wrap pWrapMode) {
  if (native_.isProtected()) return me();
  const auto wrap = static_cast<int32_t>(pWrapMode);
  if (wrap < 0 || wrap > static_cast<int32_t>(enm_Draw_Wrap::ID_Draw_Warp_Clamp)) raise(rt::InvalidCall);
  const Ref<cls_DrawImage> image =
      pImage.isObject() ? refCast<cls_DrawImage>(pImage.objRef()) : rootFactory<cls_DrawToolImage>()->AUTO(pImage);
  if (!image) raise(rt::TypeMismatch);
  native_.free();
  gp::GpTexture* made = nullptr;
  // The platform copies the pixels: the brush needs the image no longer.
  if (image->bitmap() && gp::Succeeded(gp::GdipCreateTexture(image->bitmap(), wrap, &made)))
    native_.adopt(made);
  return me();
}

bool cls_DrawBrush::PROTECTED(Get) const { return native_.isProtected(); }

// One-way on purpose: a colour's cached brush must stay as it is for its whole life.
void cls_DrawBrush::PROTECTED(Let, bool v) { native_.protect(v); }

}  // namespace tessel
