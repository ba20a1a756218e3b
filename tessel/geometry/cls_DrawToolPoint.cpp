#include <tessel/geometry/cls_DrawToolPoint.h>

#include <tessel/core/Root.h>
#include <tessel/core/mdl_Global.h>

#include <vector>

namespace tessel {

Variant PointArgument(const Variant& p) {
  return p.isObject() ? p : Variant(rootFactory<cls_DrawToolPoint>()->AUTO(p, 0));
}

void PointCoordinates(const Variant& pPoint, double& x, double& y) {
  const Variant p = PointArgument(pPoint);
  if (auto pt = refCast<cls_DrawPoint>(p.objRef())) {
    x = pt->X();
    y = pt->Y();
  } else {
    x = Invoke(p.obj(), "X", InvokeKind::Get).toDouble();
    y = Invoke(p.obj(), "Y", InvokeKind::Get).toDouble();
  }
}

Ref<cls_DrawPoint> cls_DrawToolPoint::POINT(Call, double pX, double pY) { return make<cls_DrawPoint>()->MOVE(pX, pY); }

Ref<cls_DrawPoint> cls_DrawToolPoint::AUTO(Call, const Variant& pXOrAny, double pY) {
  // Not even through a default member: the factory takes numbers only.
  if (pXOrAny.isObject()) raise(rt::TypeMismatch);
  // A whole point in one argument, "(10,20)" or an array: pY is not read.
  std::vector<double> n;
  if (mdl_Global::LooseNumbers(pXOrAny, 2, n)) {
    n.resize(2, 0.0);
    return make<cls_DrawPoint>()->MOVE(n[0], n[1]);
  }
  return make<cls_DrawPoint>()->MOVE(pXOrAny.toDouble(), pY);
}

}  // namespace tessel
