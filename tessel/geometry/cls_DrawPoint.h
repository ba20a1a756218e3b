// A mutable 2-D point in double precision that announces its own movement.
#pragma once

#include <tessel/core/TypeLib.h>

namespace tessel {

class cls_DrawPoint final : public ObjectOf<cls_DrawPoint> {
 public:
  static constexpr std::string_view ClassName = "cls_DrawPoint";
  static const ClassInfo& typeInfo();

  // Lets raise MOVED only when the value changes. A value that is not a finite number is
  // refused with overflow (6): the host cannot hold one either.
  double X() const;
  void X(double v);
  double Y() const;
  void Y(double v);

  // Takes pOther's coordinates without raising MOVED (intended: a copy is no movement).
  Ref<cls_DrawPoint> COPY(Ref<cls_DrawPoint> pOther);
  // One MOVED when either coordinate changes.
  Ref<cls_DrawPoint> MOVE(double pX, double pY);
  // One MOVED unless both offsets are 0, even when only one coordinate changes.
  Ref<cls_DrawPoint> MOVEBY(double pRelX, double pRelY);
  // A new point at the same place, without listeners.
  Ref<cls_DrawPoint> CLONE() const;

  Event<> MOVED;

 private:
  template <class T, class... A>
  friend Ref<T> make(A&&...);
  cls_DrawPoint() = default;
  // Heap only: operations hand out Refs to the point itself.
  ~cls_DrawPoint() override = default;

  double x_ = 0;
  double y_ = 0;
};

}  // namespace tessel
