#include <tessel/color/cls_DrawToolColor.h>

#include <tessel/core/Root.h>

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

Ref<cls_DrawColor> cls_DrawToolColor::AUTO(Call, const Variant& pAny) {
  // The very object, not a copy: callers share it (a protected one stays as it is).
  if (auto same = refCast<cls_DrawColor>(pAny.objRef()); pAny.isObject() && same) return same;
  auto c = make<cls_DrawColor>();
  c->SOLID(pAny);
  return c;
}

Ref<cls_DrawColor> cls_DrawToolColor::RGB(Call, int32_t pR, int32_t pG, int32_t pB, int32_t pAlpha) {
  auto c = make<cls_DrawColor>();
  c->RGB(pR, pG, pB, pAlpha);
  return c;
}

Ref<cls_DrawColor> cls_DrawToolColor::BLACK(Get) const { return black_; }
void cls_DrawToolColor::BLACK(Set, Ref<cls_DrawColor> v) { black_ = std::move(v); }
Ref<cls_DrawColor> cls_DrawToolColor::WHITE(Get) const { return white_; }
void cls_DrawToolColor::WHITE(Set, Ref<cls_DrawColor> v) { white_ = std::move(v); }

uint32_t ColorArgb(const Variant& colour) {
  if (auto* own = dynamic_cast<cls_DrawColor*>(colour.obj())) return static_cast<uint32_t>(own->ATOM());  // no lookup
  const Variant c = colour.isObject() ? colour : Variant(rootFactory<cls_DrawToolColor>()->AUTO(colour));
  return static_cast<uint32_t>(Invoke(c, "ATOM", InvokeKind::Get).toLong());
}

}  // namespace tessel
