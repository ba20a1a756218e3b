// Helpers shared by the test programs.
#pragma once

#include <tessel/core/Error.h>

#include <gtest/gtest.h>

#include <cfenv>
#include <cstdint>

namespace tessel {

// The error that `f` raises; a test failure when it raises none.
template <class F>
Error raisedBy(F&& f) {
  try {
    f();
  } catch (const Error& e) {
    return e;
  }
  ADD_FAILURE() << "no error raised";
  return Error(0, "");
}

template <class F>
int32_t raisedNumber(F&& f) {
  return raisedBy(f).number();
}

// Runs `check` once in each floating-point rounding mode and puts the mode back, also after a
// failure: conversions must not depend on the mode a host program or a plug-in left behind.
template <class F>
void inEveryRoundingMode(F&& check) {
  struct RestoreMode {
    int saved = std::fegetround();
    ~RestoreMode() { std::fesetround(saved); }
  } restore;
  for (int mode : {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
    ASSERT_EQ(std::fesetround(mode), 0);
    SCOPED_TRACE(mode);
    check();
  }
}

// A run-time error number as a caller sees it, folded into the object-error range.
inline int32_t objectError(int32_t n) { return static_cast<int32_t>(0x80040000u | static_cast<uint32_t>(n)); }

}  // namespace tessel
