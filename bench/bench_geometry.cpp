// A rectangle property read and written three ways: the direct C++ call, a late-bound call by
// name (what a script host does per access), and a late-bound call with the member looked up
// once (what a host that caches dispatch ids does).
#include <tessel/tessel.h>

#include <benchmark/benchmark.h>

using namespace tessel;

namespace {

void RectGetX_baseline(benchmark::State& state) {
  auto r = make<cls_DrawRect>()->MOVE(3, 4, 5, 6);
  for (auto _ : state) benchmark::DoNotOptimize(r->X());
}

void RectGetX_late_bound(benchmark::State& state) {
  auto r = make<cls_DrawRect>()->MOVE(3, 4, 5, 6);
  for (auto _ : state) benchmark::DoNotOptimize(Invoke(r.get(), "X", InvokeKind::Get));
}

void RectGetX_late_bound_resolved(benchmark::State& state) {
  auto r = make<cls_DrawRect>()->MOVE(3, 4, 5, 6);
  const MemberInfo& x = *r->classInfo().find("X");
  for (auto _ : state) benchmark::DoNotOptimize(Invoke(x, r.get(), InvokeKind::Get, {}));
}

// Lets alternate between two values, so that every one stores and raises MOVED.
void RectLetX_baseline(benchmark::State& state) {
  auto r = make<cls_DrawRect>();
  float v = 0;
  for (auto _ : state) {
    v = 1 - v;
    r->X(v);
  }
  benchmark::DoNotOptimize(r->X());
}

void RectLetX_late_bound(benchmark::State& state) {
  auto r = make<cls_DrawRect>();
  Variant values[2] = {Variant(0.0f), Variant(1.0f)};
  int i = 0;
  for (auto _ : state) {
    i ^= 1;
    Invoke(r.get(), "X", InvokeKind::Let, std::span<Variant>(&values[i], 1));
  }
  benchmark::DoNotOptimize(r->X());
}

void RectLetX_late_bound_resolved(benchmark::State& state) {
  auto r = make<cls_DrawRect>();
  const MemberInfo& x = *r->classInfo().find("X");
  Variant values[2] = {Variant(0.0f), Variant(1.0f)};
  int i = 0;
  for (auto _ : state) {
    i ^= 1;
    Invoke(x, r.get(), InvokeKind::Let, std::span<Variant>(&values[i], 1));
  }
  benchmark::DoNotOptimize(r->X());
}

}  // namespace

BENCHMARK(RectGetX_baseline)->Name("RectGetX/baseline");
BENCHMARK(RectGetX_late_bound)->Name("RectGetX/late_bound");
BENCHMARK(RectGetX_late_bound_resolved)->Name("RectGetX/late_bound_resolved");
BENCHMARK(RectLetX_baseline)->Name("RectLetX/baseline");
BENCHMARK(RectLetX_late_bound)->Name("RectLetX/late_bound");
BENCHMARK(RectLetX_late_bound_resolved)->Name("RectLetX/late_bound_resolved");
