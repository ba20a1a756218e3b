// The rectangle value object: a top-left corner and a size in Single units, with inclusive
// right and bottom edges (X = 10, W = 5 covers 10 to 14), optional size bounds, and the
// events RESIZE and MOVED for owners that redraw or re-lay out. Its members are written in
// cls_DrawRect.members.
#pragma once

#include <tessel/core/TypeLib.h>
#include <tessel/geometry/cls_DrawPoint.h>
#include <tessel/geometry/cls_DrawRect.members.h>

#include <cstdint>
#include <string>

namespace tessel {

class cls_DrawRect final : public ObjectOf<cls_DrawRect> {
  TESSEL_MEMBERS(cls_DrawRect)

  template <class T, class... A>
  friend Ref<T> make(A&&...);
  cls_DrawRect() = default;

 public:
  // The position and size for drawing code, read without the properties' trap (reading them
  // cannot fail).
  struct Values {
    float x, y, w, h;
  };
  Values values() const noexcept { return {x_, y_, w_, h_}; }

 private:
  // Heap only: operations hand out Refs to the rectangle itself.
  ~cls_DrawRect() override = default;

  struct Edges {
    double left, top, right, bottom;  // inclusive
  };

  float hX2() const;
  float hY2() const;
  float hXC() const;
  float hYC() const;
  float hClampW(float v) const;
  float hClampH(float v) const;
  void hPlace(float x, float y, float w, float h);
  Edges hEdges() const;
  static Edges hEdgesOf(const Variant& pRect);
  bool hContains(const Edges& e) const;
  Ref<cls_DrawRect> hSelf() const { return Ref<cls_DrawRect>(const_cast<cls_DrawRect*>(this)); }

  float x_ = 0;
  float y_ = 0;
  float w_ = 0;
  float h_ = 0;
};

}  // namespace tessel
