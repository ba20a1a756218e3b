// The point factory, reached as DRAW.POINT: every call makes a new point.
#pragma once

#include <tessel/core/TypeLib.h>
#include <tessel/geometry/cls_DrawToolPoint.members.h>
#include <tessel/geometry/cls_DrawPoint.h>

namespace tessel {

// A point argument: an object as it is, any other value made into a point by the thread's point
// factory (the root's POINT).
Variant PointArgument(const Variant& p);
// The coordinates of a point argument: a point object's own, any other object's X and Y read by
// name, any other value's as the point factory makes it.
void PointCoordinates(const Variant& p, double& x, double& y);

class cls_DrawToolPoint final : public ObjectOf<cls_DrawToolPoint> {
  TESSEL_MEMBERS(cls_DrawToolPoint)

  template <class T, class... A>
  friend Ref<T> make(A&&...);
  cls_DrawToolPoint() = default;
  ~cls_DrawToolPoint() override = default;
};

}  // namespace tessel
