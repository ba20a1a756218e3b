// Threads: each has its own root object and globals; an object may be handed to another thread
// and used and dropped there, also after the thread that made it has ended. `make tsan` runs
// these under ThreadSanitizer, which sees the races that the assertions alone may miss.
#include <tessel/core/Rnd.h>
#include <tessel/root/cls_DrawTool.h>
#include <tessel/root/sys_Global.h>

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <latch>
#include <set>
#include <thread>
#include <vector>

using namespace tessel;

namespace {

constexpr int kThreads = 8;

template <class F>
void onThreads(int n, F&& body) {
  std::vector<std::thread> ts;
  for (int i = 0; i < n; ++i) ts.emplace_back(body, i);
  for (auto& t : ts) t.join();
}

// root.RECT(args) as a script writes it: the factory's default member.
Ref<cls_DrawRect> lateRect(Object* root, std::vector<Variant> args) {
  Variant factory = Invoke(root, "RECT", InvokeKind::Get);
  return refCast<cls_DrawRect>(Invoke(factory, "", InvokeKind::Method, args).toObject());
}

std::u16string navyOnNavy() {
  return mdl_Global::DRAW()->COLOR()->AUTO(Variant(u"navy"))->CONTRASTCOLOR(Variant(u"navy"))->HTML();
}

}  // namespace

TEST(Threads, EachThreadHasItsOwnRootAndObjects) {
  struct Seen {
    cls_DrawTool* root = nullptr;
    int moved = 0;
    std::u16string info, contrast;
    double firstRnd = 0;
  };
  std::vector<Seen> seen(kThreads);
  std::latch allStarted(kThreads);  // every root alive at once, so no address is reused
  onThreads(kThreads, [&](int i) {
    Seen& s = seen[i];
    Ref<cls_DrawTool> root = mdl_Global::DRAW();
    s.root = root.get();
    s.firstRnd = Rnd();
    allStarted.arrive_and_wait();
    root->INIT();
    for (int k = 0; k < 500; ++k) {
      Ref<cls_DrawRect> r = lateRect(root.get(), {i, k, 10, 10});
      Connection c = ConnectEvent(*r, "MOVED", [&](std::span<Variant>) { ++s.moved; });
      r->MOVEBY(1, 1);
      s.info = r->INFO();
    }
    // Mixing with the factory's WHITE, found through the root seam: the calling thread's.
    s.contrast = navyOnNavy();
  });
  std::set<cls_DrawTool*> roots{mdl_Global::DRAW().get()};
  for (int i = 0; i < kThreads; ++i) {
    SCOPED_TRACE(i);
    roots.insert(seen[i].root);
    EXPECT_EQ(seen[i].moved, 500);
    EXPECT_EQ(seen[i].info, u"(" + toUtf16(std::to_string(i + 1)) + u",500)-(" + toUtf16(std::to_string(i + 10)) +
                                u",509)");
    EXPECT_EQ(seen[i].contrast, navyOnNavy());
    EXPECT_EQ(seen[i].firstRnd, seen[0].firstRnd);  // every thread's sequence starts alike
  }
  EXPECT_EQ(roots.size(), kThreads + 1u);
}

TEST(Threads, ReferencesMayBeTakenAndDroppedOnAnyThreadAtOnce) {
  Ref<cls_DrawRect> shared = make<cls_DrawRect>();
  std::latch go(kThreads);
  onThreads(kThreads, [&](int) {
    go.arrive_and_wait();
    for (int k = 0; k < 20000; ++k) {
      Ref<cls_DrawRect> mine = shared;
      Variant v{Ref<Object>(mine)};
    }
  });
  EXPECT_EQ(shared->refCount(), 1);
}

TEST(Threads, AnObjectHandedToAnotherThreadIsUsedAndDroppedThere) {
  std::promise<std::pair<Ref<cls_DrawRect>, Connection>> handOver;
  std::thread::id raisedOn;
  std::thread maker([&] {
    Ref<cls_DrawRect> r = mdl_Global::DRAW()->RECT()->RECT(Variant(1), 2, 3, 4);
    Connection c = ConnectEvent(*r, "MOVED", [&](std::span<Variant>) { raisedOn = std::this_thread::get_id(); });
    handOver.set_value({std::move(r), std::move(c)});
  });
  std::thread::id userId;
  std::u16string info;
  std::thread user([&] {
    auto [r, c] = handOver.get_future().get();
    userId = std::this_thread::get_id();
    Invoke(r.get(), "MOVE", InvokeKind::Method, {5, 6});
    info = r->INFO();
    // r and c go here, on this thread, possibly while the maker is still ending.
  });
  maker.join();
  user.join();
  EXPECT_EQ(info, u"(5,6)-(7,9)");
  EXPECT_EQ(raisedOn, userId);
}

// A thread's root and globals are released when it ends; a thread that holds them goes on.
TEST(Threads, ARootOutlivesTheThreadThatMadeIt) {
  struct Handed {
    Ref<cls_DrawTool> root;
    Ref<Object> global, module;
  };
  std::promise<Handed> handOver;
  std::thread owner([&] {
    Ref<cls_DrawTool> root = mdl_Global::DRAW();
    root->INIT();
    handOver.set_value({root, sys_Global::instance(), TypeLib::findClass("mdl_Global")->instance()});
  });
  Handed h = handOver.get_future().get();
  // No join yet: the owner releases its thread's objects while this thread uses them.
  std::u16string info;
  for (int k = 0; k < 2000; ++k) {
    Variant root(h.root), module(h.module);  // as a script host holds them
    info = lateRect(root.obj(), {1, 2, 3, 4})->INFO();
    Invoke(module.obj(), "PARATYPETEXT", InvokeKind::Method, {1});
  }
  owner.join();
  EXPECT_EQ(info, u"(1,2)-(3,5)");
  EXPECT_TRUE(h.root->READY());
  EXPECT_EQ(h.root->refCount(), 1);
  EXPECT_NE(h.root, mdl_Global::DRAW());
  // A global object answers for the thread that calls it.
  EXPECT_EQ(Invoke(h.global.get(), "DRAW", InvokeKind::Get).obj(), mdl_Global::DRAW().get());
}

namespace {
class cls_LateThreadProbe final : public ObjectOf<cls_LateThreadProbe> {
 public:
  static constexpr std::string_view ClassName = "cls_LateThreadProbe";
  static const ClassInfo& typeInfo() {
    static const ClassInfo info = ClassBuilder<cls_LateThreadProbe>().creatable();
    return info;
  }
};
}  // namespace

// A library loaded later registers its classes while other threads look classes up.
TEST(Threads, ClassesRegisteredWhileOtherThreadsLookThemUp) {
  std::atomic<bool> registered{false};
  std::atomic<int> found{0};
  std::latch looking(3);
  onThreads(4, [&](int i) {
    if (i == 0) {
      looking.wait();
      TypeLib::add(cls_LateThreadProbe::typeInfo());
      TypeLib::addEnum(EnumInfo{"enm_LateThreadProbe", {{"ID_LateThreadProbe_A", 1}}, ""});
      registered = true;
      return;
    }
    bool sawClass = false, sawEnum = false;
    looking.count_down();
    while (!(sawClass && sawEnum)) {
      const bool done = registered;
      ASSERT_NE(TypeLib::findClass("cls_DrawRect"), nullptr);
      sawClass = TypeLib::findClass("CLS_LATETHREADPROBE") != nullptr;
      sawEnum = false;
      for (auto& e : TypeLib::enums()) sawEnum = sawEnum || e.name == "enm_LateThreadProbe";
      if (done) ASSERT_TRUE(sawClass && sawEnum);
      std::this_thread::yield();
    }
    if (auto obj = TypeLib::findClass("cls_LateThreadProbe")->create()) ++found;
  });
  EXPECT_EQ(found, 3);
}
