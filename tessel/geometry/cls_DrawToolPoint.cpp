#include <tessel/geometry/cls_DrawToolPoint.h>

namespace tessel {

Ref<cls_DrawPoint> cls_DrawToolPoint::POINT(double pX, double pY) {
  return trap("POINT", [&] { return make<cls_DrawPoint>()->MOVE(pX, pY); });
}

Ref<cls_DrawPoint> cls_DrawToolPoint::AUTO(const Variant& pXOrAny, double pY) {
  return trap("AUTO", [&] {
    // Not even through a default member: the factory takes numbers only.
    if (pXOrAny.isObject()) raise(rt::TypeMismatch);
    return make<cls_DrawPoint>()->MOVE(pXOrAny.toDouble(), pY);
  });
}

const ClassInfo& cls_DrawToolPoint::typeInfo() {
  static const ClassInfo info = ClassBuilder<cls_DrawToolPoint>()
      .creatable()
      .method("POINT", &cls_DrawToolPoint::POINT, {"pX", "pY"})
      .method("AUTO", &cls_DrawToolPoint::AUTO, {"pXOrAny", opt("pY", 0.0)})
      .defaultMember("AUTO");
  return info;
}
TESSEL_REGISTER_CLASS(cls_DrawToolPoint)

}  // namespace tessel
