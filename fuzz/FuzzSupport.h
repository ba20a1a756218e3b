// What every fuzz target shares: an invariant check that aborts (a finding), the input read as a
// UTF-16 text, and a message-box service that treats any dialog as a finding.
#pragma once

#include <tessel/core/MessageBox.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#define CHECK(cond)                                                          \
  do {                                                                       \
    if (!(cond)) {                                                           \
      std::fprintf(stderr, "check failed: %s (line %d)\n", #cond, __LINE__); \
      std::abort();                                                          \
    }                                                                        \
  } while (0)

namespace tessel::fuzzing {

// One byte or two bytes per UTF-16 unit.
inline std::u16string textOf(const uint8_t* data, size_t size, bool wide) {
  std::u16string t;
  if (wide) {
    for (size_t k = 0; k + 1 < size; k += 2) t.push_back(static_cast<char16_t>(data[k] | data[k + 1] << 8));
  } else {
    for (size_t k = 0; k < size; ++k) t.push_back(static_cast<char16_t>(data[k]));
  }
  return t;
}

// No dialog may come up while fuzzing; should one be asked for, that is a finding.
inline void refuseDialogs() {
  setMessageBoxHandler([](const MsgBoxRequest& r) -> MsgResult {
    std::fprintf(stderr, "unexpected dialog: %s\n", r.prompt.c_str());
    std::abort();
  });
}

}  // namespace tessel::fuzzing
