// The owner of one native object of the flat API: the one place where such objects are freed.
//
// Rules, written once:
// - A handle owns at most one object. It frees it exactly once: on reset, on replacement, on
//   move-assignment and on destruction; afterwards it holds null (0 for callers).
// - Freeing never throws. The delete function's status passes through Execute; a failure is
//   not reported (GdipDeleteGraphics answers ObjectBusy while a DC is out), and the handle
//   lets go of the object all the same.
// - Handles move, never copy. The moved-from handle is empty.
// - Each kind counts its live handles (process-wide), so a test can draw ten thousand times
//   and see the count stay flat.
//
// The kinds of the flat API are declared with it, in mdl_GDIPlus.h (BrushHandle, PenHandle, …).
#pragma once

#include <tessel/core/enm_Draw_Status.h>

#include <atomic>
#include <utility>

namespace tessel {

namespace detail {
// Passes a delete function's status through Execute and drops it.
void deleteStatus(enm_Draw_Status s) noexcept;
}  // namespace detail

template <class T, enm_Draw_Status (*Delete)(T*)>
class Handle {
 public:
  Handle() noexcept = default;
  explicit Handle(T* p) noexcept : p_(p) {
    if (p_) live_.fetch_add(1, std::memory_order_relaxed);
  }
  Handle(Handle&& o) noexcept : p_(std::exchange(o.p_, nullptr)) {}
  Handle& operator=(Handle&& o) noexcept {
    if (this != &o) {
      free(std::exchange(p_, std::exchange(o.p_, nullptr)));
    }
    return *this;
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  ~Handle() { free(std::exchange(p_, nullptr)); }

  T* get() const noexcept { return p_; }
  explicit operator bool() const noexcept { return p_ != nullptr; }

  // Frees the object held, if any, and takes `p` (null: stays empty). Taking the object it
  // already holds changes nothing.
  void reset(T* p = nullptr) noexcept {
    if (p == p_) return;
    if (p) live_.fetch_add(1, std::memory_order_relaxed);
    free(std::exchange(p_, p));
  }

  // Gives the object up without freeing it, for a new owner that frees it itself.
  [[nodiscard]] T* release() noexcept {
    if (p_) live_.fetch_sub(1, std::memory_order_relaxed);
    return std::exchange(p_, nullptr);
  }

  // The number of objects of this kind that handles own right now.
  static long live() noexcept { return live_.load(std::memory_order_relaxed); }

 private:
  static void free(T* p) noexcept {
    if (!p) return;
    live_.fetch_sub(1, std::memory_order_relaxed);
    detail::deleteStatus(Delete(p));
  }

  T* p_ = nullptr;
  static inline std::atomic<long> live_{0};
};

}  // namespace tessel
