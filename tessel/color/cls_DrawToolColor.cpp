#include <tessel/color/cls_DrawToolColor.h>

namespace tessel {

namespace {

Ref<cls_DrawColor> sharedColor(int32_t v) {
  auto c = make<cls_DrawColor>();
  c->RGB(v, v, v, -1);
  c->PROTECTED(true);
  return c;
}

}  // namespace

cls_DrawToolColor::cls_DrawToolColor() {
  trap("Class_Initialize", [&] {
    black_ = sharedColor(0);
    white_ = sharedColor(255);
  });
}

Ref<cls_DrawColor> cls_DrawToolColor::AUTO(const Variant& pAny) {
  return trap("AUTO", [&] {
    // The very object, not a copy: callers share it (a protected one stays as it is).
    if (auto same = refCast<cls_DrawColor>(pAny.objRef()); pAny.isObject() && same) return same;
    auto c = make<cls_DrawColor>();
    c->SOLID(pAny);
    return c;
  });
}

Ref<cls_DrawColor> cls_DrawToolColor::RGB(int32_t pR, int32_t pG, int32_t pB, int32_t pAlpha) {
  return trap("RGB", [&] {
    auto c = make<cls_DrawColor>();
    c->RGB(pR, pG, pB, pAlpha);
    return c;
  });
}

Ref<cls_DrawColor> cls_DrawToolColor::BLACK() {
  return trap("BLACK.GET", [&] { return black_; });
}
void cls_DrawToolColor::BLACK(Ref<cls_DrawColor> v) {
  trap("BLACK.SET", [&] { black_ = std::move(v); });
}
Ref<cls_DrawColor> cls_DrawToolColor::WHITE() {
  return trap("WHITE.GET", [&] { return white_; });
}
void cls_DrawToolColor::WHITE(Ref<cls_DrawColor> v) {
  trap("WHITE.SET", [&] { white_ = std::move(v); });
}

const ClassInfo& cls_DrawToolColor::typeInfo() {
  using C = cls_DrawToolColor;
  static const ClassInfo info = ClassBuilder<C>()
      .creatable()
      .method("AUTO", &C::AUTO, {"pAny"})
      .method("RGB", &C::RGB, {"pR", "pG", "pB", opt("pAlpha", -1)})
      .objectProperty("BLACK", &C::BLACK, &C::BLACK)
      .objectProperty("WHITE", &C::WHITE, &C::WHITE)
      .defaultMember("AUTO");
  return info;
}
TESSEL_REGISTER_CLASS(cls_DrawToolColor)

}  // namespace tessel
