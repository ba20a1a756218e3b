// The surface's projection and redraw area (cls_DrawGraphics.members).
//
// The projection is the native graphics' world transform: SCALING and OFFSET append to it, so
// they act in call order, and a reopened graphics starts from the identity. None of these
// operations asks READY; on a closed surface they do nothing.
//
// libgdiplus's point transform is a stub, so PROJECT and REPROJECT map points themselves with
// what it renders: device = k * W(world), W the world transform and k the page unit's scale.
#include <tessel/graphics/cls_DrawGraphics.h>

#include <tessel/core/Checked.h>
#include <tessel/geometry/cls_DrawPoint.h>
#include <tessel/geometry/cls_DrawRect.h>
#include <tessel/geometry/cls_DrawToolPoint.h>
#include <tessel/graphics/SurfaceArgs.h>
#include <tessel/images/cls_DrawImage.h>

namespace tessel {

namespace gp = mdl_GDIPlus;

namespace {

// Pixels per page unit at the graphics' resolution, as libgdiplus scales shapes.
double pageScale(gp::GpGraphics* g) {
  int unit = gp::UnitPixel;
  float dpi = 96;
  gp::GdipGetPageUnit(g, &unit);
  gp::GdipGetDpiX(g, &dpi);
  switch (unit) {
    case 3: return dpi / 72.0;    // point
    case 4: return dpi;           // inch
    case 5: return dpi / 300.0;   // document
    case 6: return dpi / 25.4;    // millimetre
    default: return 1.0;          // world, display, pixel
  }
}

}  // namespace

Affine cls_DrawGraphics::worldToDevice() const {
  gp::GpGraphics* g = graphics_.get();
  if (!g) return {};
  gp::GpMatrix* made = nullptr;
  if (!gp::Succeeded(gp::GdipCreateMatrix(&made))) return {};
  gp::MatrixHandle matrix(made);
  float e[6] = {1, 0, 0, 1, 0, 0};
  gp::GdipGetWorldTransform(g, matrix.get());
  gp::GdipGetMatrixElements(matrix.get(), e);
  const double k = pageScale(g);
  return {k * e[0], k * e[1], k * e[2], k * e[3], k * e[4], k * e[5]};
}

Affine::Point Affine::map(Point p) const { return {m11 * p.x + m21 * p.y + dx, m12 * p.x + m22 * p.y + dy}; }

Affine Affine::inverse() const {
  const double det = m11 * m22 - m12 * m21;
  if (det == 0) return {};  // a collapsed projection maps nothing back: the identity
  return {m22 / det, -m12 / det, -m21 / det, m11 / det, (m21 * dy - m22 * dx) / det, (m12 * dx - m11 * dy) / det};
}

// The factors of SCALING and OFFSET: a point's X and Y, a rectangle's position, or a loose value
// made a point.
static Affine::Point factors(const Variant& pPointOrRect, int32_t pMul) {
  Affine::Point p;
  if (auto* rect = dynamic_cast<cls_DrawRect*>(pPointOrRect.obj())) {
    p = {rect->X(), rect->Y()};
  } else {
    const Variant point = dynamic_cast<cls_DrawPoint*>(pPointOrRect.obj())
                              ? pPointOrRect
                              : Variant(rootFactory<cls_DrawToolPoint>()->AUTO(pPointOrRect, 0));
    PointCoordinates(point, p.x, p.y);
  }
  return {p.x * pMul, p.y * pMul};
}

// A factor beyond the single range is overflow (6): an infinite transform would leave the
// native graphics unable to draw anything again.
void cls_DrawGraphics::SCALING(Call, const Variant& pPointOrRect, int32_t pMul) {
  const Affine::Point f = factors(pPointOrRect, pMul);
  gp::GdipScaleWorldTransform(graphics_.get(), checkedSingle(f.x), checkedSingle(f.y), gp::MatrixOrderAppend);
}

void cls_DrawGraphics::OFFSET(Call, const Variant& pPointOrRect, int32_t pMul) {
  const Affine::Point f = factors(pPointOrRect, pMul);
  gp::GdipTranslateWorldTransform(graphics_.get(), checkedSingle(f.x), checkedSingle(f.y), gp::MatrixOrderAppend);
}

void cls_DrawGraphics::RESETPROJECTION(Call) { gp::GdipResetWorldTransform(graphics_.get()); }

// A new point or rectangle at the mapped position; a rectangle keeps its size.
Ref<Object> cls_DrawGraphics::hProjected(const Variant& pPointOrRect, const Affine& map) {
  Object* o = pPointOrRect.obj();
  if (auto* rect = dynamic_cast<cls_DrawRect*>(o)) {
    Ref<cls_DrawRect> copy = make<cls_DrawRect>();
    copy->COPY(Ref<cls_DrawRect>(rect));
    // The corner as single precision, as the platform's points are.
    const Affine::Point at = map.map({static_cast<float>(copy->X()), static_cast<float>(copy->Y())});
    copy->MOVE(static_cast<float>(at.x), static_cast<float>(at.y), -1, -1);
    return copy;
  }
  Ref<cls_DrawPoint> copy;
  if (auto* point = dynamic_cast<cls_DrawPoint*>(o)) {
    copy = make<cls_DrawPoint>();
    copy->COPY(Ref<cls_DrawPoint>(point));
  } else {
    copy = rootFactory<cls_DrawToolPoint>()->AUTO(pPointOrRect, 0);
  }
  const Affine::Point at = map.map({static_cast<float>(copy->X()), static_cast<float>(copy->Y())});
  copy->MOVE(static_cast<float>(at.x), static_cast<float>(at.y));
  return copy;
}

Ref<Object> cls_DrawGraphics::PROJECT(Call, const Variant& pPointOrRect) {
  return hProjected(pPointOrRect, worldToDevice().inverse());
}

Ref<Object> cls_DrawGraphics::REPROJECT(Call, const Variant& pPointOrRect) {
  return hProjected(pPointOrRect, worldToDevice());
}

void cls_DrawGraphics::RENDERWINDOW(Call, const Variant& pRect) {
  const Variant rect = pRect.isObject() ? pRect : Variant(surface::rectArg(pRect));
  Ref<cls_DrawRect> area = REDRAWAREA();
  if (area->W() != 0)
    area->MERGE(rect);
  else
    Invoke(area.get(), "COPY", InvokeKind::Method, {rect});
}

void cls_DrawGraphics::REFRESH(Call) {
  if (isImage_ || !device_) return;
  try {
    Invoke(device_.get(), "REFRESH", InvokeKind::Method);
  } catch (const Error&) {
    // A host that cannot show its picture leaves it as it is; REFRESH reports nothing.
  }
}

}  // namespace tessel
