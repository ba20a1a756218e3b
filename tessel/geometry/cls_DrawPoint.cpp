#include <tessel/geometry/cls_DrawPoint.h>

#include <cmath>

namespace tessel {

namespace {

double hFinite(double v) {
  if (!std::isfinite(v)) raise(rt::Overflow);
  return v;
}

}  // namespace

double cls_DrawPoint::X() const {
  return trap("X.GET", [&] { return x_; });
}

void cls_DrawPoint::X(double v) {
  trap("X.LET", [&] {
    if (hFinite(v) == x_) return;
    x_ = v;
    MOVED.raise();
  });
}

double cls_DrawPoint::Y() const {
  return trap("Y.GET", [&] { return y_; });
}

void cls_DrawPoint::Y(double v) {
  trap("Y.LET", [&] {
    if (hFinite(v) == y_) return;
    y_ = v;
    MOVED.raise();
  });
}

Ref<cls_DrawPoint> cls_DrawPoint::COPY(Ref<cls_DrawPoint> pOther) {
  return trap("COPY", [&] {
    if (!pOther) raise(rt::ObjectNotSet);
    double x = pOther->X(), y = pOther->Y();
    x_ = x;
    y_ = y;
    return Ref<cls_DrawPoint>(this);
  });
}

Ref<cls_DrawPoint> cls_DrawPoint::MOVE(double pX, double pY) {
  return trap("MOVE", [&] {
    hFinite(pX);
    hFinite(pY);
    if (pX != x_ || pY != y_) {
      x_ = pX;
      y_ = pY;
      MOVED.raise();
    }
    return Ref<cls_DrawPoint>(this);
  });
}

Ref<cls_DrawPoint> cls_DrawPoint::MOVEBY(double pRelX, double pRelY) {
  return trap("MOVEBY", [&] {
    if (pRelX != 0 || pRelY != 0) {
      // Coordinate by coordinate, as the host adds them: an overflow in Y leaves the new X.
      x_ = hFinite(x_ + pRelX);
      y_ = hFinite(y_ + pRelY);
      MOVED.raise();
    }
    return Ref<cls_DrawPoint>(this);
  });
}

Ref<cls_DrawPoint> cls_DrawPoint::CLONE() const {
  return trap("CLONE", [&] {
    Ref<cls_DrawPoint> p = make<cls_DrawPoint>();
    p->COPY(Ref<cls_DrawPoint>(const_cast<cls_DrawPoint*>(this)));
    return p;
  });
}

const ClassInfo& cls_DrawPoint::typeInfo() {
  static const ClassInfo info = ClassBuilder<cls_DrawPoint>()
      .creatable()
      .values({"X", "Y"})
      .property("X", &cls_DrawPoint::X, &cls_DrawPoint::X)
      .property("Y", &cls_DrawPoint::Y, &cls_DrawPoint::Y)
      .method("COPY", &cls_DrawPoint::COPY, {"pOther"})
      .method("MOVE", &cls_DrawPoint::MOVE, {"pX", "pY"})
      .method("MOVEBY", &cls_DrawPoint::MOVEBY, {"pRelX", "pRelY"})
      .method("CLONE", &cls_DrawPoint::CLONE)
      .event("MOVED", &cls_DrawPoint::MOVED);
  return info;
}
TESSEL_REGISTER_CLASS(cls_DrawPoint)

}  // namespace tessel
