#include <tessel/resources/cls_DrawPen.h>

#include <tessel/color/cls_DrawToolColor.h>

namespace tessel {

namespace gp = mdl_GDIPlus;

Ref<cls_DrawPen> cls_DrawPen::DELETE(Call) {
  if (!native_.isProtected()) native_.free();
  return Ref<cls_DrawPen>(this);
}

Ref<cls_DrawPen> cls_DrawPen::SOLID(Call, const Variant& pColor, int32_t pWidth) {
  if (native_.isProtected()) return Ref<cls_DrawPen>(this);
  const gp::ARGB argb = ColorArgb(pColor);
  native_.free();
  gp::GpPen* made = nullptr;
  // Statuses are not examined: a pen that could not be made stays empty.
  if (gp::Succeeded(gp::GdipCreatePen1(argb, static_cast<float>(pWidth), gp::UnitPixel, &made))) {
    gp::GdipSetPenLineCap197819(made, gp::LineCapRound, gp::LineCapRound, gp::LineCapRound);
    gp::GdipSetPenLineJoin(made, gp::LineJoinRound);
    native_.adopt(made);
  }
  return Ref<cls_DrawPen>(this);
}

int64_t cls_DrawPen::HANDLE(Get) const { return native_.handleValue(); }

enm_Draw_PenDash cls_DrawPen::DASHSTYLE(Get) const {
  int style = 0;
  if (!native_.empty()) gp::GdipGetPenDashStyle(native_.get(), &style);
  return static_cast<enm_Draw_PenDash>(style);
}

void cls_DrawPen::DASHSTYLE(Let, enm_Draw_PenDash v) {
  if (native_.isProtected() || native_.empty()) return;
  gp::GdipSetPenDashStyle(native_.get(), static_cast<int>(v));
}

bool cls_DrawPen::PROTECTED(Get) const { return native_.isProtected(); }

// One-way on purpose: shared pens must stay as they are for their whole life.
void cls_DrawPen::PROTECTED(Let, bool v) { native_.protect(v); }

}  // namespace tessel
