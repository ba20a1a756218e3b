// The rectangle factory, reached as DRAW.RECT: every call makes a new rectangle.
#pragma once

#include <tessel/core/TypeLib.h>
#include <tessel/geometry/cls_DrawToolRect.members.h>
#include <tessel/geometry/cls_DrawRect.h>

#include <cstdint>

namespace tessel {

class cls_DrawToolRect final : public ObjectOf<cls_DrawToolRect> {
  TESSEL_MEMBERS(cls_DrawToolRect)

  template <class T, class... A>
  friend Ref<T> make(A&&...);
  cls_DrawToolRect() = default;
  ~cls_DrawToolRect() override = default;

  static Ref<cls_DrawRect> hRect(const Variant& pX, int32_t pY, int32_t pW, int32_t pH);
};

}  // namespace tessel
