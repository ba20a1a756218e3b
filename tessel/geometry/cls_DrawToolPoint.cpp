#include <tessel/geometry/cls_DrawToolPoint.h>

#include <tessel/core/Root.h>

namespace tessel {

Variant PointArgument(const Variant& p) {
  return p.isObject() ? p : Variant(rootFactory<cls_DrawToolPoint>()->AUTO(p, 0));
}

Ref<cls_DrawPoint> cls_DrawToolPoint::POINT(Call, double pX, double pY) { return make<cls_DrawPoint>()->MOVE(pX, pY); }

Ref<cls_DrawPoint> cls_DrawToolPoint::AUTO(Call, const Variant& pXOrAny, double pY) {
  // Not even through a default member: the factory takes numbers only.
  if (pXOrAny.isObject()) raise(rt::TypeMismatch);
  return make<cls_DrawPoint>()->MOVE(pXOrAny.toDouble(), pY);
}

}  // namespace tessel
