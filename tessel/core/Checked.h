// Numbers automation's way: arithmetic that leaves its type raises overflow (6), and rounding
// never depends on the floating-point rounding mode the process happens to run under (a host
// or a plug-in may leave it at upward or toward zero).
//
// Not included by other headers on purpose: it is for sources.
#pragma once

#include <tessel/core/Error.h>

#include <bit>
#include <cfenv>
#include <cfloat>
#include <cmath>
#include <cstdint>

namespace tessel {

// To nearest, ties to even, whatever the rounding mode. Every step is exact and mode-free: the
// conversion to an integer truncates by definition, the fraction v - t and the ±1 are exact.
inline double roundHalfEven(double v) noexcept {
  if (!(std::fabs(v) < 0x1p52)) return v;  // already whole, or infinite, or NaN
  const double t = static_cast<double>(static_cast<int64_t>(v));
  const double frac = std::fabs(v - t);
  const bool odd = static_cast<int64_t>(t) % 2 != 0;
  if (frac > 0.5 || (frac == 0.5 && odd)) return t + std::copysign(1.0, v);
  return t;
}

// Double to Single, to nearest with ties to even, whatever the rounding mode. Infinity and NaN
// pass; a value past the largest Single by half a unit or more becomes infinite, as a plain
// narrowing in the default mode does.
inline float narrowToSingle(double v) noexcept {
  if (!std::isfinite(v)) return static_cast<float>(v);
  constexpr double kToInfinity = 0x1.ffffffp127;  // FLT_MAX plus half a unit in the last place
  if (std::fabs(v) >= kToInfinity) return std::copysign(HUGE_VALF, v);
  // The plain narrowing gives one of the two Singles around v (or infinity just above FLT_MAX);
  // the other is its neighbour towards v. Both distances are exact, being between neighbours.
  const float f = static_cast<float>(v);
  if (static_cast<double>(f) == v) return f;
  const float g = std::nextafter(f, v > f ? HUGE_VALF : -HUGE_VALF);
  const double df = std::fabs(v - static_cast<double>(f));
  const double dg = std::fabs(v - static_cast<double>(g));
  if (df != dg) return df < dg ? f : g;
  return (std::bit_cast<uint32_t>(f) & 1u) == 0 ? f : g;
}

// Runs C library conversions (strtod, printf) in round-to-nearest, which they honour, and puts
// the caller's mode back afterwards. Costs one read of the mode when it already is to-nearest.
class NearestRounding {
 public:
  NearestRounding() noexcept : saved_(std::fegetround()) {
    if (saved_ != FE_TONEAREST) std::fesetround(FE_TONEAREST);
  }
  ~NearestRounding() {
    if (saved_ != FE_TONEAREST) std::fesetround(saved_);
  }
  NearestRounding(const NearestRounding&) = delete;
  NearestRounding& operator=(const NearestRounding&) = delete;

 private:
  int saved_;
};

// A value that must be a number: infinity or NaN raises 6.
inline double checkedFinite(double v) {
  if (!std::isfinite(v)) raise(rt::Overflow);
  return v;
}

// A Double stored into a Single: computed in double, rounded once (to nearest, ties to even);
// infinity, NaN and anything beyond the Single range raise 6.
inline float checkedSingle(double v) {
  if (!std::isfinite(v) || std::fabs(v) > FLT_MAX) raise(rt::Overflow);
  return narrowToSingle(v);
}

// 32-bit signed arithmetic of automation: a result outside the Long range raises 6.
inline int32_t checkedAdd(int32_t a, int32_t b) {
  int32_t r;
  if (__builtin_add_overflow(a, b, &r)) raise(rt::Overflow);
  return r;
}

inline int32_t checkedIncrement(int32_t v) { return checkedAdd(v, 1); }

}  // namespace tessel
