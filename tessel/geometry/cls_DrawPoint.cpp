#include <tessel/geometry/cls_DrawPoint.h>

#include <tessel/core/Checked.h>

#include <cmath>

namespace tessel {

double cls_DrawPoint::X(Get) const { return x_; }

void cls_DrawPoint::X(Let, double v) {
  if (checkedFinite(v) == x_) return;
  x_ = v;
  MOVED.raise();
}

double cls_DrawPoint::Y(Get) const { return y_; }

void cls_DrawPoint::Y(Let, double v) {
  if (checkedFinite(v) == y_) return;
  y_ = v;
  MOVED.raise();
}

Ref<cls_DrawPoint> cls_DrawPoint::COPY(Call, Ref<cls_DrawPoint> pOther) {
  if (!pOther) raise(rt::ObjectNotSet);
  double x = pOther->X(), y = pOther->Y();
  x_ = x;
  y_ = y;
  return Ref<cls_DrawPoint>(this);
}

Ref<cls_DrawPoint> cls_DrawPoint::MOVE(Call, double pX, double pY) {
  checkedFinite(pX);
  checkedFinite(pY);
  if (pX != x_ || pY != y_) {
    x_ = pX;
    y_ = pY;
    MOVED.raise();
  }
  return Ref<cls_DrawPoint>(this);
}

Ref<cls_DrawPoint> cls_DrawPoint::MOVEBY(Call, double pRelX, double pRelY) {
  if (pRelX != 0 || pRelY != 0) {
    // Coordinate by coordinate, as automation adds them: an overflow in Y leaves the new X.
    x_ = checkedFinite(x_ + pRelX);
    y_ = checkedFinite(y_ + pRelY);
    MOVED.raise();
  }
  return Ref<cls_DrawPoint>(this);
}

Ref<cls_DrawPoint> cls_DrawPoint::CLONE(Call) const {
  Ref<cls_DrawPoint> p = make<cls_DrawPoint>();
  p->COPY(Ref<cls_DrawPoint>(const_cast<cls_DrawPoint*>(this)));
  return p;
}


}  // namespace tessel
