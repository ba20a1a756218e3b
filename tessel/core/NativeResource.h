// The lifecycle that every wrapper of a native drawing resource follows, written once:
//
// - A new wrapper holds no native object: HANDLE is 0. Only its creating operations make one.
// - A creating operation frees the object held (DELETE) before it stores the new one, so a
//   wrapper never holds two and never leaks the old one. A failed creation leaves it empty.
// - HANDLE is the native object as a 64-bit value (a pointer), 0 for none.
// - DELETE frees the native object, if any, and leaves the wrapper reusable.
// - PROTECTED (brush, pen, font, text format) is one-way: True sets it, False does nothing. A
//   protected wrapper ignores its creating operations, which still return the wrapper.
// - Destroying a wrapper frees its native object, protected or not. Freeing never throws.
// - Every creating operation and every DELETE gives the wrapper a new stamp, never used before
//   for its kind, so that whatever was made on the old object (a graphics on a bitmap) can tell
//   that it is gone, even when the new object took its address.
#pragma once

#include <tessel/core/Handle.h>

#include <atomic>
#include <cstdint>

namespace tessel {

template <class Kind>
class NativeResource {
 public:
  int64_t handleValue() const noexcept { return static_cast<int64_t>(reinterpret_cast<intptr_t>(kind_.get())); }
  auto* get() const noexcept { return kind_.get(); }
  bool empty() const noexcept { return !kind_; }
  // Frees the object held and takes `made` (null: stays empty).
  template <class T>
  void adopt(T* made) noexcept {
    kind_.reset(made);
    restamp();
  }
  void free() noexcept {
    kind_.reset();
    restamp();
  }
  uint64_t stamp() const noexcept { return stamp_; }

  bool isProtected() const noexcept { return protected_; }
  void protect(bool on) noexcept { protected_ = protected_ || on; }

 private:
  void restamp() noexcept { stamp_ = lastStamp_.fetch_add(1, std::memory_order_relaxed) + 1; }

  Kind kind_;
  bool protected_ = false;
  uint64_t stamp_ = 0;
  static inline std::atomic<uint64_t> lastStamp_{0};
};

}  // namespace tessel
