// The surface against the raw flat API doing the same drawing (bench/Scenes.h), on 800 × 600:
//   S1  20,000 filled and outlined rectangles and ellipses of 20 × 20, one brush and pen; on a
//       picture box's surface (its graphics stays open) and, beside it, on an image's surface
//       (a new graphics on every call, by design);
//   S2  the same with a new brush and pen for every shape;
//   S3  2,000 TEXT and 2,000 TEXTMEASURE of a short line in Arial 12, and a measurement the
//       surface remembers against one it makes;
//   S4  S1 antialiased.
// Targets: typed C++ at most 1.05× the raw API on S1, S2 and S4; a remembered measurement under
// 5% of a made one.
#include <tessel/tessel.h>

#include <benchmark/benchmark.h>

#include "Scenes.h"

#include <mutex>
#include <string>

using namespace tessel;
using namespace tessel::bench;

namespace {

constexpr int kTexts = 2000;
const std::u16string kSentence = u"The quick brown fox";

Ref<PictureBox> sceneBox() {
  auto box = make<PictureBox>();
  box->Move(0, 0, Variant(kSceneWidth), Variant(kSceneHeight));
  return box;
}

Ref<cls_DrawGraphics> boxSurface(const Ref<PictureBox>& box, bool smooth) {
  auto g = make<cls_DrawGraphics>();
  g->CONNECT(box);
  if (smooth) g->SMOOTHING(enm_Draw_SmoothingMode::ID_Draw_SmoothingAntiAlias);
  return g;
}

void surfaceShapes(cls_DrawGraphics& g, const std::vector<Variant>& rects, bool fresh) {
  Ref<cls_DrawTool> draw = mdl_Global::DRAW();
  // The colours as a caller keeps its palette: made once, as the raw side's ARGB words are.
  const Variant fill(draw->COLOR()->AUTO(Variant(u"#3A7CA5"))), line(draw->COLOR()->AUTO(Variant(u"#16425B")));
  const Variant brush(draw->BRUSH()->SOLID(fill));
  const Variant pen(draw->PEN()->SOLID(line, 1));
  for (const Variant& r : rects) {
    if (fresh) {
      const Variant b(make<cls_DrawBrush>()->SOLID(fill));
      const Variant p(make<cls_DrawPen>()->SOLID(line, 1));
      g.RECTANGLE(r, b, p);
      g.ELLIPSE(r, b, p);
    } else {
      g.RECTANGLE(r, brush, pen);
      g.ELLIPSE(r, brush, pen);
    }
  }
}

void ShapesRaw(benchmark::State& state, bool fresh, bool smooth) {
  mdl_Global::DRAW()->INIT();
  RawTarget t;
  if (smooth) gp::GdipSetSmoothingMode(t.graphics.get(), gp::SmoothingModeAntiAlias);
  for (auto _ : state) rawShapes(t.graphics.get(), fresh);
}

void ShapesSurface(benchmark::State& state, bool fresh, bool smooth) {
  mdl_Global::DRAW()->INIT();
  const auto rects = sceneRects();
  auto box = sceneBox();
  auto g = boxSurface(box, smooth);
  for (auto _ : state) surfaceShapes(*g, rects, fresh);
}

void ShapesImage(benchmark::State& state) {
  mdl_Global::DRAW()->INIT();
  const auto rects = sceneRects();
  auto image = mdl_Global::DRAW()->Image()->CREATE(kSceneWidth, kSceneHeight);
  auto g = image->GRAPHICS();
  for (auto _ : state) surfaceShapes(*g, rects, false);
}

// S3: drawing and measuring; the raw side holds the text lock as the surface does.
struct RawText {
  RawText() {
    gp::GpFontFamily* family = nullptr;
    gp::GdipCreateFontFamilyFromName(u"Arial", nullptr, &family);
    this->family.reset(family);
    gp::GpFont* f = nullptr;
    gp::GdipCreateFont(family, 12, 0, gp::UnitPoint, &f);
    font.reset(f);
    gp::GpStringFormat* made = nullptr;
    gp::GdipCreateStringFormat(0, 0, &made);
    format.reset(made);
    gp::GpSolidFill* b = nullptr;
    gp::GdipCreateSolidFill(kLine, &b);
    brush.reset(b);
  }
  gp::FontFamilyHandle family;
  gp::FontHandle font;
  gp::StringFormatHandle format;
  gp::BrushHandle brush;
};

gp::GpRectF textBox(int i) { return {static_cast<float>(shapeX(i)), static_cast<float>(shapeY(i)), 200, 30}; }

void TextRaw(benchmark::State& state) {
  mdl_Global::DRAW()->INIT();
  RawTarget t;
  RawText text;
  for (auto _ : state) {
    for (int i = 0; i < kTexts; ++i) {
      const gp::GpRectF r = textBox(i);
      std::lock_guard lock(gp::TextLock());
      gp::GdipDrawString(t.graphics.get(), kSentence.c_str(), static_cast<int>(kSentence.size()), text.font.get(), &r,
                         text.format.get(), text.brush.get());
    }
  }
}

void TextSurface(benchmark::State& state) {
  mdl_Global::DRAW()->INIT();
  auto box = sceneBox();
  auto g = boxSurface(box, false);
  const Variant font(mdl_Global::DRAW()->FONT()->AUTO(Variant(u"Arial,12pt")));
  const Variant brush(mdl_Global::DRAW()->BRUSH()->SOLID(Variant(u"#16425B")));
  std::vector<Variant> rects;
  for (int i = 0; i < kTexts; ++i) rects.emplace_back(make<cls_DrawRect>()->MOVE(textBox(i).X, textBox(i).Y, 200, 30));
  for (auto _ : state)
    for (const Variant& r : rects) g->TEXT(kSentence, r, font, brush);
}

// Every measurement a new one: the text differs from call to call on both sides.
std::vector<std::u16string> measuredLines() {
  std::vector<std::u16string> lines;
  for (int i = 0; i < kTexts; ++i) lines.push_back(kSentence + u" " + toUtf16(std::to_string(i)));
  return lines;
}

void MeasureRaw(benchmark::State& state) {
  mdl_Global::DRAW()->INIT();
  RawTarget t;
  RawText text;
  const auto lines = measuredLines();
  const gp::GpRectF r{0, 0, 200, 30};
  for (auto _ : state) {
    for (const std::u16string& line : lines) {
      gp::GpRectF box{};
      int fitted = 0, filled = 0;
      std::lock_guard lock(gp::TextLock());
      gp::GdipMeasureString(t.graphics.get(), line.c_str(), static_cast<int>(line.size()), text.font.get(), &r,
                            text.format.get(), &box, &fitted, &filled);
    }
  }
}

void MeasureSurface(benchmark::State& state, bool remembered) {
  mdl_Global::DRAW()->INIT();
  auto box = sceneBox();
  auto g = boxSurface(box, false);
  const Variant font(mdl_Global::DRAW()->FONT()->AUTO(Variant(u"Arial,12pt")));
  const Variant rect(make<cls_DrawRect>()->MOVE(0, 0, 200, 30));
  const auto lines = measuredLines();
  for (auto _ : state) {
    if (remembered) {
      for (int i = 0; i < kTexts; ++i) g->TEXTMEASURE(kSentence, rect, font);
    } else {
      // A new surface each round forgets what the last one measured.
      state.PauseTiming();
      g = boxSurface(box, false);
      state.ResumeTiming();
      for (const std::u16string& line : lines) g->TEXTMEASURE(line, rect, font);
    }
  }
}

}  // namespace

BENCHMARK_CAPTURE(ShapesRaw, s1, false, false)->Name("S1Shapes/baseline")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ShapesSurface, s1, false, false)->Name("S1Shapes/tessel")->Unit(benchmark::kMillisecond);
BENCHMARK(ShapesImage)->Name("S1Shapes/tessel-on-an-image")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ShapesRaw, s2, true, false)->Name("S2FreshResources/baseline")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ShapesSurface, s2, true, false)->Name("S2FreshResources/tessel")->Unit(benchmark::kMillisecond);
BENCHMARK(TextRaw)->Name("S3Text/baseline")->Unit(benchmark::kMillisecond);
BENCHMARK(TextSurface)->Name("S3Text/tessel")->Unit(benchmark::kMillisecond);
BENCHMARK(MeasureRaw)->Name("S3Measure/baseline")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(MeasureSurface, made, false)->Name("S3Measure/tessel")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(MeasureSurface, remembered, true)->Name("S3Measure/tessel-remembered")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ShapesRaw, s4, false, true)->Name("S4Antialiased/baseline")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ShapesSurface, s4, false, true)->Name("S4Antialiased/tessel")->Unit(benchmark::kMillisecond);
