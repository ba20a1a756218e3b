// The surface's argument conversions (SurfaceArgs.h).
#include <tessel/graphics/SurfaceArgs.h>

#include <tessel/core/Root.h>
#include <tessel/geometry/cls_DrawRect.h>
#include <tessel/geometry/cls_DrawToolRect.h>
#include <tessel/images/cls_DrawImage.h>
#include <tessel/images/cls_DrawToolImage.h>
#include <tessel/resources/cls_DrawBrush.h>
#include <tessel/resources/cls_DrawFont.h>
#include <tessel/resources/cls_DrawImageAttributes.h>
#include <tessel/resources/cls_DrawPath.h>
#include <tessel/resources/cls_DrawPen.h>
#include <tessel/resources/cls_DrawTextFormat.h>
#include <tessel/resources/cls_DrawToolBrush.h>
#include <tessel/resources/cls_DrawToolFont.h>
#include <tessel/resources/cls_DrawToolImageAttributes.h>
#include <tessel/resources/cls_DrawToolPen.h>
#include <tessel/resources/cls_DrawToolTextFormat.h>

#include <cmath>
#include <cstdint>
#include <limits>

namespace tessel::surface {

namespace gp = mdl_GDIPlus;

Ref<Object> rectArg(const Variant& v) {
  return v.isObject() ? v.objRef() : Ref<Object>(rootFactory<cls_DrawToolRect>()->AUTO(v, 0, 0, 0));
}
Ref<Object> penArg(const Variant& v) {
  return v.isObject() ? v.objRef() : Ref<Object>(rootFactory<cls_DrawToolPen>()->AUTO(v));
}
Ref<Object> brushArg(const Variant& v) {
  return v.isObject() ? v.objRef() : Ref<Object>(rootFactory<cls_DrawToolBrush>()->AUTO(v));
}
Ref<Object> fontArg(const Variant& v) {
  return v.isObject() ? v.objRef() : Ref<Object>(rootFactory<cls_DrawToolFont>()->AUTO(v));
}
Ref<Object> formatArg(const Variant& v) {
  return v.isObject() ? v.objRef() : Ref<Object>(rootFactory<cls_DrawToolTextFormat>()->AUTO(v));
}
Ref<Object> imageArg(const Variant& v) {
  return v.isObject() ? v.objRef() : Ref<Object>(rootFactory<cls_DrawToolImage>()->AUTO(v));
}
Ref<Object> attributesArg(const Variant& v) {
  if (v.isMissing()) return {};
  if (v.isObject()) return v.objRef();
  return rootFactory<cls_DrawToolImageAttributes>()->ALPHA(v.toSingle());
}

namespace {

float single(Object* o, std::string_view name) { return Invoke(o, name, InvokeKind::Get).toSingle(); }

// The toolkit's own wrapper of the kind, or the error a foreign value gets.
template <class Wrapper>
Wrapper& own(Object* o) {
  if (!o) raise(rt::ObjectNotSet);
  auto* w = dynamic_cast<Wrapper*>(o);
  if (!w) raise(rt::TypeMismatch);
  return *w;
}

template <class Native, class Wrapper>
Native* handleOf(Object* o) {
  return reinterpret_cast<Native*>(static_cast<intptr_t>(own<Wrapper>(o).HANDLE()));
}

}  // namespace

Box boxOf(Object* rect) {
  if (!rect) raise(rt::ObjectNotSet);
  if (auto* r = dynamic_cast<cls_DrawRect*>(rect)) {
    const cls_DrawRect::Values v = r->values();
    return {v.x, v.y, v.w, v.h};
  }
  return {single(rect, "X"), single(rect, "Y"), single(rect, "W"), single(rect, "H")};
}

int32_t whole(float v) {
  constexpr double lo = std::numeric_limits<int32_t>::min(), hi = std::numeric_limits<int32_t>::max();
  // Every drawing call rounds four coordinates: the common case without the general routine.
  // floor is exact in any rounding mode, and so is the tie test on a float widened to double.
  if (v > -1e9f && v < 1e9f) {
    const double d = v, down = std::floor(d), frac = d - down;
    const double r = frac > 0.5 || (frac == 0.5 && std::fmod(down, 2.0) != 0) ? down + 1 : down;
    return static_cast<int32_t>(r);
  }
  return static_cast<int32_t>(roundToWhole(v, lo, hi));
}

gp::GpPen* penOf(Object* o) { return own<cls_DrawPen>(o).pen(); }
gp::GpBrush* brushOf(Object* o) { return own<cls_DrawBrush>(o).brush(); }
gp::GpPath* pathOf(Object* o) { return handleOf<gp::GpPath, cls_DrawPath>(o); }
gp::GpFont* fontOf(Object* o) { return handleOf<gp::GpFont, cls_DrawFont>(o); }
gp::GpStringFormat* formatOf(Object* o) { return handleOf<gp::GpStringFormat, cls_DrawTextFormat>(o); }
gp::GpImage* imageOf(Object* o) { return own<cls_DrawImage>(o).bitmap(); }
gp::GpImageAttributes* attributesOf(Object* o) {
  return o ? handleOf<gp::GpImageAttributes, cls_DrawImageAttributes>(o) : nullptr;
}

}  // namespace tessel::surface
