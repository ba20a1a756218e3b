// The rectangle factory, reached as DRAW.RECT: every call makes a new rectangle.
#pragma once

#include <tessel/core/TypeLib.h>
#include <tessel/geometry/cls_DrawRect.h>

#include <cstdint>

namespace tessel {

class cls_DrawToolRect final : public ObjectOf<cls_DrawToolRect> {
 public:
  static constexpr std::string_view ClassName = "cls_DrawToolRect";
  static const ClassInfo& typeInfo();

  // The rectangle spanned by two corner points (see cls_DrawRect::LINEXY).
  Ref<cls_DrawRect> LINEXY(int32_t pX1 = 0, int32_t pY1 = 0, int32_t pX2 = 0, int32_t pY2 = 0);
  // Each argument a point object (used as it is) or a number for the point factory (Y = 0).
  Variant LINES(const Variant& p1, const Variant& p2);
  // pX must convert to a number (a numeric text will do); then MOVE(pX, pY, pW, pH).
  Ref<cls_DrawRect> RECT(const Variant& pX, int32_t pY, int32_t pW, int32_t pH);
  // The default member: the empty text (the default) gives an all-zero rectangle, anything
  // else is what RECT makes of it. No parameter text is decoded here.
  Ref<cls_DrawRect> AUTO(const Variant& pXOrAny = Variant(std::u16string()), int32_t pY = 0, int32_t pW = 0,
                         int32_t pH = 0);

 private:
  template <class T, class... A>
  friend Ref<T> make(A&&...);
  cls_DrawToolRect() = default;
  ~cls_DrawToolRect() override = default;

  static Ref<cls_DrawRect> hRect(const Variant& pX, int32_t pY, int32_t pW, int32_t pH);
};

}  // namespace tessel
