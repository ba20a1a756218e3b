// The point factory, reached as DRAW.POINT: every call makes a new point.
#pragma once

#include <tessel/core/TypeLib.h>
#include <tessel/geometry/cls_DrawPoint.h>

namespace tessel {

class cls_DrawToolPoint final : public ObjectOf<cls_DrawToolPoint> {
 public:
  static constexpr std::string_view ClassName = "cls_DrawToolPoint";
  static const ClassInfo& typeInfo();

  Ref<cls_DrawPoint> POINT(double pX, double pY);
  // The default member. pXOrAny must convert to a number (a numeric text will do); an object
  // or any other text is a type mismatch (13).
  Ref<cls_DrawPoint> AUTO(const Variant& pXOrAny, double pY = 0);

 private:
  template <class T, class... A>
  friend Ref<T> make(A&&...);
  cls_DrawToolPoint() = default;
  ~cls_DrawToolPoint() override = default;
};

}  // namespace tessel
