// The control tree on 800 × 600: a desktop with 10 cascaded windows of 100 buttons each
// (1,011 nodes), on a picture box's surface.
//   C1  a full render of the tree, against the raw flat API drawing the same shapes (rounded
//       gradient bodies with their rims, and captions) from paths and brushes made beforehand;
//   C2  one button's hover switched and RENDERWINDOW, against the full render (target: at most
//       5% of it);
//   C3  10,000 pointer moves through EVENTHANDLER over the tree, lighting the buttons they
//       cross, with the repaints they ask for collected (time per move in the counter).
#include <tessel/tessel.h>

#include <benchmark/benchmark.h>

#include "Scenes.h"

#include <string>
#include <vector>

using namespace tessel;
using namespace tessel::bench;

namespace {

using K = enm_UIControl;

constexpr int kWindows = 10, kColumns = 10, kRows = 10;
constexpr float kWindowW = 390, kWindowH = 330, kButtonW = 34, kButtonH = 26, kGap = 4;
constexpr int kMoves = 10000;

float windowX(int i) { return 20.0f + 36.0f * i; }
float windowY(int i) { return 10.0f + 24.0f * i; }
float buttonX(int c) { return 5.0f + c * (kButtonW + kGap); }
float buttonY(int r) { return 5.0f + r * (kButtonH + kGap); }

Ref<cls_DrawControl> node(K sort, const std::u16string& text, float x, float y, float w, float h) {
  auto n = make<cls_DrawControl>();
  n->SORT(sort);
  n->TEXT(text);
  n->BOX()->MOVE(x, y, w, h);
  return n;
}

// The last window added lies at the back; the first, at position 1, in front.
Ref<cls_DrawControl> tree() {
  auto desk = node(K::ID_UIControl_Desktop, u"", 0, 0, kSceneWidth, kSceneHeight);
  for (int i = 0; i < kWindows; ++i) {
    const int w = kWindows - 1 - i;  // the front window at the bottom right of the cascade
    auto win = desk->CHILDADD(node(K::ID_UIControl_Window, u"Window " + toUtf16(std::to_string(w)), windowX(w),
                                   windowY(w), kWindowW, kWindowH));
    win->FOCUS(i == 0);
    for (int r = 0; r < kRows; ++r)
      for (int c = 0; c < kColumns; ++c)
        win->CHILDADD(node(K::ID_UIControl_Button, toUtf16(std::to_string(r * kColumns + c)), buttonX(c), buttonY(r),
                           kButtonW, kButtonH));
  }
  return desk;
}

struct Target {
  Target() : box(make<PictureBox>()), g(make<cls_DrawGraphics>()) {
    mdl_Global::DRAW()->INIT();
    box->Move(0, 0, Variant(kSceneWidth), Variant(kSceneHeight));
    g->CONNECT(box);
  }
  Ref<PictureBox> box;
  Ref<cls_DrawGraphics> g;
};

// The same shapes with the flat API: what a hand-written renderer with everything prepared does.
struct RawTree {
  struct Shape {
    gp::PathHandle path;
    gp::BrushHandle fill;
    gp::GpRectF text;
    std::u16string caption;
  };
  std::vector<Shape> shapes;
  gp::PenHandle rim;
  gp::BrushHandle ink;
  gp::FontFamilyHandle family;
  gp::FontHandle font;
  gp::StringFormatHandle centred;

  static gp::PathHandle rounded(float x, float y, float w, float h) {
    gp::GpPath* p = nullptr;
    gp::GdipCreatePath(0, &p);
    constexpr float c = 10;
    gp::GdipAddPathArc(p, x, y, c, c, 180, 90);
    gp::GdipAddPathArc(p, x + w - c, y, c, c, 270, 90);
    gp::GdipAddPathArc(p, x + w - c, y + h - c, c, c, 0, 90);
    gp::GdipAddPathArc(p, x, y + h - c, c, c, 90, 90);
    gp::GdipClosePathFigure(p);
    return gp::PathHandle(p);
  }
  static gp::BrushHandle gradient(float x, float y, float w, float h, gp::ARGB top, gp::ARGB bottom) {
    const gp::GpRect r{static_cast<int>(x), static_cast<int>(y), static_cast<int>(w), static_cast<int>(h)};
    gp::GpLineGradient* b = nullptr;
    gp::GdipCreateLineBrushFromRectWithAngleI(&r, top, bottom, 90, 0, 0, &b);
    return gp::BrushHandle(b);
  }
  void add(float x, float y, float w, float h, gp::ARGB top, gp::ARGB bottom, const std::u16string& caption) {
    shapes.push_back({rounded(x, y, w - 1, h - 1), gradient(x, y, w, h, top, bottom), {x + 4, y + 4, w - 8, h - 8},
                      caption});
  }

  RawTree() {
    gp::GpPen* pen = nullptr;
    gp::GdipCreatePen1(0xFF696969, 1, gp::UnitPixel, &pen);
    rim.reset(pen);
    gp::GpSolidFill* b = nullptr;
    gp::GdipCreateSolidFill(0xFF141414, &b);
    ink.reset(b);
    gp::GpFontFamily* f = nullptr;
    gp::GdipCreateFontFamilyFromName(u"Liberation Sans", nullptr, &f);
    family.reset(f);
    gp::GpFont* made = nullptr;
    gp::GdipCreateFont(f, 8.25f, 0, gp::UnitPoint, &made);
    font.reset(made);
    gp::GpStringFormat* format = nullptr;
    gp::GdipCreateStringFormat(0, 0, &format);
    gp::GdipSetStringFormatAlign(format, 1);
    gp::GdipSetStringFormatLineAlign(format, 1);
    centred.reset(format);
    add(0, 0, kSceneWidth, kSceneHeight, 0xFF323232, 0xFF1C1C1C, u"");
    for (int w = kWindows - 1; w >= 0; --w) {
      const float wx = windowX(w), wy = windowY(w);
      add(wx, wy, kWindowW, kWindowH, 0xFF1E386A, 0xFF0A246A, u"Window " + toUtf16(std::to_string(w)));
      add(wx + 5, wy + 30, kWindowW - 10, kWindowH - 35, 0xFFFFFFFF, 0xFFEDEDED, u"");
      for (int i = kRows * kColumns - 1; i >= 0; --i)
        add(wx + 5 + buttonX(i % kColumns), wy + 30 + buttonY(i / kColumns), kButtonW, kButtonH, 0xFFFFFFFF, 0xFF9B9B9B,
            toUtf16(std::to_string(i)));
    }
  }
  void draw(gp::GpGraphics* g) const {
    gp::GdipSetSmoothingMode(g, gp::SmoothingModeAntiAlias);
    for (const Shape& s : shapes) {
      gp::GdipFillPath(g, s.fill.get(), s.path.get());
      gp::GdipDrawPath(g, rim.get(), s.path.get());
      if (s.caption.empty()) continue;
      std::lock_guard lock(gp::TextLock());
      gp::GdipDrawString(g, s.caption.c_str(), static_cast<int>(s.caption.size()), font.get(), &s.text, centred.get(),
                         ink.get());
    }
  }
};

void TreeRaw(benchmark::State& state) {
  mdl_Global::DRAW()->INIT();
  RawTarget t;
  const RawTree raw;
  for (auto _ : state) raw.draw(t.graphics.get());
}

void TreeFull(benchmark::State& state) {
  Target t;
  auto desk = tree();
  desk->RENDER(t.g);  // the first render makes what the node keeps
  for (auto _ : state) desk->RENDER(t.g);
}

void TreeHover(benchmark::State& state) {
  Target t;
  auto desk = tree();
  desk->RENDER(t.g);
  t.g->REDRAWAREA(nullptr);
  auto button = desk->CHILD(Variant(1))->CHILD(Variant(45));
  bool lit = false;
  for (auto _ : state) {
    lit = !lit;
    button->HOVER(lit);
    desk->RENDERWINDOW(t.g);
  }
}

void PointerMoves(benchmark::State& state) {
  Target t;
  auto desk = tree();
  desk->RENDER(t.g);
  std::vector<Variant> points;
  for (int i = 0; i < kMoves; ++i)
    points.emplace_back(make<cls_DrawPoint>()->MOVE((i * 7) % kSceneWidth, (i * 13) % kSceneHeight));
  for (auto _ : state) {
    for (const Variant& p : points) desk->EVENTHANDLER(enm_UIMouseEvent::ID_UIMouseEvent_Move, 0, 0, p);
    state.PauseTiming();
    t.g->REDRAWAREA(nullptr);
    state.ResumeTiming();
  }
  state.counters["us_per_move"] =
      benchmark::Counter(static_cast<double>(kMoves) * state.iterations() / 1e6,
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

}  // namespace

BENCHMARK(TreeRaw)->Name("C1TreeRender/baseline")->Unit(benchmark::kMillisecond);
BENCHMARK(TreeFull)->Name("C1TreeRender/tessel")->Unit(benchmark::kMillisecond);
BENCHMARK(TreeFull)->Name("C2HoverRepaint/baseline")->Unit(benchmark::kMillisecond);
BENCHMARK(TreeHover)->Name("C2HoverRepaint/tessel-renderwindow")->Unit(benchmark::kMillisecond);
BENCHMARK(PointerMoves)->Name("C3PointerMoves/tessel")->Unit(benchmark::kMillisecond);
