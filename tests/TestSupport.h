// Helpers shared by the test programs.
#pragma once

#include <tessel/core/Error.h>

#include <gtest/gtest.h>

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

// A run-time error number as a caller sees it, folded into the object-error range.
inline int32_t objectError(int32_t n) { return static_cast<int32_t>(0x80040000u | static_cast<uint32_t>(n)); }

}  // namespace tessel
