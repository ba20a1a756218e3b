// The root's ICON (cls_DrawTool.members): a small set of vector icons drawn on a surface.
//
// Each icon is drawn on a grid of 24 by 24 units, scaled into its box: line icons are stroked
// with round caps and joins, badge icons (info, warning, error) are filled shapes with their
// glyph cut out, so they read on any background. The surface's projection applies as to every
// other drawing; its smoothing is switched to antialiasing for the icon and put back.
#include <tessel/root/cls_DrawTool.h>

#include <tessel/color/cls_DrawColor.h>
#include <tessel/color/cls_DrawToolColor.h>
#include <tessel/core/Text.h>
#include <tessel/core/cls_DrawFlags.h>
#include <tessel/geometry/cls_DrawRect.h>
#include <tessel/graphics/SurfaceArgs.h>
#include <tessel/graphics/cls_DrawGraphics.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <string_view>
#include <vector>

namespace tessel {

namespace gp = mdl_GDIPlus;

namespace {

constexpr float kGrid = 24;

struct Pt {
  float x, y;
};

// Draws on the grid: points are mapped into the icon's box on the surface.
class Painter {
 public:
  Painter(gp::GpGraphics* g, float x, float y, float sx, float sy, gp::ARGB colour, gp::GpPen* pen,
          gp::GpBrush* brush)
      : g_(g), x_(x), y_(y), sx_(sx), sy_(sy), colour_(colour), pen_(pen), brush_(brush) {}

  // A stroked polyline, closed or open.
  void lines(std::initializer_list<Pt> points, bool closed = false) {
    gp::PathHandle path = newPath();
    std::vector<gp::GpPointF> mapped;
    for (Pt p : points) mapped.push_back(at(p));
    if (closed)
      gp::GdipAddPathPolygon(path.get(), mapped.data(), static_cast<int>(mapped.size()));
    else
      gp::GdipAddPathLine2(path.get(), mapped.data(), static_cast<int>(mapped.size()));
    gp::GdipDrawPath(g_, pen_, path.get());
  }
  void circle(float cx, float cy, float r) {
    gp::PathHandle path = newPath();
    addEllipse(path.get(), cx, cy, r);
    gp::GdipDrawPath(g_, pen_, path.get());
  }

  // A badge: the outer figure filled, the figures inside it cut out (alternate filling).
  class Badge {
   public:
    explicit Badge(Painter& p) : p_(p), path_(p.newPath()) {}
    Badge& disc(float cx, float cy, float r) {
      p_.addEllipse(path_.get(), cx, cy, r);
      return *this;
    }
    Badge& polygon(std::initializer_list<Pt> points) {
      std::vector<gp::GpPointF> mapped;
      for (Pt q : points) mapped.push_back(p_.at(q));
      gp::GdipAddPathPolygon(path_.get(), mapped.data(), static_cast<int>(mapped.size()));
      return *this;
    }
    Badge& bar(float x1, float y1, float x2, float y2) {
      return polygon({{x1, y1}, {x2, y1}, {x2, y2}, {x1, y2}});
    }
    void fill() { gp::GdipFillPath(p_.g_, p_.brush_, path_.get()); }

   private:
    Painter& p_;
    gp::PathHandle path_;
  };

  // Rounds the corners of a filled polygon: its outline stroked 2 units wide in the fill.
  void rounded(std::initializer_list<Pt> points) {
    gp::PathHandle path = newPath();
    std::vector<gp::GpPointF> mapped;
    for (Pt p : points) mapped.push_back(at(p));
    gp::GdipAddPathPolygon(path.get(), mapped.data(), static_cast<int>(mapped.size()));
    gp::GpPen* made = nullptr;
    if (!gp::Succeeded(gp::GdipCreatePen1(colour_, 2 * std::min(sx_, sy_), gp::UnitPixel, &made))) return;
    gp::PenHandle edge(made);
    gp::GdipSetPenLineJoin(edge.get(), gp::LineJoinRound);
    gp::GdipDrawPath(g_, edge.get(), path.get());
  }

 private:
  gp::GpPointF at(Pt p) const { return {x_ + p.x * sx_, y_ + p.y * sy_}; }
  void addEllipse(gp::GpPath* path, float cx, float cy, float r) {
    gp::GdipAddPathEllipse(path, x_ + (cx - r) * sx_, y_ + (cy - r) * sy_, 2 * r * sx_, 2 * r * sy_);
  }
  static gp::PathHandle newPath() {
    gp::GpPath* made = nullptr;
    gp::GdipCreatePath(gp::FillModeAlternate, &made);
    return gp::PathHandle(made);
  }

  gp::GpGraphics* g_;
  float x_, y_, sx_, sy_;
  gp::ARGB colour_;
  gp::GpPen* pen_;
  gp::GpBrush* brush_;
};

// An arrow along one axis: the shaft from the tail to the tip and the head's two strokes.
void arrow(Painter& p, Pt tail, Pt tip) {
  const float dx = (tip.x > tail.x) - (tip.x < tail.x), dy = (tip.y > tail.y) - (tip.y < tail.y);
  p.lines({tail, tip});
  // The head's wings: 6 units back from the tip and 6 to either side.
  p.lines({{tip.x - 6 * dx + 6 * dy, tip.y - 6 * dy + 6 * dx}, tip, {tip.x - 6 * dx - 6 * dy, tip.y - 6 * dy - 6 * dx}});
}

// The X cut out of the error badge: a plus of arms 1.25 wide and 5 long, turned 45 degrees.
void crossPolygon(Painter::Badge& b) {
  constexpr float a = 1.25f, l = 5.0f, c = 0.70710678f;
  const Pt plus[12] = {{-a, -l}, {a, -l}, {a, -a}, {l, -a}, {l, a}, {a, a}, {a, l}, {-a, l}, {-a, a}, {-l, a}, {-l, -a}, {-a, -a}};
  Pt turned[12];
  for (int i = 0; i < 12; ++i)
    turned[i] = {12 + (plus[i].x - plus[i].y) * c, 12 + (plus[i].x + plus[i].y) * c};
  b.polygon({turned[0], turned[1], turned[2], turned[3], turned[4], turned[5], turned[6], turned[7], turned[8],
             turned[9], turned[10], turned[11]});
}

struct Icon {
  std::u16string_view name;
  void (*draw)(Painter&);
};

constexpr Icon kIcons[] = {
    {u"close", [](Painter& p) { p.lines({{7, 7}, {17, 17}}), p.lines({{17, 7}, {7, 17}}); }},
    {u"minimize", [](Painter& p) { p.lines({{5, 17}, {19, 17}}); }},
    {u"maximize", [](Painter& p) { p.lines({{5, 5}, {19, 5}, {19, 19}, {5, 19}}, true); }},
    {u"restore",
     [](Painter& p) {
       p.lines({{4, 9}, {15, 9}, {15, 20}, {4, 20}}, true);
       p.lines({{9, 9}, {9, 4}, {20, 4}, {20, 15}, {15, 15}});
     }},
    {u"check", [](Painter& p) { p.lines({{4.5f, 12.5f}, {9.5f, 17.5f}, {19.5f, 6.5f}}); }},
    {u"cross", [](Painter& p) { p.lines({{5, 5}, {19, 19}}), p.lines({{19, 5}, {5, 19}}); }},
    {u"plus", [](Painter& p) { p.lines({{12, 5}, {12, 19}}), p.lines({{5, 12}, {19, 12}}); }},
    {u"minus", [](Painter& p) { p.lines({{5, 12}, {19, 12}}); }},
    {u"arrowup", [](Painter& p) { arrow(p, {12, 19}, {12, 5}); }},
    {u"arrowdown", [](Painter& p) { arrow(p, {12, 5}, {12, 19}); }},
    {u"arrowleft", [](Painter& p) { arrow(p, {19, 12}, {5, 12}); }},
    {u"arrowright", [](Painter& p) { arrow(p, {5, 12}, {19, 12}); }},
    {u"menu", [](Painter& p) { p.lines({{5, 7}, {19, 7}}), p.lines({{5, 12}, {19, 12}}), p.lines({{5, 17}, {19, 17}}); }},
    {u"search", [](Painter& p) { p.circle(10.5f, 10.5f, 6), p.lines({{15, 15}, {19.5f, 19.5f}}); }},
    {u"info",
     [](Painter& p) { Painter::Badge(p).disc(12, 12, 10).disc(12, 7.5f, 1.5f).bar(10.75f, 10.5f, 13.25f, 17.5f).fill(); }},
    {u"warning",
     [](Painter& p) {
       p.rounded({{12, 3.5f}, {21.5f, 20}, {2.5f, 20}});
       Painter::Badge(p).polygon({{12, 3.5f}, {21.5f, 20}, {2.5f, 20}}).bar(11, 8.5f, 13, 14).disc(12, 16.75f, 1.25f).fill();
     }},
    {u"error",
     [](Painter& p) {
       Painter::Badge b(p);
       b.disc(12, 12, 10);
       crossPolygon(b);
       b.fill();
     }},
};

// "Arrow-Up", "arrow_up" and "ARROW UP" are all "arrowup".
std::u16string iconKey(const std::u16string& name) {
  std::u16string key;
  for (char16_t c : name)
    if (c != u'-' && c != u'_' && c != u' ') key.push_back(c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c);
  return key;
}

const Icon* findIcon(const std::u16string& name) {
  const std::u16string key = iconKey(name);
  for (const Icon& icon : kIcons)
    if (icon.name == key) return &icon;
  return nullptr;
}

float positive(const Variant& v) {
  const float f = v.toSingle();
  if (!(f > 0)) raise(rt::InvalidCall);
  return f;
}

}  // namespace

bool cls_DrawTool::ICON(Call, Ref<cls_DrawGraphics> pGraphics, const std::u16string& pName, const Variant& pRect,
                        const Variant& pColor, Ref<cls_DrawFlags> pFlags) {
  if (!pGraphics) raise(rt::ObjectNotSet);
  const Icon* icon = findIcon(pName);
  if (!icon) return false;
  const Ref<Object> rect = surface::rectArg(pRect);
  const surface::Box box = surface::boxOf(rect.get());
  const Variant flagged = pFlags ? pFlags->FLAG(u"COLOR", Variant()) : Variant();
  const Variant colour = !flagged.isEmpty() ? flagged : pColor.isMissing() ? Variant(pGraphics->COLOR2()) : pColor;
  const gp::ARGB argb = ColorArgb(colour);

  // The icon's size: square in the smaller side, unless the flags give both sides.
  const Variant w = pFlags ? pFlags->FLAG(u"WIDTH", Variant()) : Variant();
  const Variant h = pFlags ? pFlags->FLAG(u"HEIGHT", Variant()) : Variant();
  float width = std::min(box.w, box.h), height = width;
  if (!w.isEmpty() && !h.isEmpty()) {
    width = positive(w);
    height = positive(h);
  } else if (!w.isEmpty() || !h.isEmpty()) {
    width = height = positive(w.isEmpty() ? h : w);
  }
  const Variant stroke = pFlags ? pFlags->FLAG(u"STROKE", Variant()) : Variant();
  const float line = stroke.isEmpty() ? std::min(width, height) / 12 : positive(stroke);

  if (!pGraphics->READY() || width <= 0 || height <= 0) return true;
  gp::GpGraphics* g = pGraphics->graphics();
  gp::GpPen* madePen = nullptr;
  gp::GpSolidFill* madeBrush = nullptr;
  gp::Check(gp::GdipCreatePen1(argb, line, gp::UnitPixel, &madePen));
  gp::PenHandle pen(madePen);
  gp::Check(gp::GdipCreateSolidFill(argb, &madeBrush));
  gp::BrushHandle brush(madeBrush);
  gp::GdipSetPenLineCap197819(pen.get(), gp::LineCapRound, gp::LineCapRound, gp::LineCapRound);
  gp::GdipSetPenLineJoin(pen.get(), gp::LineJoinRound);

  int smoothing = 0;
  gp::GdipGetSmoothingMode(g, &smoothing);
  gp::GdipSetSmoothingMode(g, gp::SmoothingModeAntiAlias);
  Painter painter(g, box.x + (box.w - width) / 2, box.y + (box.h - height) / 2, width / kGrid, height / kGrid,
                  argb, pen.get(), brush.get());
  icon->draw(painter);
  gp::GdipSetSmoothingMode(g, smoothing);
  return true;
}

}  // namespace tessel
