// The soak: runs the library for a long time and checks that nothing accumulates.
//
//   1. create / use / drop cycles of every class of the type library, found by walking the
//      library: every event of each object gets a handler, every readable property is read,
//      the value members are changed and put back;
//   2. late-bound calls that fail (type mismatch, no such member, argument errors, overflow);
//   3. eight threads, each with its own root, handing objects to each other and ending in turn,
//      each handing its root to the thread that replaces it; some native drawing on the way.
//
// Resident memory is printed at the start (after a warm-up of every phase), in the middle of
// the threads and at the end, with the live native handles of every kind. Exits 1 when memory
// grew by more than the tolerance or a handle count is not back where it started.
//
// Environment: SOAK_CYCLES (1000000 per class), SOAK_ERRORS (2000000), SOAK_SECONDS (60 for
// the threads), SOAK_TOLERANCE_MB (10).
#include <tessel/tessel.h>

#include <malloc.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

using namespace tessel;
namespace gp = tessel::mdl_GDIPlus;
using Clock = std::chrono::steady_clock;

namespace {

long envNumber(const char* name, long fallback) {
  const char* v = std::getenv(name);
  return v && *v ? std::strtol(v, nullptr, 10) : fallback;
}

// Resident memory in MB, after free pages went back to the system: what is in use, not what
// the allocator happens to keep.
double residentMB() {
  malloc_trim(0);
  long pages = 0, resident = 0;
  if (FILE* f = std::fopen("/proc/self/statm", "r")) {
    if (std::fscanf(f, "%ld %ld", &pages, &resident) != 2) resident = 0;
    std::fclose(f);
  }
  return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0);
}

std::vector<std::pair<const char*, long>> liveHandles() { return gp::LiveHandles(); }

std::string handleText(const std::vector<std::pair<const char*, long>>& handles) {
  std::string s;
  for (auto& [kind, count] : handles) s += std::string(s.empty() ? "" : " ") + kind + "=" + std::to_string(count);
  return s;
}

void report(const char* when, double mb) {
  std::printf("%-28s RSS %8.1f MB   handles %s\n", when, mb, handleText(liveHandles()).c_str());
  std::fflush(stdout);
}

// ---- 1. every class ---------------------------------------------------------------------------

// How to get an object of a class: create it, take the thread's instance, or read it from an
// object of another class (the root's factories, the root from the global object).
struct Source {
  const ClassInfo* ci;
  std::function<Ref<Object>()> obtain;
  std::string how;
};

bool readsWithoutArguments(const MemberInfo& m) { return m.get && m.get.params.empty(); }

std::vector<Source> findSources() {
  std::vector<Source> found;
  std::map<const ClassInfo*, size_t> known;
  auto add = [&](Source s) {
    if (known.count(s.ci)) return;
    known[s.ci] = found.size();
    found.push_back(std::move(s));
  };
  for (const ClassInfo* ci : TypeLib::classes()) {
    if (ci->creatable()) add({ci, [ci] { return ci->create(); }, "created"});
    else if (ci->isGlobal()) add({ci, [ci] { return ci->instance(); }, "the thread's instance"});
  }
  // Objects reachable from those by reading properties, until nothing new turns up.
  for (size_t i = 0; i < found.size(); ++i) {
    Ref<Object> o = found[i].obtain();
    if (!o) continue;
    for (const MemberInfo& m : found[i].ci->members()) {
      if (!readsWithoutArguments(m) || !TypeLib::findClass(m.get.resultType)) continue;
      Variant v;
      try {
        v = Invoke(o.get(), m.name, InvokeKind::Get);
      } catch (const Error&) {
        continue;
      }
      if (!v.isObject() || !v.obj() || known.count(&v.obj()->classInfo())) continue;
      auto from = found[i].obtain;
      std::string name = m.name;
      add({&v.obj()->classInfo(),
           [from, name] { return Invoke(from().get(), name, InvokeKind::Get).toObject(); },
           found[i].ci->name() + "." + name});
    }
  }
  return found;
}

struct CycleCounts {
  long events = 0, errors = 0;
};

// One create / use / drop cycle.
void cycle(const Source& s, CycleCounts& n) {
  Ref<Object> o = s.obtain();
  std::vector<Connection> listening;
  for (const EventInfo& e : s.ci->events())
    listening.push_back(e.connect(*o, [&n](std::span<Variant>) { ++n.events; }));
  auto attempt = [&](auto&& call) {
    try {
      call();
    } catch (const Error&) {
      ++n.errors;
    }
  };
  for (const MemberInfo& m : s.ci->members())
    if (readsWithoutArguments(m)) attempt([&] { Invoke(o.get(), m.name, InvokeKind::Get); });
  if (!s.ci->displayMember().empty()) attempt([&] { Invoke(o.get(), s.ci->displayMember(), InvokeKind::Method); });
  // Each value member changed (its events fire) and put back.
  for (const std::string& name : s.ci->valueMembers()) {
    attempt([&] {
      Variant old = Invoke(o.get(), name, InvokeKind::Get);
      Variant changed[] = {Variant(old.toDouble() == 0 ? 1 : 0)};
      Invoke(o.get(), name, InvokeKind::Let, changed);
      Variant back[] = {old};
      Invoke(o.get(), name, InvokeKind::Let, back);
    });
  }
}

void everyClass(const std::vector<Source>& sources, long cycles, bool print) {
  for (const Source& s : sources) {
    CycleCounts n;
    const auto t0 = Clock::now();
    for (long i = 0; i < cycles; ++i) cycle(s, n);
    const double secs = std::chrono::duration<double>(Clock::now() - t0).count();
    if (print)
      std::printf("  %-20s %-30s %ld cycles in %5.1f s, %ld events, %ld errors\n", s.ci->name().c_str(),
                  s.how.c_str(), cycles, secs, n.events, n.errors);
  }
}

// ---- 2. failing late-bound calls --------------------------------------------------------------

// Returns how many calls did not fail as they should.
long failingCalls(long count) {
  Ref<Object> rect = TypeLib::findClass("cls_DrawRect")->create();
  Ref<Object> color = TypeLib::findClass("cls_DrawColor")->create();
  long wrong = 0;
  for (long i = 0; i < count; ++i) {
    int32_t expected = 0;
    try {
      switch (i % 5) {
        case 0: {
          expected = static_cast<int32_t>(0x80040000u | rt::TypeMismatch);
          Variant v[] = {Variant(u"abc")};
          Invoke(rect.get(), "X", InvokeKind::Let, v);
          break;
        }
        case 1:
          expected = rt::NoSuchMember;
          Invoke(rect.get(), "NOSUCHMEMBER", InvokeKind::Get);
          break;
        case 2:
          expected = rt::WrongArgumentCount;
          Invoke(rect.get(), "MOVE", InvokeKind::Method, {1, 2, 3, 4, 5});
          break;
        case 3: {
          expected = rt::NamedArgumentNotFound;
          Variant v[] = {Variant(1), Variant(2)};
          NamedArg named[] = {{"pNoSuch", Variant(3)}};
          Invoke(rect.get(), "MOVE", InvokeKind::Method, v, named);
          break;
        }
        case 4: {
          expected = static_cast<int32_t>(0x80040000u | rt::Overflow);
          Variant v[] = {Variant(300)};
          Invoke(color.get(), "R", InvokeKind::Let, v);
          break;
        }
      }
      ++wrong;
    } catch (const Error& e) {
      if (e.number() != expected) ++wrong;
    }
  }
  return wrong;
}

// ---- 3. threads -------------------------------------------------------------------------------

constexpr int kThreads = 8;

struct Mailbox {
  std::mutex lock;
  std::deque<Ref<Object>> items;
  void put(Ref<Object> o) {
    std::lock_guard g(lock);
    items.push_back(std::move(o));
    if (items.size() > 64) items.pop_front();
  }
  Ref<Object> take() {
    std::lock_guard g(lock);
    if (items.empty()) return nullptr;
    Ref<Object> o = std::move(items.front());
    items.pop_front();
    return o;
  }
  void clear() {
    std::lock_guard g(lock);
    items.clear();
  }
};

struct Shared {
  Mailbox mail[kThreads];
  std::atomic<bool> stop{false};
  std::atomic<long> rounds{0}, failures{0}, handedOver{0}, ended{0};
};

Ref<cls_DrawRect> lateRect(Object* root, std::vector<Variant> args) {
  Variant factory = Invoke(root, "RECT", InvokeKind::Get);
  return refCast<cls_DrawRect>(Invoke(factory, "", InvokeKind::Method, args).toObject());
}

// A small picture with native objects of four kinds, made and freed.
bool drawSomething(int seed) {
  gp::GpBitmap* made = nullptr;
  if (!gp::Succeeded(gp::GdipCreateBitmapFromScan0(32, 32, 0, gp::PixelFormat32bppARGB, nullptr, &made))) return false;
  gp::ImageHandle bitmap(made);
  gp::GpGraphics* context = nullptr;
  if (!gp::Succeeded(gp::GdipGetImageGraphicsContext(bitmap.get(), &context))) return false;
  gp::GraphicsHandle g(context);
  gp::GpSolidFill* fill = nullptr;
  if (!gp::Succeeded(gp::GdipCreateSolidFill(0xFF000000u | static_cast<uint32_t>(seed * 2654435761u >> 8), &fill)))
    return false;
  gp::BrushHandle brush(fill);
  return gp::Succeeded(gp::GdipFillEllipse(g.get(), brush.get(), 2, 2, 28, 28));
}

// One thread's life: its own root (and the one it inherited, until it lets go of it), objects
// made and handed to the next thread, objects taken from the previous one.
void worker(Shared& sh, int slot, Ref<cls_DrawTool> inherited, double lifeSeconds,
            std::function<void(Ref<cls_DrawTool>)> ending) {
  Ref<cls_DrawTool> root = mdl_Global::DRAW();
  root->INIT();
  const auto until = Clock::now() + std::chrono::duration<double>(lifeSeconds);
  long moved = 0;
  for (long k = 0; !sh.stop && Clock::now() < until; ++k) {
    try {
      Ref<cls_DrawRect> r = lateRect(root.get(), {static_cast<int32_t>(k % 1000), slot, 10, 10});
      {
        // Disconnected before the rectangle may go to the next thread: the handler counts here.
        Connection c = ConnectEvent(*r, "MOVED", [&](std::span<Variant>) { ++moved; });
        r->MOVEBY(1, 1);
        (void)r->INFO();
      }
      Ref<cls_DrawColor> col = root->COLOR()->AUTO(Variant(u"tomato"))->BRIGHTER(static_cast<int32_t>(k % 50));
      (void)col->CONTRASTCOLOR(Variant(u"navy"))->HTML();
      if (inherited) (void)lateRect(inherited.get(), {1, 2, 3, 4})->INFO();
      if (k % 8 == 0) {
        sh.mail[(slot + 1) % kThreads].put(Ref<Object>(r));
        ++sh.handedOver;
      }
      if (Ref<Object> got = sh.mail[slot].take()) Invoke(got.get(), "MOVEBY", InvokeKind::Method, {1, 1});
      if (k % 64 == 0 && !drawSomething(static_cast<int>(k))) ++sh.failures;
      if (k == 1000) inherited = nullptr;  // the predecessor's root goes here, on this thread
    } catch (const Error&) {
      ++sh.failures;
    }
    ++sh.rounds;
  }
  ++sh.ended;
  ending(std::move(root));
}

// Runs the threads for `seconds`; each lives about `life` seconds and hands its root on.
void threads(Shared& sh, double seconds, double life, std::function<void()> halfway) {
  struct Slot {
    std::thread t;
    std::mutex lock;
    Ref<cls_DrawTool> handed;
    bool ended = false;
  };
  std::vector<Slot> slots(kThreads);
  auto start = [&](int i, Ref<cls_DrawTool> inherited) {
    slots[i].t = std::thread(worker, std::ref(sh), i, std::move(inherited), life, [&, i](Ref<cls_DrawTool> root) {
      std::lock_guard g(slots[i].lock);
      slots[i].handed = std::move(root);
      slots[i].ended = true;
    });
  };
  for (int i = 0; i < kThreads; ++i) start(i, nullptr);
  const auto t0 = Clock::now();
  bool halfwayDone = false;
  while (std::chrono::duration<double>(Clock::now() - t0).count() < seconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    for (int i = 0; i < kThreads; ++i) {
      Ref<cls_DrawTool> root;
      {
        std::lock_guard g(slots[i].lock);
        if (!slots[i].ended) continue;
        slots[i].ended = false;
        root = std::move(slots[i].handed);
      }
      // The successor starts with the root while its old thread may still be ending.
      std::thread old = std::move(slots[i].t);
      start(i, std::move(root));
      old.join();
    }
    if (!halfwayDone && std::chrono::duration<double>(Clock::now() - t0).count() >= seconds / 2) {
      halfwayDone = true;
      if (halfway) halfway();
    }
  }
  sh.stop = true;
  for (auto& s : slots) s.t.join();
  for (auto& s : slots) s.handed = nullptr;
  for (auto& m : sh.mail) m.clear();
}

}  // namespace

int main() {
  const long cycles = envNumber("SOAK_CYCLES", 1000000);
  const long errors = envNumber("SOAK_ERRORS", 2000000);
  const double seconds = static_cast<double>(envNumber("SOAK_SECONDS", 60));
  const double toleranceMB = static_cast<double>(envNumber("SOAK_TOLERANCE_MB", 10));

  // No dialog may wait for a person; any that is asked is counted.
  std::atomic<long> dialogs{0};
  setMessageBoxHandler([&](const MsgBoxRequest& r) {
    ++dialogs;
    return r.buttons == MsgButtons::AbortRetryIgnore ? MsgResult::Ignore : MsgResult::OK;
  });
  mdl_Global::DRAW()->INIT();

  const std::vector<Source> sources = findSources();
  std::printf("tessel soak: %zu classes, %ld cycles each, %ld failing calls, %d threads for %.0f s\n",
              sources.size(), cycles, errors, kThreads, seconds);

  // Warm-up: every phase once, briefly, so that caches, thread arenas and lazily made state
  // exist before the first measurement.
  everyClass(sources, std::min(cycles, 10000L), false);
  long wrong = failingCalls(std::min(errors, 10000L));
  {
    Shared warmUp;
    threads(warmUp, std::min(seconds, 2.0), 0.5, nullptr);
    wrong += warmUp.failures;
  }

  const auto handlesAtStart = liveHandles();
  const double start = residentMB();
  report("start (after warm-up)", start);

  everyClass(sources, cycles, true);
  report("after the class cycles", residentMB());

  const auto t0 = Clock::now();
  wrong += failingCalls(errors);
  std::printf("  %ld failing calls in %.1f s, %ld did not fail as expected\n", errors,
              std::chrono::duration<double>(Clock::now() - t0).count(), wrong);
  report("after the failing calls", residentMB());

  Shared shared;
  double middle = 0;
  threads(shared, seconds, std::max(seconds / 30, 0.5), [&] {
    middle = residentMB();
    report("threads, half-time", middle);
  });
  std::printf("  %ld thread rounds, %ld objects handed over, %ld threads ended handing their root on, %ld failures\n",
              shared.rounds.load(), shared.handedOver.load(), shared.ended.load(), shared.failures.load());
  const double end = residentMB();
  report("end", end);

  bool ok = true;
  if (end - start > toleranceMB) {
    std::printf("FAIL: resident memory grew by %.1f MB (tolerance %.0f MB)\n", end - start, toleranceMB);
    ok = false;
  }
  if (liveHandles() != handlesAtStart) {
    std::printf("FAIL: live handles %s, at the start %s\n", handleText(liveHandles()).c_str(),
                handleText(handlesAtStart).c_str());
    ok = false;
  }
  if (wrong || shared.failures || dialogs) {
    std::printf("FAIL: %ld calls did not fail as expected, %ld thread failures, %ld dialogs\n", wrong,
                shared.failures.load(), dialogs.load());
    ok = false;
  }
  std::printf("%s: memory %+.1f MB from start to end\n", ok ? "PASS" : "FAIL", end - start);
  setMessageBoxHandler(nullptr);
  return ok ? 0 : 1;
}
