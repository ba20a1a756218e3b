// Objects of the model: intrusive reference counting with deterministic lifetime.
//
// Rules, written once:
// - An object is destroyed when its last Ref goes; a null Ref is Nothing.
// - An object may be handed to another thread and used and dropped there. It is not for use
//   from two threads at once: whoever shares one serializes the calls with a lock of its own
//   (Python's interpreter lock does so for scripts). The count alone is atomic, because
//   references go away where the caller does not see it: a thread's root object and global
//   objects are released when the thread ends, while another thread may still hold them.
// - An owner holds its parts by Ref; anything that only observes (event listeners, caches
//   that point back) holds a raw pointer or a Connection, never a Ref, so no cycle forms.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace tessel {

class ClassInfo;

// Memory that an object lends to a host that works on it in place (Python's buffer protocol): a
// grid of rows x columns cells of `channels` bytes each, rows `rowStride` bytes apart, and what
// the bytes of a cell are ("BGRA").
struct ExportedBuffer {
  void* data = nullptr;
  int64_t rows = 0;
  int64_t columns = 0;
  int64_t channels = 0;
  int64_t rowStride = 0;
  const char* layout = "";
};

class Object {
 public:
  Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  virtual ~Object() = default;

  // As shared_ptr counts: a new reference needs no ordering; the last release must see every
  // write that other threads made before they let go, so the destructor runs after them.
  void addRef() const noexcept { refs_.fetch_add(1, std::memory_order_relaxed); }
  void release() const noexcept {
    if (refs_.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
  }
  int32_t refCount() const noexcept { return refs_.load(std::memory_order_relaxed); }

  // The class as the type library knows it; its name is the run-time type name.
  virtual const ClassInfo& classInfo() const noexcept = 0;
  std::string_view typeName() const noexcept;

  // Two seams for hosts, open to any class. exportBuffer lends the object's memory and answers
  // false when it has none to lend (or cannot lend it now); each loan that succeeded ends with
  // one unexportBuffer, and until then the memory stays where it is. toPng is the object as a
  // PNG file's bytes, for hosts that show objects as pictures; empty when it is no picture.
  virtual bool exportBuffer(ExportedBuffer&) { return false; }
  virtual void unexportBuffer() noexcept {}
  virtual std::string toPng() { return {}; }

 private:
  mutable std::atomic<int32_t> refs_{0};
};

template <class T>
class Ref {
 public:
  Ref() noexcept = default;
  Ref(std::nullptr_t) noexcept {}
  Ref(T* p) noexcept : p_(p) {
    if (p_) p_->addRef();
  }
  Ref(const Ref& o) noexcept : Ref(o.p_) {}
  Ref(Ref&& o) noexcept : p_(std::exchange(o.p_, nullptr)) {}
  template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
  Ref(const Ref<U>& o) noexcept : Ref(o.get()) {}
  template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
  Ref(Ref<U>&& o) noexcept : p_(o.detach()) {}
  ~Ref() {
    if (p_) p_->release();
  }

  Ref& operator=(Ref o) noexcept {
    std::swap(p_, o.p_);
    return *this;
  }

  T* get() const noexcept { return p_; }
  T* operator->() const noexcept { return p_; }
  T& operator*() const noexcept { return *p_; }
  explicit operator bool() const noexcept { return p_ != nullptr; }
  T* detach() noexcept { return std::exchange(p_, nullptr); }

  friend bool operator==(const Ref& a, const Ref& b) noexcept { return a.p_ == b.p_; }
  friend bool operator==(const Ref& a, std::nullptr_t) noexcept { return a.p_ == nullptr; }

 private:
  T* p_ = nullptr;
};

template <class T, class... A>
Ref<T> make(A&&... a) {
  return Ref<T>(new T(std::forward<A>(a)...));
}

// Holds an object for the length of a member call: a handler of an event that the member raises
// may drop the last reference to it, and the member must still finish on a live object. An
// object that is not counted (still being built, or not made by make) is left alone.
class KeepAlive {
 public:
  explicit KeepAlive(const Object* o) noexcept : o_(o && o->refCount() > 0 ? o : nullptr) {
    if (o_) o_->addRef();
  }
  ~KeepAlive() {
    if (o_) o_->release();
  }
  KeepAlive(const KeepAlive&) = delete;
  KeepAlive& operator=(const KeepAlive&) = delete;

 private:
  const Object* o_;
};

// Checked downcast by class; null when the object is of another class (or Nothing).
template <class T, class U>
Ref<T> refCast(const Ref<U>& r) noexcept {
  return Ref<T>(dynamic_cast<T*>(r.get()));
}

}  // namespace tessel
