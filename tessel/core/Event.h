// Outgoing events. A source holds its listeners weakly: the Connection that connect() returns
// owns the handler, and dropping or disconnecting it ends the subscription. So a source never
// keeps a listener alive, and a listener that owns its source creates no cycle.
#pragma once

#include <functional>
#include <memory>
#include <vector>

namespace tessel {

class Connection {
 public:
  Connection() = default;
  explicit Connection(std::shared_ptr<void> slot) : slot_(std::move(slot)) {}
  void disconnect() noexcept { slot_.reset(); }
  bool connected() const noexcept { return slot_ != nullptr; }

 private:
  std::shared_ptr<void> slot_;
};

// Arguments are passed as declared: a handler of Event<int16_t&> may change the value, and
// the raiser sees the change (the ByRef arguments of automation's events).
template <class... A>
class Event {
 public:
  using Handler = std::function<void(A...)>;

  [[nodiscard]] Connection connect(Handler h) {
    auto slot = std::make_shared<Handler>(std::move(h));
    slots_.push_back(slot);
    return Connection(std::move(slot));
  }

  // No handler was ever connected, or the last raise found none left: raising calls nobody.
  bool empty() const noexcept { return slots_.empty(); }

  bool hasListeners() const noexcept {
    for (auto& w : slots_)
      if (!w.expired()) return true;
    return false;
  }

  // Handlers connected while raising are not called for this raise; disconnected ones are
  // skipped from then on.
  void raise(A... args) {
    if (slots_.empty()) return;
    std::vector<std::shared_ptr<Handler>> live;
    live.reserve(slots_.size());
    size_t kept = 0;
    for (auto& w : slots_) {
      if (auto s = w.lock()) {
        live.push_back(std::move(s));
        slots_[kept++] = w;
      }
    }
    slots_.resize(kept);
    for (auto& h : live) {
      if (h.use_count() > 1) (*h)(args...);
    }
  }

 private:
  std::vector<std::weak_ptr<Handler>> slots_;
};

}  // namespace tessel
