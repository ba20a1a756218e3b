#include <tessel/geometry/cls_DrawToolRect.h>

#include <tessel/core/cls_DrawTool.h>
#include <tessel/core/mdl_Global.h>
#include <tessel/geometry/cls_DrawToolPoint.h>

namespace tessel {

// Shared by RECT and AUTO, so that each failure is reported under the caller's own name.
Ref<cls_DrawRect> cls_DrawToolRect::hRect(const Variant& pX, int32_t pY, int32_t pW, int32_t pH) {
  // Numbers only: an object is not read through its default member.
  if (pX.isObject()) raise(rt::TypeMismatch);
  const float x = pX.toSingle();
  Ref<cls_DrawRect> r = make<cls_DrawRect>();
  r->MOVE(x, static_cast<float>(pY), static_cast<float>(pW), static_cast<float>(pH));
  return r;
}

Ref<cls_DrawRect> cls_DrawToolRect::LINEXY(int32_t pX1, int32_t pY1, int32_t pX2, int32_t pY2) {
  return trap("LINEXY", [&] {
    Ref<cls_DrawRect> r = make<cls_DrawRect>();
    r->LINEXY(pX1, pY1, pX2, pY2);
    return r;
  });
}

Variant cls_DrawToolRect::LINES(const Variant& p1, const Variant& p2) {
  return trap("LINES", [&] {
    auto asPoint = [](const Variant& p) {
      return p.isObject() ? p : Variant(mdl_Global::DRAW()->POINT()->AUTO(p, 0));
    };
    const Variant a = asPoint(p1);
    const Variant b = asPoint(p2);
    Ref<cls_DrawRect> r = make<cls_DrawRect>();
    r->LINES(a, b);
    return Variant(r);
  });
}

Ref<cls_DrawRect> cls_DrawToolRect::RECT(const Variant& pX, int32_t pY, int32_t pW, int32_t pH) {
  return trap("RECT", [&] { return hRect(pX, pY, pW, pH); });
}

Ref<cls_DrawRect> cls_DrawToolRect::AUTO(const Variant& pXOrAny, int32_t pY, int32_t pW, int32_t pH) {
  return trap("AUTO", [&] {
    // Omitted and Empty compare equal to the empty text too.
    if (pXOrAny.isMissing() || pXOrAny.isEmpty() || (pXOrAny.isString() && pXOrAny.str().empty()))
      return make<cls_DrawRect>();
    return hRect(pXOrAny, pY, pW, pH);
  });
}

const ClassInfo& cls_DrawToolRect::typeInfo() {
  static const ClassInfo info = ClassBuilder<cls_DrawToolRect>()
      .creatable()
      .method("LINEXY", &cls_DrawToolRect::LINEXY,
              {opt("pX1", 0), opt("pY1", 0), opt("pX2", 0), opt("pY2", 0)})
      .method("LINES", &cls_DrawToolRect::LINES, {"p1", "p2"})
      .method("RECT", &cls_DrawToolRect::RECT, {"pX", "pY", "pW", "pH"})
      .method("AUTO", &cls_DrawToolRect::AUTO, {opt("pXOrAny", Variant(std::u16string())), opt("pY", 0), opt("pW", 0), opt("pH", 0)})
      .defaultMember("AUTO");
  return info;
}
TESSEL_REGISTER_CLASS(cls_DrawToolRect)

}  // namespace tessel
