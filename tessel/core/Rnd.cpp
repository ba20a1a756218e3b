#include <tessel/core/Rnd.h>

namespace tessel {

namespace {
constexpr uint32_t kMask = (1u << 24) - 1;
thread_local uint32_t gState = kRndStart;
}  // namespace

double Rnd() noexcept {
  // Unsigned arithmetic wraps mod 2^32, a multiple of 2^24, so the masked result is exact.
  gState = (gState * 1140671485u + 12820163u) & kMask;
  return static_cast<double>(gState) / static_cast<double>(1u << 24);
}

void RndSeed(uint32_t state) noexcept { gState = state & kMask; }

}  // namespace tessel
