// Shared by the geometry tests: an event recorder, a compact view of a rectangle, and a check
// for raised errors.
#pragma once

#include "TestSupport.h"

#include <tessel/tessel.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tessel {

// Records the events of one object in order: "R" for RESIZE, "M" for MOVED.
class EventLog {
 public:
  explicit EventLog(Object& source) {
    for (auto [name, tag] : {std::pair{"RESIZE", 'R'}, std::pair{"MOVED", 'M'}})
      if (source.classInfo().findEvent(name))
        connections_.push_back(ConnectEvent(source, name, [this, tag = tag](std::span<Variant>) { log_ += tag; }));
  }
  // The events raised while `f` runs.
  template <class F>
  std::string during(F&& f) {
    log_.clear();
    f();
    return log_;
  }

 private:
  std::string log_;
  std::vector<Connection> connections_;
};

// "X,Y,W,H" of a rectangle (or of one in a Variant), in the host's number form.
inline std::string dims(const Variant& v) {
  auto r = refCast<cls_DrawRect>(v.objRef());
  if (!r) return "not a rectangle";
  std::string s;
  for (float f : {r->X(), r->Y(), r->W(), r->H()}) s += (s.empty() ? "" : ",") + Variant(f).toUtf8();
  return s;
}

inline constexpr int32_t kTypeMismatch = static_cast<int32_t>(0x8004000D);
inline constexpr int32_t kOverflow = static_cast<int32_t>(0x80040006);

}  // namespace tessel
