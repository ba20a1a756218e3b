// A colour asked for its brightness or contrast colour on every paint: the first request after
// a change (empty cache) against repeated requests. "change_only" is the cost of the channel
// change that empties the cache, so it can be told apart from the first request itself.
#include <tessel/tessel.h>

#include <benchmark/benchmark.h>

using namespace tessel;

namespace {

Ref<cls_DrawColor> newColor(int32_t r, int32_t g, int32_t b) {
  auto c = make<cls_DrawColor>();
  c->RGB(r, g, b);
  return c;
}

// Brightness 129 on a background of 240: close enough that the answer is mixed toward black.
Ref<cls_DrawColor> foreground() { return newColor(120, 130, 140); }
Variant background() { return Variant(newColor(240, 240, 240)); }

void ContrastFirst(benchmark::State& state) {
  auto c = foreground();
  const Variant bg = background();
  uint8_t red = 120;
  for (auto _ : state) {
    red ^= 1;
    c->R(red);
    benchmark::DoNotOptimize(c->CONTRASTCOLOR(bg).get());
  }
}

void ContrastCached(benchmark::State& state) {
  auto c = foreground();
  const Variant bg = background();
  c->CONTRASTCOLOR(bg);
  for (auto _ : state) benchmark::DoNotOptimize(c->CONTRASTCOLOR(bg).get());
}

// A background given as text is parsed by the factory on every call, cache hit or not.
void ContrastCachedText(benchmark::State& state) {
  auto c = foreground();
  const Variant bg(u"#F0F0F0");
  c->CONTRASTCOLOR(bg);
  for (auto _ : state) benchmark::DoNotOptimize(c->CONTRASTCOLOR(bg).get());
}

void ChangeOnly(benchmark::State& state) {
  auto c = foreground();
  uint8_t red = 120;
  for (auto _ : state) {
    red ^= 1;
    c->R(red);
    benchmark::DoNotOptimize(c.get());
  }
}

void BrightnessFirst(benchmark::State& state) {
  auto c = foreground();
  uint8_t red = 120;
  for (auto _ : state) {
    red ^= 1;
    c->R(red);
    benchmark::DoNotOptimize(c->BRIGHTNESS());
  }
}

void BrightnessCached(benchmark::State& state) {
  auto c = foreground();
  c->BRIGHTNESS();
  for (auto _ : state) benchmark::DoNotOptimize(c->BRIGHTNESS());
}

}  // namespace

BENCHMARK(ContrastFirst)->Name("ContrastColor/baseline");
BENCHMARK(ContrastCached)->Name("ContrastColor/cached");
BENCHMARK(ContrastCachedText)->Name("ContrastColor/cached_text_background");
BENCHMARK(ChangeOnly)->Name("ContrastColor/change_only");
BENCHMARK(BrightnessFirst)->Name("Brightness/baseline");
BENCHMARK(BrightnessCached)->Name("Brightness/cached");
BENCHMARK(ChangeOnly)->Name("Brightness/change_only");
