// A mutable 2-D point in double precision that announces its own movement. Its members are
// written in cls_DrawPoint.members.
#pragma once

#include <tessel/core/TypeLib.h>
#include <tessel/geometry/cls_DrawPoint.members.h>

namespace tessel {

class cls_DrawPoint final : public ObjectOf<cls_DrawPoint> {
  TESSEL_MEMBERS(cls_DrawPoint)

  template <class T, class... A>
  friend Ref<T> make(A&&...);
  cls_DrawPoint() = default;
  // Heap only: operations hand out Refs to the point itself.
  ~cls_DrawPoint() override = default;

  double x_ = 0;
  double y_ = 0;
};

}  // namespace tessel
