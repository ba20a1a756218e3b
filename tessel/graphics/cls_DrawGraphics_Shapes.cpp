// The surface's shapes and rendering modes (cls_DrawGraphics.members).
//
// Every shape converts all its arguments before it draws: an omitted pen or brush becomes the
// surface's default (the pen is looked at first), then the rectangle, the pen and the brush go
// through their factories. A surface that cannot draw makes the shapes silent no-ops. Fill
// comes before outline, so the outline lies on top; an empty brush or pen skips its step.
// Native statuses are ignored, except in RECTANGLE.
#include <tessel/graphics/cls_DrawGraphics.h>

#include <tessel/core/Checked.h>
#include <tessel/geometry/cls_DrawRect.h>
#include <tessel/geometry/cls_DrawToolPoint.h>
#include <tessel/graphics/SurfaceArgs.h>
#include <tessel/resources/cls_DrawBrush.h>
#include <tessel/resources/cls_DrawPath.h>
#include <tessel/resources/cls_DrawPen.h>

namespace tessel {

namespace gp = mdl_GDIPlus;
using namespace surface;

namespace {

// An argument as an object: an object as it stands (not held again), anything else converted and
// held here for as long as its native pen or brush is drawn with.
struct Held {
  Held(const Variant& v, Ref<Object> (*convert)(const Variant&))
      : made(v.isObject() ? Ref<Object>() : convert(v)), object(v.isObject() ? v.obj() : made.get()) {}
  Ref<Object> made;
  Object* object;
};

// A shape's converted arguments, in the order they are converted: an omitted pen or brush is the
// surface's (the pen looked at first), then the rectangle, the pen and the brush.
struct Shape {
  Shape(const Variant& pPen, const Variant& pBrush, const Variant& pRect, Object* defaultPen, Object* defaultBrush)
      : rect(pRect, rectArg), pen(pPen.isMissing() ? Variant(defaultPen) : pPen, penArg),
        brush(pBrush.isMissing() ? Variant(defaultBrush) : pBrush, brushArg),
        box(boxOf(rect.object)), nativePen(penOf(pen.object)), nativeBrush(brushOf(brush.object)) {}
  Held rect, pen, brush;
  Box box;
  gp::GpPen* nativePen;
  gp::GpBrush* nativeBrush;
};

}  // namespace

Variant cls_DrawGraphics::hPenOrDefault(const Variant& pPen) const { return pPen.isMissing() ? Variant(pen_) : pPen; }
Variant cls_DrawGraphics::hBrushOrDefault(const Variant& pBrush) const {
  return pBrush.isMissing() ? Variant(brush_) : pBrush;
}

void cls_DrawGraphics::PATH(Call, const Variant& pPath, const Variant& pPen, const Variant& pBrush) {
  const Variant pen = hPenOrDefault(pPen), brush = hBrushOrDefault(pBrush);
  const Ref<Object> penObject = penArg(pen), brushObject = brushArg(brush), pathObject = hPathArg(pPath);
  gp::GpPen* nativePen = penOf(penObject.get());
  gp::GpBrush* nativeBrush = brushOf(brushObject.get());
  gp::GpPath* path = pathOf(pathObject.get());
  if (!READY()) return;
  if (nativeBrush) gp::GdipFillPath(graphics_.get(), nativeBrush, path);
  if (nativePen) gp::GdipDrawPath(graphics_.get(), nativePen, path);
}

void cls_DrawGraphics::ELLIPSE(Call, const Variant& pRect, const Variant& pBrush, const Variant& pPen) {
  const Shape s(pPen, pBrush, pRect, pen_.get(), brush_.get());
  if (!READY()) return;
  // Filled where it is, outlined where it rounds to (intended: a fractional ellipse keeps its
  // exact fill).
  if (s.nativeBrush) gp::GdipFillEllipse(graphics_.get(), s.nativeBrush, s.box.x, s.box.y, s.box.w, s.box.h);
  if (s.nativePen)
    gp::GdipDrawEllipseI(graphics_.get(), s.nativePen, whole(s.box.x), whole(s.box.y), whole(s.box.w), whole(s.box.h));
}

void cls_DrawGraphics::PIE(Call, const Variant& pRect, double pAngleStart, double pAngleSweep, const Variant& pBrush,
                           const Variant& pPen) {
  const Shape s(pPen, pBrush, pRect, pen_.get(), brush_.get());
  if (!READY()) return;
  const int x = whole(s.box.x), y = whole(s.box.y), w = whole(s.box.w), h = whole(s.box.h);
  const float start = checkedSingle(pAngleStart), sweep = checkedSingle(pAngleSweep);
  if (s.nativeBrush) gp::GdipFillPieI(graphics_.get(), s.nativeBrush, x, y, w, h, start, sweep);
  if (s.nativePen) gp::GdipDrawPieI(graphics_.get(), s.nativePen, x, y, w, h, start, sweep);
}

void cls_DrawGraphics::LINES(Call, const Variant& pRect, const Variant& pPen) {
  const Variant pen = hPenOrDefault(pPen);
  const Box box = boxOf(rectArg(pRect).get());
  const Ref<Object> penObject = penArg(pen);
  gp::GpPen* nativePen = penOf(penObject.get());
  if (!READY()) return;
  // Drawn with an empty pen too: the platform refuses it, and its status is ignored.
  gp::GdipDrawLineI(graphics_.get(), nativePen, whole(box.x), whole(box.y), whole(box.x2()), whole(box.y2()));
}

void cls_DrawGraphics::FILL(Call, const Variant& pBrush) {
  const Variant brush = brushArg(hBrushOrDefault(pBrush));
  if (!READY() || !brushOf(brush.obj())) return;
  // The surface grown by 1 and outlined with the default pen just outside (intended).
  Ref<cls_DrawRect> area = RECT();
  area->EXPAND(1.0);
  RECTANGLE(Variant(area), brush);
}

void cls_DrawGraphics::RECTANGLE(Call, const Variant& pRect, const Variant& pBrush, const Variant& pPen) {
  const Shape s(pPen, pBrush, pRect, pen_.get(), brush_.get());
  if (!READY()) return;
  const int x = whole(s.box.x), y = whole(s.box.y), w = whole(s.box.w), h = whole(s.box.h);
  if (s.nativeBrush) gp::Check(gp::GdipFillRectangleI(graphics_.get(), s.nativeBrush, x, y, w, h));
  if (s.nativePen) gp::Check(gp::GdipDrawRectangleI(graphics_.get(), s.nativePen, x, y, w, h));
}

void cls_DrawGraphics::CLIP(Call, const Variant& pPath) {
  // A rectangle clips as itself; anything else is taken as a path. No readiness check: a
  // closed surface has no clip to narrow.
  if (pPath.isObject() && dynamic_cast<cls_DrawRect*>(pPath.obj())) {
    const Box box = boxOf(pPath.obj());
    gp::GdipSetClipRect(graphics_.get(), box.x, box.y, box.w, box.h, gp::CombineModeIntersect);
    return;
  }
  const Ref<Object> pathObject = hPathArg(pPath);
  gp::GdipSetClipPath(graphics_.get(), pathOf(pathObject.get()), gp::CombineModeIntersect);
}

void cls_DrawGraphics::CLIPRESET(Call) { gp::GdipResetClip(graphics_.get()); }

void cls_DrawGraphics::CLEAR(Call, const Variant& pColor) {
  // A loose colour becomes a point, which has no ATOM: only a colour object clears (intended).
  const Variant color = pColor.isObject() ? pColor : Variant(rootFactory<cls_DrawToolPoint>()->AUTO(pColor, 0));
  const auto argb = static_cast<gp::ARGB>(Invoke(color, "ATOM", InvokeKind::Get).toLongLong());
  gp::GdipGraphicsClear(graphics_.get(), argb);
}

// A loose path goes to a new path's default member, which a path has not: 438 (intended).
Ref<Object> cls_DrawGraphics::hPathArg(const Variant& pPath) {
  if (pPath.isObject()) return pPath.objRef();
  Ref<cls_DrawPath> path = make<cls_DrawPath>();
  return Invoke(path.get(), "", InvokeKind::Method, {pPath}).toObject();
}

enm_Draw_SmoothingMode cls_DrawGraphics::SMOOTHING(Get) const {
  int mode = 0;
  if (hReady()) gp::GdipGetSmoothingMode(graphics_.get(), &mode);
  return static_cast<enm_Draw_SmoothingMode>(mode);
}

void cls_DrawGraphics::SMOOTHING(Let, enm_Draw_SmoothingMode RHS) {
  if (!READY()) return;
  using M = enm_Draw_SmoothingMode;
  M mode = RHS == M::ID_Draw_SmoothingAntiAlias ? M::ID_Draw_SmoothingHighQuality : RHS;
  if (mode == M::ID_Draw_SmoothingNone) mode = M::ID_Draw_SmoothingHighSpeed;
  gp::GdipSetSmoothingMode(graphics_.get(), static_cast<int>(mode));
}

// Reading sets the default quality and answers it, without asking the platform (intended).
enm_Draw_CompositingQuality cls_DrawGraphics::CompositingQuality(Get) const {
  gp::GdipSetCompositingQuality(graphics_.get(), 0);
  return enm_Draw_CompositingQuality::ID_Draw_CompositingQualityDefault;
}

void cls_DrawGraphics::CompositingQuality(Let, enm_Draw_CompositingQuality RHS) {
  gp::GdipSetCompositingQuality(graphics_.get(), static_cast<int>(RHS));
}

enm_Draw_InterpolationMode cls_DrawGraphics::interpolation(Get) const {
  int mode = 0;
  if (hReady()) gp::GdipGetInterpolationMode(graphics_.get(), &mode);
  return static_cast<enm_Draw_InterpolationMode>(mode);
}

void cls_DrawGraphics::interpolation(Let, enm_Draw_InterpolationMode RHS) {
  if (READY()) gp::GdipSetInterpolationMode(graphics_.get(), static_cast<int>(RHS));
}

}  // namespace tessel
