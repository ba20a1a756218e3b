// A colour's cached brush and pen against making a fresh one. Drawing code asks a colour for
// them on every paint, so the cached read must cost a small fraction of a native creation (the
// target: under 1% of the raw flat API's create and free). "tessel_fresh" is a new wrapped
// brush or pen each time, through the factory.
#include <tessel/tessel.h>

#include <benchmark/benchmark.h>

using namespace tessel;
namespace gp = tessel::mdl_GDIPlus;

namespace {

Ref<cls_DrawColor> colour() {
  mdl_Global::DRAW()->INIT();
  return mdl_Global::DRAW()->COLOR()->RGB(200, 80, 20);
}

void BrushRaw(benchmark::State& state) {
  mdl_Global::DRAW()->INIT();
  for (auto _ : state) {
    gp::GpSolidFill* b = nullptr;
    gp::GdipCreateSolidFill(0xFFC85014, &b);
    gp::BrushHandle owned(b);
    benchmark::DoNotOptimize(owned.get());
  }
}

void BrushFresh(benchmark::State& state) {
  const Variant c(colour());
  auto brushes = mdl_Global::DRAW()->BRUSH();
  for (auto _ : state) benchmark::DoNotOptimize(brushes->SOLID(c).get());
}

void BrushCached(benchmark::State& state) {
  auto c = colour();
  for (auto _ : state) benchmark::DoNotOptimize(c->BRUSH().get());
}

void PenRaw(benchmark::State& state) {
  mdl_Global::DRAW()->INIT();
  for (auto _ : state) {
    gp::GpPen* p = nullptr;
    gp::GdipCreatePen1(0xFFC85014, 2, gp::UnitPixel, &p);
    gp::PenHandle owned(p);
    benchmark::DoNotOptimize(owned.get());
  }
}

void PenFresh(benchmark::State& state) {
  const Variant c(colour());
  auto pens = mdl_Global::DRAW()->PEN();
  for (auto _ : state) benchmark::DoNotOptimize(pens->SOLID(c, 2).get());
}

void PenCached(benchmark::State& state) {
  auto c = colour();
  for (auto _ : state) benchmark::DoNotOptimize(c->PEN(2).get());
}

}  // namespace

BENCHMARK(BrushRaw)->Name("ColorBrush/baseline");
BENCHMARK(BrushFresh)->Name("ColorBrush/tessel_fresh");
BENCHMARK(BrushCached)->Name("ColorBrush/cached");
BENCHMARK(PenRaw)->Name("ColorPen/baseline");
BENCHMARK(PenFresh)->Name("ColorPen/tessel_fresh");
BENCHMARK(PenCached)->Name("ColorPen/cached");
