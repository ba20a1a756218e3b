#include <tessel/resources/cls_DrawPath.h>

#include <tessel/core/Checked.h>
#include <tessel/core/Root.h>
#include <tessel/core/mdl_Basalt.h>
#include <tessel/geometry/cls_DrawToolPoint.h>
#include <tessel/geometry/cls_DrawToolRect.h>
#include <tessel/geometry/mdl_GDIPlus_Geometry.h>
#include <tessel/resources/cls_DrawToolFont.h>
#include <tessel/resources/cls_DrawToolTextFormat.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace tessel {

namespace gp = mdl_GDIPlus;

namespace {

// Everything below reaches libgdiplus as a finite Single: NaN, infinity and values beyond the
// Single range are refused with 6 before anything is added.

gp::GpPointF hPoint(const Variant& pPoint) {
  double x = 0, y = 0;
  PointCoordinates(pPoint, x, y);
  return gp::GpPointF{checkedSingle(x), checkedSingle(y)};
}

// A rectangle argument as X, Y, W, H: a rectangle as it is, any other value through the
// rectangle factory's AUTO. Its far edges must be Singles too, since libgdiplus adds them up.
gp::GpRectF hRect(const Variant& pRect) {
  if (pRect.isNothing()) raise(rt::ObjectNotSet);
  const Ref<cls_DrawRect> r =
      pRect.isObject() ? refCast<cls_DrawRect>(pRect.objRef()) : rootFactory<cls_DrawToolRect>()->AUTO(pRect);
  if (!r) raise(rt::TypeMismatch);
  const gp::GpRectF f = gp::GDIPRectF(r, true);
  checkedSingle(static_cast<double>(f.X) + f.Width);
  checkedSingle(static_cast<double>(f.Y) + f.Height);
  return f;
}

// Covers nothing, as a rectangle with W or H of 0 or less does: shapes in it add nothing.
bool hEmpty(const gp::GpRectF& r) { return !(r.Width > 0 && r.Height > 0); }

float hFinite(float v) { return static_cast<float>(checkedFinite(v)); }

std::u16string_view hTrim(std::u16string_view s) {
  auto blank = [](char16_t c) { return c == u' ' || c == u'\t'; };
  while (!s.empty() && blank(s.front())) s.remove_prefix(1);
  while (!s.empty() && blank(s.back())) s.remove_suffix(1);
  return s;
}

// A point list: bracketed pairs separated by commas, blanks allowed around every part,
// "(0,0), (50,0), (25,40)". Each number is read as a numeric text ("1.5", "-2", "1e3"). Anything
// else, the empty text and fewer than `least` points are error 5; a text is required (13).
std::vector<gp::GpPointF> hPointList(const Variant& pPoints, size_t least) {
  if (!pPoints.isString()) raise(rt::TypeMismatch);
  std::vector<gp::GpPointF> points;
  for (const std::u16string& item : mdl_Basalt::Split(pPoints.str(), u',', u"(", u")")) {
    const std::u16string_view pair = hTrim(item);
    if (pair.size() < 2 || pair.front() != u'(' || pair.back() != u')') raise(rt::InvalidCall);
    const std::vector<std::u16string> xy = mdl_Basalt::Split(pair.substr(1, pair.size() - 2), u',');
    double x = 0, y = 0;
    if (xy.size() != 2 || !parseNumber(xy[0], x) || !parseNumber(xy[1], y)) raise(rt::InvalidCall);
    points.push_back(gp::GpPointF{checkedSingle(x), checkedSingle(y)});
  }
  if (points.size() < least) raise(rt::InvalidCall);
  return points;
}

}  // namespace

template <class Add>
void cls_DrawPath::hAdd(Add add) {
  const bool made = native_.empty();
  if (made) {
    gp::GpPath* path = nullptr;
    // Fails before DRAW.INIT, for one: GdiplusNotInitialized.
    if (!gp::Succeeded(gp::GdipCreatePath(gp::FillModeAlternate, &path))) raise(rt::InvalidCall);
    native_.adopt(path);
  }
  const bool added = gp::Succeeded(add(native_.get()));
  int count = 0;
  // A native path made for an addition that failed or added no point goes again.
  if (made && (!added || !gp::Succeeded(gp::GdipGetPointCount(native_.get(), &count)) || count == 0)) native_.free();
  if (!added) raise(rt::InvalidCall);
}

// ---------------------------------------------------------------------------------------------
// Figures.

Ref<cls_DrawPath> cls_DrawPath::START(Call, bool pReset) {
  if (pReset) RESET();
  if (!native_.empty()) gp::GdipStartPathFigure(native_.get());
  return hSelf();
}

Ref<cls_DrawPath> cls_DrawPath::CLOSEFIGURE(Call) {
  if (!native_.empty()) gp::GdipClosePathFigure(native_.get());
  return hSelf();
}

// Two points, or four numbers: the form is told by pX2 and pY2, given or omitted together.
Ref<cls_DrawPath> cls_DrawPath::LINE(Call, const Variant& pX1OrPoint1, const Variant& pY1OrPoint2,
                                     const Variant& pX2, const Variant& pY2) {
  gp::GpPointF a, b;
  if (pX2.isMissing() && pY2.isMissing()) {
    a = hPoint(pX1OrPoint1);
    b = hPoint(pY1OrPoint2);
  } else if (pX2.isMissing() || pY2.isMissing()) {
    raise(rt::InvalidCall);
  } else {
    a = {checkedSingle(pX1OrPoint1.toDouble()), checkedSingle(pY1OrPoint2.toDouble())};
    b = {checkedSingle(pX2.toDouble()), checkedSingle(pY2.toDouble())};
  }
  hAdd([&](gp::GpPath* path) { return gp::GdipAddPathLine(path, a.X, a.Y, b.X, b.Y); });
  return hSelf();
}

Ref<cls_DrawPath> cls_DrawPath::LINES(Call, const Variant& pPoints) {
  const std::vector<gp::GpPointF> points = hPointList(pPoints, 2);
  hAdd([&](gp::GpPath* path) { return gp::GdipAddPathLine2(path, points.data(), static_cast<int>(points.size())); });
  return hSelf();
}

Ref<cls_DrawPath> cls_DrawPath::ARC(Call, const Variant& pRect, float pStartAngle, float pSweepAngle) {
  const gp::GpRectF r = hRect(pRect);
  const float start = hFinite(pStartAngle), sweep = hFinite(pSweepAngle);
  if (hEmpty(r)) return hSelf();  // libgdiplus refuses those; an empty shape is no fault
  hAdd([&](gp::GpPath* path) { return gp::GdipAddPathArc(path, r.X, r.Y, r.Width, r.Height, start, sweep); });
  return hSelf();
}

Ref<cls_DrawPath> cls_DrawPath::BEZIER(Call, const Variant& p1, const Variant& p2, const Variant& p3,
                                       const Variant& p4) {
  const gp::GpPointF a = hPoint(p1), b = hPoint(p2), c = hPoint(p3), d = hPoint(p4);
  hAdd([&](gp::GpPath* path) { return gp::GdipAddPathBezier(path, a.X, a.Y, b.X, b.Y, c.X, c.Y, d.X, d.Y); });
  return hSelf();
}

// With a radius, a quarter circle at each corner, clockwise from the top left: a Bézier curve with
// the usual handles, between points that lie exactly on the sides (an arc's ends would be off by
// the rounding of its sines, and so would BOUNDS). libgdiplus draws the straight sides as the
// lines that join one curve to the next.
Ref<cls_DrawPath> cls_DrawPath::RECT(Call, const Variant& pRect, float pRadius) {
  const gp::GpRectF r = hRect(pRect);
  const float radius = std::min({hFinite(pRadius), r.Width / 2, r.Height / 2});
  if (hEmpty(r)) return hSelf();
  if (!(radius > 0)) {
    hAdd([&](gp::GpPath* path) { return gp::GdipAddPathRectangle(path, r.X, r.Y, r.Width, r.Height); });
    return hSelf();
  }
  constexpr double kHandle = 0.5522847498307936;  // 4/3 (sqrt 2 - 1): a quarter circle's handle length
  const float k = static_cast<float>(radius * (1 - kHandle));  // a handle's distance from the corner
  const float x = r.X, y = r.Y, x2 = r.X + r.Width, y2 = r.Y + r.Height;
  const gp::GpPointF corners[4][4] = {
      {{x, y + radius}, {x, y + k}, {x + k, y}, {x + radius, y}},
      {{x2 - radius, y}, {x2 - k, y}, {x2, y + k}, {x2, y + radius}},
      {{x2, y2 - radius}, {x2, y2 - k}, {x2 - k, y2}, {x2 - radius, y2}},
      {{x + radius, y2}, {x + k, y2}, {x, y2 - k}, {x, y2 - radius}},
  };
  hAdd([&](gp::GpPath* path) {
    gp::GdipStartPathFigure(path);
    for (const auto& c : corners) {
      const gp::GpStatus status =
          gp::GdipAddPathBezier(path, c[0].X, c[0].Y, c[1].X, c[1].Y, c[2].X, c[2].Y, c[3].X, c[3].Y);
      if (status != enm_Draw_Status::OK) return status;
    }
    return gp::GdipClosePathFigure(path);
  });
  return hSelf();
}

Ref<cls_DrawPath> cls_DrawPath::ELLIPSE(Call, const Variant& pRect) {
  const gp::GpRectF r = hRect(pRect);
  if (hEmpty(r)) return hSelf();
  hAdd([&](gp::GpPath* path) { return gp::GdipAddPathEllipse(path, r.X, r.Y, r.Width, r.Height); });
  return hSelf();
}

// The arc, a line to the centre and back: made here rather than by GdipAddPathPie, which cuts the
// centre to whole numbers. A sweep too small for libgdiplus to draw adds nothing at all.
Ref<cls_DrawPath> cls_DrawPath::PIE(Call, const Variant& pRect, float pStartAngle, float pSweepAngle) {
  const gp::GpRectF r = hRect(pRect);
  const float start = hFinite(pStartAngle), sweep = hFinite(pSweepAngle);
  if (hEmpty(r)) return hSelf();
  const gp::GpPointF centre{r.X + r.Width / 2, r.Y + r.Height / 2};
  hAdd([&](gp::GpPath* path) {
    if (std::fabs(sweep) >= 360) return gp::GdipAddPathEllipse(path, r.X, r.Y, r.Width, r.Height);
    int before = 0, after = 0;
    gp::GdipGetPointCount(path, &before);
    gp::GdipStartPathFigure(path);
    gp::GpStatus status = gp::GdipAddPathArc(path, r.X, r.Y, r.Width, r.Height, start, sweep);
    gp::GdipGetPointCount(path, &after);
    if (status != enm_Draw_Status::OK || after == before) return status;
    status = gp::GdipAddPathLine2(path, &centre, 1);
    return status == enm_Draw_Status::OK ? gp::GdipClosePathFigure(path) : status;
  });
  return hSelf();
}

Ref<cls_DrawPath> cls_DrawPath::POLYGON(Call, const Variant& pPoints) {
  const std::vector<gp::GpPointF> points = hPointList(pPoints, 3);
  hAdd([&](gp::GpPath* path) { return gp::GdipAddPathPolygon(path, points.data(), static_cast<int>(points.size())); });
  return hSelf();
}

// ---------------------------------------------------------------------------------------------
// Questions, copies and the lifecycle.

// Measured exactly: every point that is not a control point, and each curve where it turns on
// either axis. (libgdiplus measures a coarsely flattened copy instead, which cuts an arc of
// radius 500 short by more than a pixel.)
// The outlined text that the surface draws: the font's SIZE as the em height, as it has it.
Ref<cls_DrawPath> cls_DrawPath::TEXT(Call, const std::u16string& pText, const Variant& pFont, const Variant& pRect,
                                     const Variant& pFormat) {
  const Ref<cls_DrawFont> font = rootFactory<cls_DrawToolFont>()->AUTO(pFont);
  const Ref<cls_DrawTextFormat> format =
      pFormat.isMissing() ? Ref<cls_DrawTextFormat>() : rootFactory<cls_DrawToolTextFormat>()->AUTO(pFormat);
  const gp::GpRectF r = hRect(pRect);
  if (!font || font->HANDLE() == 0) raise(rt::InvalidCall);
  const float size = checkedSingle(font->SIZE());
  const int style = static_cast<int>(font->STYLE());
  const auto* family = reinterpret_cast<gp::GpFontFamily*>(static_cast<intptr_t>(font->FAMILY()));
  const auto* layout = format ? reinterpret_cast<gp::GpStringFormat*>(static_cast<intptr_t>(format->HANDLE())) : nullptr;
  if (pText.empty()) return hSelf();
  addString(pText.c_str(), static_cast<int>(pText.size()), family, style, size, r, layout);
  return hSelf();
}

void cls_DrawPath::addString(const char16_t* text, int length, const gp::GpFontFamily* family, int style, float emSize,
                             const gp::GpRectF& layout, const gp::GpStringFormat* format) {
  std::lock_guard lock(gp::TextLock());
  hAdd([&](gp::GpPath* path) { return gp::GdipAddPathString(path, text, length, family, style, emSize, &layout, format); });
}

Ref<cls_DrawRect> cls_DrawPath::BOUNDS(Call) const {
  int n = 0;
  if (!native_.empty()) gp::GdipGetPointCount(native_.get(), &n);
  std::vector<gp::GpPointF> pts(static_cast<size_t>(n));
  std::vector<uint8_t> types(static_cast<size_t>(n));
  if (n == 0 || !gp::Succeeded(gp::GdipGetPathPoints(native_.get(), pts.data(), n)) ||
      !gp::Succeeded(gp::GdipGetPathTypes(native_.get(), types.data(), n)))
    return rootFactory<cls_DrawToolRect>()->AUTO();
  double lo[2] = {INFINITY, INFINITY}, hi[2] = {-INFINITY, -INFINITY};
  auto take = [&](int axis, double v) {
    lo[axis] = std::min(lo[axis], v);
    hi[axis] = std::max(hi[axis], v);
  };
  for (size_t i = 0; i < pts.size(); ++i) {
    const bool curve = (types[i] & gp::PathPointTypeMask) == gp::PathPointTypeBezier && i > 0 && i + 2 < pts.size();
    for (int axis = 0; axis < 2; ++axis) {
      auto at = [&](size_t k) -> double { return axis ? pts[k].Y : pts[k].X; };
      if (!curve) {
        take(axis, at(i));
        continue;
      }
      // The curve from i - 1 to i + 2 turns where its derivative, a t² + b t + c, is 0: at q / a
      // and c / q, the roots in the form that loses no precision when a is small.
      const double p0 = at(i - 1), p1 = at(i), p2 = at(i + 1), p3 = at(i + 2);
      const double a = p3 - 3 * p2 + 3 * p1 - p0, b = 2 * (p2 - 2 * p1 + p0), c = p1 - p0;
      const double disc = b * b - 4 * a * c;
      const double q = disc >= 0 ? -(b + std::copysign(std::sqrt(disc), b)) / 2 : 0;
      take(axis, p3);
      for (double t : {a != 0 ? q / a : -1, q != 0 ? c / q : -1})
        if (t > 0 && t < 1) {
          const double u = 1 - t;
          take(axis, u * u * u * p0 + 3 * u * u * t * p1 + 3 * u * t * t * p2 + t * t * t * p3);
        }
    }
    if (curve) i += 2;
  }
  return rootFactory<cls_DrawToolRect>()->AUTO()->MOVE(checkedSingle(lo[0]), checkedSingle(lo[1]),
                                                       checkedSingle(hi[0] - lo[0]), checkedSingle(hi[1] - lo[1]));
}

bool cls_DrawPath::HITTEST(Call, const Variant& pX, const Variant& pY) const {
  gp::GpPointF p;
  if (pY.isMissing()) {
    p = hPoint(pX);
  } else {
    if (pX.isObject()) raise(rt::TypeMismatch);
    p = {checkedSingle(pX.toDouble()), checkedSingle(pY.toDouble())};
  }
  if (native_.empty()) return false;
  int inside = 0;
  // libgdiplus tests (x + 1, y + 0.5): half a pixel back on x makes both the pixel's centre.
  return gp::Succeeded(gp::GdipIsVisiblePathPoint(native_.get(), p.X - 0.5f, p.Y, nullptr, &inside)) && inside != 0;
}

Ref<cls_DrawPath> cls_DrawPath::CLONE(Call) const {
  Ref<cls_DrawPath> copy = make<cls_DrawPath>();
  if (!native_.empty()) {
    gp::GpPath* clone = nullptr;
    if (!gp::Succeeded(gp::GdipClonePath(native_.get(), &clone))) raise(rt::InvalidCall);
    copy->native_.adopt(clone);
  }
  return copy;
}

// Keeps the native path: a caller that holds its HANDLE may go on using it.
Ref<cls_DrawPath> cls_DrawPath::RESET(Call) {
  if (!native_.empty()) gp::GdipResetPath(native_.get());
  return hSelf();
}

int64_t cls_DrawPath::HANDLE(Get) const { return native_.handleValue(); }

Ref<cls_DrawPath> cls_DrawPath::DELETE(Call) {
  native_.free();
  return hSelf();
}

}  // namespace tessel
