// The rectangle value object: a top-left corner and a size in Single units, with inclusive
// right and bottom edges (X = 10, W = 5 covers 10 to 14), optional size bounds, and the
// events RESIZE and MOVED for owners that redraw or re-lay out.
#pragma once

#include <tessel/core/TypeLib.h>
#include <tessel/geometry/cls_DrawPoint.h>

#include <cstdint>
#include <string>

namespace tessel {

enum class enm_UIRectSide : int32_t {
  ID_UIRectSide_Top = 0,
  ID_UIRectSide_Right = 1,
  ID_UIRectSide_Bottom = 2,
  ID_UIRectSide_Left = 3,
};

// Column-major: the left column first, then the centre, then the right.
enum class enm_UIRectCorner : int32_t {
  ID_UIRectCorner_XLeftYTop = 0,
  ID_UIRectCorner_XLeftYMid = 1,
  ID_UIRectCorner_XLeftYBottom = 2,
  ID_UIRectCorner_XCenterYTop = 3,
  ID_UIRectCorner_XCenterYMid = 4,
  ID_UIRectCorner_XCenterYBottom = 5,
  ID_UIRectCorner_XRightYTop = 6,
  ID_UIRectCorner_XRightYMid = 7,
  ID_UIRectCorner_XRightYBottom = 8,
};

class cls_DrawRect final : public ObjectOf<cls_DrawRect> {
 public:
  static constexpr std::string_view ClassName = "cls_DrawRect";
  static const ClassInfo& typeInfo();

  // Size bounds, active only while greater than 0. Setting one does not re-clamp the size.
  float WMIN = 0;
  float WMAX = 0;
  float HMIN = 0;
  float HMAX = 0;

  // Copies pOther's position and size exactly (no clamping): MOVED when the position
  // changes, then RESIZE when the size changes.
  Ref<cls_DrawRect> COPY(Ref<cls_DrawRect> pOther);

  // X / Y lets raise MOVED when the value changes; W / H lets clamp, then raise RESIZE when
  // the clamped value changes.
  float X() const;
  void X(float v);
  float Y() const;
  void Y(float v);
  float W() const;
  void W(float v);
  float H() const;
  void H(float v);

  // Centres the rectangle on a point (a non-object goes through the point factory); X and Y
  // go through their lets, so up to two MOVED. Returns the rectangle itself.
  Variant MOVECENTER(const Variant& pPoint);
  // A pW or pH of exactly -1 keeps that dimension; any other is clamped. MOVED per changed
  // coordinate, then one RESIZE when the size changes.
  Ref<cls_DrawRect> MOVE(float pX, float pY, float pW = -1, float pH = -1);
  Ref<cls_DrawRect> SIZE(float pW = -1, float pH = -1);
  // The rectangle spanned by two points, both inclusive; see LINEXY.
  Ref<cls_DrawRect> LINES(const Variant& p1, const Variant& p2);
  // X = min(x1, x2), W = |x2 - x1| + 1 (Y, H alike), unclamped: the result covers both points.
  // MOVED when the corner changes, then RESIZE when the size changes. Returns the rectangle.
  Variant LINEXY(double pX1, double pY1, double pX2, double pY2);
  // One MOVED when either offset is non-zero.
  Ref<cls_DrawRect> MOVEBY(float pRelX, float pRelY);
  // Moves the top-left and the inclusive bottom-right corner; unclamped; MOVED then RESIZE
  // when any offset is non-zero.
  Ref<cls_DrawRect> MOVEOFFSET(float pRelX1, float pRelY1, float pRelX2, float pRelY2);

  // Inclusive right / bottom edge and centre. x2 / y2 lets move the edge (an edge set left of
  // X flips the rectangle over X); XC / YC lets move the rectangle, keeping its size.
  float x2() const;
  void x2(float v);
  float y2() const;
  void y2(float v);
  float XC() const;
  void XC(float v);
  float YC() const;
  void YC(float v);

  // A zero-thickness rectangle along a side; Nothing for a value outside the enumeration.
  Ref<cls_DrawRect> SIDE(enm_UIRectSide pSide) const;
  // A square of side pSize inside this rectangle at the named position.
  Ref<cls_DrawRect> CORNERRECT(enm_UIRectCorner pCorner, float pSize) const;
  // A new point at the named position.
  Ref<cls_DrawPoint> CORNER(enm_UIRectCorner pCorner) const;
  // Grows by pOff on every side, unclamped: RESIZE then MOVED. SHRINK is EXPAND(-pOff).
  Ref<cls_DrawRect> EXPAND(double pOff);
  Ref<cls_DrawRect> SHRINK(double pOff);
  // All edges inclusive.
  bool HITTESTXY(float pX, float pY) const;
  // A point is hit-tested; any other object (or a value made into a rectangle by the
  // rectangle factory) is tested for containment.
  bool HITTEST(const Variant& pPointOrRect) const;
  // Grows to the union with another rectangle (any object with X, Y, x2, y2, or a value for
  // the rectangle factory).
  void MERGE(const Variant& pRect);
  // Does nothing, on purpose: it exists for symmetry with the other value objects.
  void CLEAR();
  // Same position and size; the bounds and listeners stay behind.
  Ref<cls_DrawRect> CLONE() const;
  // "(X,Y)-(x2,y2)" in the host's Single text form.
  std::u16string INFO() const;
  // The inclusive extents overlap on both axes; an empty rectangle overlaps nothing.
  bool INTERSECTS(Ref<cls_DrawRect> pRect) const;

  Event<> RESIZE;
  Event<> MOVED;

 private:
  template <class T, class... A>
  friend Ref<T> make(A&&...);
  cls_DrawRect() = default;
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
