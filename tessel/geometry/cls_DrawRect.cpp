#include <tessel/geometry/cls_DrawRect.h>

#include <tessel/core/Checked.h>
#include <tessel/core/Root.h>
#include <tessel/core/Text.h>
#include <tessel/geometry/cls_DrawToolPoint.h>
#include <tessel/geometry/cls_DrawToolRect.h>

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace tessel {

namespace {

// A Double compared with Single edges: rounded as automation would pass it on, but without the
// overflow, since a coordinate beyond the Single range simply lies outside.
double hAsSingle(double v) { return std::fabs(v) <= FLT_MAX ? static_cast<double>(static_cast<float>(v)) : v; }

double hByName(Object* o, std::string_view name) { return Invoke(o, name, InvokeKind::Get).toDouble(); }

int hColumn(enm_UIRectCorner c) {
  auto v = static_cast<int32_t>(c);
  if (v < 0 || v > 8) raise(rt::InvalidCall);
  return v / 3;
}
int hRow(enm_UIRectCorner c) { return static_cast<int32_t>(c) % 3; }

}  // namespace

// ---------------------------------------------------------------------------------------------
// Private helpers. Values are computed in double and rounded once into the Single fields
// (checkedSingle): a result a field cannot hold, or no number at all, is an overflow.

float cls_DrawRect::hX2() const { return checkedSingle(static_cast<double>(x_) + w_ - 1); }
float cls_DrawRect::hY2() const { return checkedSingle(static_cast<double>(y_) + h_ - 1); }
float cls_DrawRect::hXC() const { return checkedSingle((static_cast<double>(hX2()) + x_) / 2); }
float cls_DrawRect::hYC() const { return checkedSingle((static_cast<double>(hY2()) + y_) / 2); }

// A bound is active while it is a number greater than 0: one that C++ code set to infinity or
// NaN (the late-bound let refuses them) must not block every later size.
static bool hActive(float bound) { return bound > 0 && std::isfinite(bound); }

float cls_DrawRect::hClampW(float v) const {
  if (hActive(WMIN) && v < WMIN) v = WMIN;
  if (hActive(WMAX) && v > WMAX) v = WMAX;
  return checkedSingle(v);
}

float cls_DrawRect::hClampH(float v) const {
  if (hActive(HMIN) && v < HMIN) v = HMIN;
  if (hActive(HMAX) && v > HMAX) v = HMAX;
  return checkedSingle(v);
}

// Stores a new position and size as they are: MOVED when the corner changes, then RESIZE
// when the size changes.
void cls_DrawRect::hPlace(float x, float y, float w, float h) {
  if (x != x_ || y != y_) {
    x_ = x;
    y_ = y;
    MOVED.raise();
  }
  if (w != w_ || h != h_) {
    w_ = w;
    h_ = h;
    RESIZE.raise();
  }
}

cls_DrawRect::Edges cls_DrawRect::hEdges() const { return Edges{x_, y_, hX2(), hY2()}; }

// Another rectangle's edges: read by name, so that any object with X, Y, x2 and y2 serves;
// a value that is no object goes through the thread's rectangle factory first.
cls_DrawRect::Edges cls_DrawRect::hEdgesOf(const Variant& pRect) {
  if (!pRect.isObject()) return rootFactory<cls_DrawToolRect>()->AUTO(pRect)->hEdges();
  if (auto r = refCast<cls_DrawRect>(pRect.objRef())) return r->hEdges();  // the same reads, without the lookup
  Object* o = pRect.obj();
  return Edges{hByName(o, "X"), hByName(o, "Y"), hByName(o, "x2"), hByName(o, "y2")};
}

bool cls_DrawRect::hContains(const Edges& e) const {
  return e.left >= x_ && e.right <= hX2() && e.top >= y_ && e.bottom <= hY2();
}

// ---------------------------------------------------------------------------------------------
// Position and size.

Ref<cls_DrawRect> cls_DrawRect::COPY(Call, Ref<cls_DrawRect> pOther) {
  if (!pOther) raise(rt::ObjectNotSet);
  hPlace(pOther->x_, pOther->y_, pOther->w_, pOther->h_);
  return hSelf();
}

float cls_DrawRect::X(Get) const { return x_; }

void cls_DrawRect::X(Let, float v) {
  if (checkedSingle(v) == x_) return;
  x_ = v;
  MOVED.raise();
}

float cls_DrawRect::Y(Get) const { return y_; }

void cls_DrawRect::Y(Let, float v) {
  if (checkedSingle(v) == y_) return;
  y_ = v;
  MOVED.raise();
}

float cls_DrawRect::W(Get) const { return w_; }

void cls_DrawRect::W(Let, float v) {
  float w = hClampW(v);
  if (w == w_) return;
  w_ = w;
  RESIZE.raise();
}

float cls_DrawRect::H(Get) const { return h_; }

void cls_DrawRect::H(Let, float v) {
  float h = hClampH(v);
  if (h == h_) return;
  h_ = h;
  RESIZE.raise();
}

Variant cls_DrawRect::MOVECENTER(Call, const Variant& pPoint) {
  double px, py;
  PointCoordinates(pPoint, px, py);
  // Both targets first: the offsets to the centre must not see a half-done move.
  float x = checkedSingle(px + (static_cast<double>(x_) - hXC()));
  float y = checkedSingle(py + (static_cast<double>(y_) - hYC()));
  X(x);
  Y(y);
  return Variant(hSelf());
}

Ref<cls_DrawRect> cls_DrawRect::MOVE(Call, float pX, float pY, float pW, float pH) {
  // The size is checked before anything moves, so a bad size leaves the rectangle alone.
  float w = pW == -1 ? w_ : hClampW(pW);
  float h = pH == -1 ? h_ : hClampH(pH);
  checkedSingle(pX);
  checkedSingle(pY);
  X(pX);
  Y(pY);
  if (w != w_ || h != h_) {
    w_ = w;
    h_ = h;
    RESIZE.raise();
  }
  return hSelf();
}

Ref<cls_DrawRect> cls_DrawRect::SIZE(Call, float pW, float pH) { return MOVE(x_, y_, pW, pH); }

Ref<cls_DrawRect> cls_DrawRect::LINES(Call, const Variant& p1, const Variant& p2) {
  double x1, y1, x2, y2;
  PointCoordinates(p1, x1, y1);
  PointCoordinates(p2, x2, y2);
  LINEXY(x1, y1, x2, y2);
  return hSelf();
}

Variant cls_DrawRect::LINEXY(Call, double pX1, double pY1, double pX2, double pY2) {
  float x = checkedSingle(std::min(pX1, pX2));
  float y = checkedSingle(std::min(pY1, pY2));
  float w = checkedSingle(std::fabs(pX2 - pX1) + 1);
  float h = checkedSingle(std::fabs(pY2 - pY1) + 1);
  hPlace(x, y, w, h);
  return Variant(hSelf());
}

Ref<cls_DrawRect> cls_DrawRect::MOVEBY(Call, float pRelX, float pRelY) {
  if (pRelX != 0 || pRelY != 0) {
    float x = checkedSingle(static_cast<double>(x_) + pRelX);
    float y = checkedSingle(static_cast<double>(y_) + pRelY);
    x_ = x;
    y_ = y;
    MOVED.raise();
  }
  return hSelf();
}

Ref<cls_DrawRect> cls_DrawRect::MOVEOFFSET(Call, float pRelX1, float pRelY1, float pRelX2, float pRelY2) {
  if (pRelX1 != 0 || pRelY1 != 0 || pRelX2 != 0 || pRelY2 != 0) {
    double right = static_cast<double>(x_) + w_ - 1 + pRelX2;
    double bottom = static_cast<double>(y_) + h_ - 1 + pRelY2;
    float x = checkedSingle(static_cast<double>(x_) + pRelX1);
    float y = checkedSingle(static_cast<double>(y_) + pRelY1);
    float w = checkedSingle(right - x + 1);
    float h = checkedSingle(bottom - y + 1);
    x_ = x;
    y_ = y;
    w_ = w;
    h_ = h;
    MOVED.raise();
    RESIZE.raise();
  }
  return hSelf();
}

// ---------------------------------------------------------------------------------------------
// Edges and centre.

float cls_DrawRect::x2(Get) const { return hX2(); }

void cls_DrawRect::x2(Let, float v) {
  float w = hClampW(checkedSingle(std::fabs(static_cast<double>(checkedSingle(v)) - x_) + 1));
  if (v < x_) X(v);  // the old left edge becomes the right edge
  if (w != w_) {
    w_ = w;
    RESIZE.raise();
  }
}

float cls_DrawRect::y2(Get) const { return hY2(); }

void cls_DrawRect::y2(Let, float v) {
  float h = hClampH(checkedSingle(std::fabs(static_cast<double>(checkedSingle(v)) - y_) + 1));
  if (v < y_) Y(v);
  if (h != h_) {
    h_ = h;
    RESIZE.raise();
  }
}

float cls_DrawRect::XC(Get) const { return hXC(); }

void cls_DrawRect::XC(Let, float v) { X(checkedSingle(v + (static_cast<double>(x_) - hXC()))); }

float cls_DrawRect::YC(Get) const { return hYC(); }

void cls_DrawRect::YC(Let, float v) { Y(checkedSingle(v + (static_cast<double>(y_) - hYC()))); }

// ---------------------------------------------------------------------------------------------
// Derived rectangles and points.

Ref<cls_DrawRect> cls_DrawRect::SIDE(Call, enm_UIRectSide pSide) const {
  Ref<cls_DrawRect> r = make<cls_DrawRect>();
  switch (pSide) {
    case enm_UIRectSide::ID_UIRectSide_Top: r->MOVE(x_, y_, w_, 0); break;
    case enm_UIRectSide::ID_UIRectSide_Right: r->MOVE(hX2(), y_, 0, h_); break;
    case enm_UIRectSide::ID_UIRectSide_Bottom: r->MOVE(x_, hY2(), w_, 0); break;
    case enm_UIRectSide::ID_UIRectSide_Left: r->MOVE(x_, y_, 0, h_); break;
    default: return Ref<cls_DrawRect>();
  }
  return r;
}

Ref<cls_DrawRect> cls_DrawRect::CORNERRECT(Call, enm_UIRectCorner pCorner, float pSize) const {
  const double half = static_cast<double>(pSize) / 2;
  float left = 0, top = 0;
  switch (hColumn(pCorner)) {
    case 0: left = x_; break;
    case 1: left = checkedSingle(hXC() - half); break;
    default: left = checkedSingle(static_cast<double>(hX2()) + 1 - pSize); break;
  }
  switch (hRow(pCorner)) {
    case 0: top = y_; break;
    case 1: top = checkedSingle(hYC() - half); break;
    default: top = checkedSingle(static_cast<double>(hY2()) + 1 - pSize); break;
  }
  Ref<cls_DrawRect> r = make<cls_DrawRect>();
  r->MOVE(left, top, pSize, pSize);
  return r;
}

Ref<cls_DrawPoint> cls_DrawRect::CORNER(Call, enm_UIRectCorner pCorner) const {
  const int column = hColumn(pCorner), row = hRow(pCorner);
  const double x = column == 0 ? x_ : column == 1 ? hXC() : hX2();
  const double y = row == 0 ? y_ : row == 1 ? hYC() : hY2();
  Ref<cls_DrawPoint> p = make<cls_DrawPoint>();
  p->MOVE(x, y);
  return p;
}

Ref<cls_DrawRect> cls_DrawRect::EXPAND(Call, double pOff) {
  float x = checkedSingle(x_ - pOff);
  float y = checkedSingle(y_ - pOff);
  float w = checkedSingle(w_ + 2 * pOff);
  float h = checkedSingle(h_ + 2 * pOff);
  x_ = x;
  y_ = y;
  w_ = w;
  h_ = h;
  // Both events every time, the size first.
  RESIZE.raise();
  MOVED.raise();
  return hSelf();
}

Ref<cls_DrawRect> cls_DrawRect::SHRINK(Call, double pOff) { return EXPAND(-pOff); }

// ---------------------------------------------------------------------------------------------
// Tests and combination.

bool cls_DrawRect::HITTESTXY(Call, float pX, float pY) const { return x_ <= pX && pX <= hX2() && y_ <= pY && pY <= hY2(); }

bool cls_DrawRect::HITTEST(Call, const Variant& pPointOrRect) const {
  if (pPointOrRect.isObject()) {
    if (auto p = refCast<cls_DrawPoint>(pPointOrRect.objRef())) {
      const double x = hAsSingle(p->X()), y = hAsSingle(p->Y());
      return x_ <= x && x <= hX2() && y_ <= y && y <= hY2();
    }
  }
  return hContains(hEdgesOf(pPointOrRect));
}

void cls_DrawRect::MERGE(Call, const Variant& pRect) {
  const Edges o = hEdgesOf(pRect);
  const double left = std::min<double>(x_, o.left), top = std::min<double>(y_, o.top);
  const double right = std::max<double>(hX2(), o.right), bottom = std::max<double>(hY2(), o.bottom);
  const float x = checkedSingle(left), y = checkedSingle(top);
  const float w = checkedSingle(right - left + 1), h = checkedSingle(bottom - top + 1);
  hPlace(x, y, w, h);
}

void cls_DrawRect::CLEAR(Call) {}

Ref<cls_DrawRect> cls_DrawRect::CLONE(Call) const {
  Ref<cls_DrawRect> r = make<cls_DrawRect>();
  r->x_ = x_;
  r->y_ = y_;
  r->w_ = w_;
  r->h_ = h_;
  return r;
}

std::u16string cls_DrawRect::INFO(Call) const {
  auto n = [](float v) { return formatNumber(v, 7); };
  return u"(" + n(x_) + u"," + n(y_) + u")-(" + n(hX2()) + u"," + n(hY2()) + u")";
}

bool cls_DrawRect::INTERSECTS(Call, Ref<cls_DrawRect> pRect) const {
  if (!pRect) raise(rt::ObjectNotSet);
  const Edges a = hEdges(), b = pRect->hEdges();
  return std::max(a.left, b.left) <= std::min(a.right, b.right) &&
         std::max(a.top, b.top) <= std::min(a.bottom, b.bottom);
}

}  // namespace tessel
