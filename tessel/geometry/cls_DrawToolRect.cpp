#include <tessel/geometry/cls_DrawToolRect.h>

#include <tessel/core/mdl_Global.h>
#include <tessel/geometry/cls_DrawToolPoint.h>

#include <vector>

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

Ref<cls_DrawRect> cls_DrawToolRect::LINEXY(Call, int32_t pX1, int32_t pY1, int32_t pX2, int32_t pY2) {
  Ref<cls_DrawRect> r = make<cls_DrawRect>();
  r->LINEXY(pX1, pY1, pX2, pY2);
  return r;
}

Variant cls_DrawToolRect::LINES(Call, const Variant& p1, const Variant& p2) {
  const Variant a = PointArgument(p1);
  const Variant b = PointArgument(p2);
  Ref<cls_DrawRect> r = make<cls_DrawRect>();
  r->LINES(a, b);
  return Variant(r);
}

Ref<cls_DrawRect> cls_DrawToolRect::RECT(Call, const Variant& pX, int32_t pY, int32_t pW, int32_t pH) { return hRect(pX, pY, pW, pH); }

Ref<cls_DrawRect> cls_DrawToolRect::AUTO(Call, const Variant& pXOrAny, int32_t pY, int32_t pW, int32_t pH) {
  // Omitted and Empty compare equal to the empty text too.
  if (pXOrAny.isMissing() || pXOrAny.isEmpty() || (pXOrAny.isString() && pXOrAny.str().empty()))
    return make<cls_DrawRect>();
  // A whole rectangle in one argument, "(10,20,50,30)" or an array: the others are not read.
  std::vector<double> n;
  if (mdl_Global::LooseNumbers(pXOrAny, 4, n)) {
    n.resize(4, 0.0);
    Ref<cls_DrawRect> r = make<cls_DrawRect>();
    r->MOVE(Variant(n[0]).toSingle(), Variant(n[1]).toSingle(), Variant(n[2]).toSingle(), Variant(n[3]).toSingle());
    return r;
  }
  return hRect(pXOrAny, pY, pW, pH);
}

}  // namespace tessel
