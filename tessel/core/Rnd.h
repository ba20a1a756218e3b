// Automation's random-number generator: the classic 24-bit linear congruential sequence
// x = (x * 1140671485 + 12820163) mod 2^24, one sequence per thread, every thread starting
// from the same state so that an unseeded program repeats itself (as automation's does).
#pragma once

#include <cstdint>

namespace tessel {

inline constexpr uint32_t kRndStart = 327680;

// The next number of the calling thread's sequence: x / 2^24, uniform in [0, 1).
double Rnd() noexcept;

// Restarts the calling thread's sequence at `state` (only its low 24 bits count).
void RndSeed(uint32_t state = kRndStart) noexcept;

}  // namespace tessel
