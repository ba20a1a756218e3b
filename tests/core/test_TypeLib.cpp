// Late-bound dispatch through the type library: names in any case, named arguments, defaults,
// Missing versus Empty, the default member, ByRef, events, and the host's own errors.
#include <tessel/tessel.h>

#include <gtest/gtest.h>

#include "TestSupport.h"
#include "core/ErrorCapture.h"

using namespace tessel;

namespace {

// A small class registered like every class of the model.
class cls_Probe final : public ObjectOf<cls_Probe> {
 public:
  static constexpr std::string_view ClassName = "cls_Probe";
  static const ClassInfo& typeInfo();

  float X() const { return x_; }
  void X(float v) {
    trap("X.LET", [&] {
      x_ = v;
      MOVED.raise();
    });
  }
  Variant ECHO(const Variant& pAny) { return pAny; }
  int32_t SUM(int32_t pA, int32_t pB, int32_t pC) { return pA + pB + pC; }
  std::u16string KIND(const Variant& pAny) { return toUtf16(tessel::typeName(pAny)); }
  void BUMP(int32_t& pCounter, Variant& pCell) {
    pCounter += 1;
    pCell = Variant(u"bumped");
  }
  Ref<cls_Probe> PARTNER() { return partner_; }
  void PARTNER(Ref<cls_Probe> p) { partner_ = std::move(p); }
  int32_t VALUE() const { return 42; }

  int32_t LIMIT = 0;
  Event<> MOVED;
  Event<int16_t&> KEY;

 private:
  float x_ = 0;
  Ref<cls_Probe> partner_;
};

const ClassInfo& cls_Probe::typeInfo() {
  static const ClassInfo info = ClassBuilder<cls_Probe>()
      .creatable()
      .property("X", &cls_Probe::X, &cls_Probe::X)
      .method("ECHO", &cls_Probe::ECHO, {opt("pAny")})
      .method("SUM", &cls_Probe::SUM, {"pA", opt("pB", 10), opt("pC")})
      .method("KIND", &cls_Probe::KIND, {opt("pAny")})
      .method("BUMP", &cls_Probe::BUMP, {"pCounter", "pCell"})
      .objectProperty("PARTNER", &cls_Probe::PARTNER, &cls_Probe::PARTNER)
      .get("VALUE", &cls_Probe::VALUE)
      .field("LIMIT", &cls_Probe::LIMIT)
      .event("MOVED", &cls_Probe::MOVED)
      .event("KEY", &cls_Probe::KEY, {"KeyAscii"})
      .defaultMember("VALUE");
  return info;
}
TESSEL_REGISTER_CLASS(cls_Probe)

Variant call(Object* o, std::string_view name, std::vector<Variant> args = {}, std::vector<NamedArg> named = {},
             InvokeKind kind = InvokeKind::Method) {
  return Invoke(o, name, kind, std::span<Variant>(args), std::span<NamedArg>(named));
}

}  // namespace

TEST(TypeLib, MembersAreFoundInAnyCaseAndClassesByName) {
  auto p = TypeLib::findClass("CLS_PROBE")->create();
  call(p.get(), "x", {Variant(2.5)}, {}, InvokeKind::Let);
  EXPECT_EQ(call(p.get(), "X", {}, {}, InvokeKind::Get), Variant(2.5f));
  EXPECT_EQ(p->typeName(), "cls_Probe");
  EXPECT_EQ(TypeLib::findClass("cls_DrawTool")->creatable(), false);
}

TEST(TypeLib, DefaultsMissingAndNamedArguments) {
  auto p = make<cls_Probe>();
  EXPECT_EQ(call(p.get(), "SUM", {1}), Variant(11));                    // pB defaults to 10, pC to 0
  EXPECT_EQ(call(p.get(), "SUM", {1, 2, 3}), Variant(6));
  EXPECT_EQ(call(p.get(), "SUM", {1, Variant::missing(), 3}), Variant(14));  // Missing takes the default
  EXPECT_EQ(call(p.get(), "sum", {1}, {{"PC", 5}}), Variant(16));
  EXPECT_EQ(call(p.get(), "SUM", {}, {{"pA", 1}, {"pB", 1}}), Variant(2));
  // An omitted optional Variant arrives as Missing, an explicit Empty as Empty.
  EXPECT_EQ(call(p.get(), "KIND"), Variant(u"Error"));
  EXPECT_EQ(call(p.get(), "KIND", {Variant()}), Variant(u"Empty"));
  EXPECT_TRUE(call(p.get(), "ECHO").isMissing());
}

TEST(TypeLib, AutomationErrorsAreRaisedAsTheyAreAndNameTheMember) {
  auto p = make<cls_Probe>();
  EXPECT_EQ(raisedNumber([&] { call(p.get(), "NOSUCH"); }), 438);
  EXPECT_EQ(raisedNumber([&] { call(p.get(), "SUM"); }), 449);
  EXPECT_EQ(raisedNumber([&] { call(p.get(), "SUM", {Variant::missing()}); }), 449);
  EXPECT_EQ(raisedNumber([&] { call(p.get(), "SUM", {1, 2, 3, 4}); }), 450);
  EXPECT_EQ(raisedNumber([&] { call(p.get(), "SUM", {1}, {{"pZ", 1}}); }), 448);
  EXPECT_EQ(raisedNumber([&] { call(nullptr, "SUM", {1}); }), 91);
  EXPECT_EQ(raisedNumber([&] { ConnectEvent(*p, "NOEVENT", [](std::span<Variant>) {}); }), 438);

  // Each names the member as its source and what is wrong in its text.
  auto where = [&](auto f) {
    Error e = raisedBy(f);
    return e.source() + " | " + e.description();
  };
  EXPECT_EQ(where([&] { call(p.get(), "NOSUCH"); }),
            "cls_Probe.NOSUCH | Objekt unterstützt diese Eigenschaft oder Methode nicht: NOSUCH");
  EXPECT_EQ(where([&] { call(p.get(), "SUM", {Variant::missing()}); }), "cls_Probe.SUM | Argument ist nicht optional: pA");
  EXPECT_EQ(where([&] { call(p.get(), "SUM", {1}, {{"pZ", 1}}); }), "cls_Probe.SUM | Benanntes Argument nicht gefunden: pZ");
  EXPECT_EQ(where([&] { call(p.get(), "SUM", {1, 2, 3, 4}); }),
            "cls_Probe.SUM | Falsche Anzahl an Argumenten oder ungültige Zuweisung zu einer Eigenschaft: 4 Argumente, "
            "höchstens 3");
  EXPECT_EQ(where([&] { call(p.get(), "VALUE", {1}, {}, InvokeKind::Let); }),
            "cls_Probe.VALUE | Objekt unterstützt diese Eigenschaft oder Methode nicht: keine Zuweisung eines Wertes");
  EXPECT_EQ(where([&] { ConnectEvent(*p, "NOEVENT", [](std::span<Variant>) {}); }),
            "cls_Probe.NOEVENT | Objekt unterstützt diese Eigenschaft oder Methode nicht: kein Ereignis NOEVENT");
}

TEST(TypeLib, ArgumentConversionFailsUnderTheMembersSource) {
  ErrorCapture quiet;
  auto p = make<cls_Probe>();
  try {
    call(p.get(), "SUM", {Variant(u"abc")});
    FAIL() << "no error";
  } catch (const Error& e) {
    EXPECT_EQ(e.number(), static_cast<int32_t>(0x8004000D));
    EXPECT_EQ(e.source(), "cls_Probe.SUM");
    EXPECT_EQ(e.description(), "Ungültiger Parameter (13)");
  }
  try {
    call(p.get(), "X", {Variant(u"x")}, {}, InvokeKind::Let);
    FAIL() << "no error";
  } catch (const Error& e) {
    EXPECT_EQ(e.source(), "cls_Probe.X.LET");
  }
  EXPECT_EQ(p->X(), 0.0f);  // nothing half-done
}

TEST(TypeLib, DefaultMemberFieldsAndObjectProperties) {
  auto p = make<cls_Probe>();
  EXPECT_EQ(call(p.get(), ""), Variant(42));
  EXPECT_EQ(Variant(Ref<Object>(p)).toLong(), 42);  // an object stands for its default value
  call(p.get(), "LIMIT", {7}, {}, InvokeKind::Let);
  EXPECT_EQ(p->LIMIT, 7);
  auto q = make<cls_Probe>();
  call(p.get(), "PARTNER", {Variant(q)}, {}, InvokeKind::Set);
  EXPECT_EQ(call(p.get(), "PARTNER", {}, {}, InvokeKind::Get).obj(), q.get());
}

TEST(TypeLib, ByRefParametersWriteBack) {
  auto p = make<cls_Probe>();
  std::vector<Variant> args{Variant(int16_t(4)), Variant()};
  Invoke(p.get(), "BUMP", InvokeKind::Method, std::span<Variant>(args));
  EXPECT_EQ(args[0], Variant(5));
  EXPECT_EQ(args[1], Variant(u"bumped"));
  std::vector<NamedArg> named{{"pCell", Variant()}, {"pCounter", Variant(1)}};
  Invoke(p.get(), "BUMP", InvokeKind::Method, {}, std::span<NamedArg>(named));
  EXPECT_EQ(named[1].value, Variant(2));
  EXPECT_EQ(named[0].value, Variant(u"bumped"));
}

TEST(TypeLib, EventsByNameHoldTheirListenersWeakly) {
  auto p = make<cls_Probe>();
  int moved = 0;
  {
    Connection c = ConnectEvent(*p, "moved", [&](std::span<Variant> args) {
      EXPECT_TRUE(args.empty());
      ++moved;
    });
    p->X(1);
    EXPECT_EQ(moved, 1);
  }
  p->X(2);  // the connection is gone, and with it the handler
  EXPECT_EQ(moved, 1);

  Connection key = ConnectEvent(*p, "KEY", [](std::span<Variant> args) { args[0] = Variant(int16_t(0)); });
  int16_t ascii = 65;
  p->KEY.raise(ascii);
  EXPECT_EQ(ascii, 0);  // a ByRef argument changed by the handler reaches the raiser

  // A handler that disconnects another during the same raise stops it from being called.
  int calls = 0;
  Connection second;
  Connection first = p->MOVED.connect([&] {
    ++calls;
    second.disconnect();
  });
  second = p->MOVED.connect([&] { ++calls; });
  p->X(3);
  EXPECT_EQ(calls, 1);
}

TEST(TypeLib, SourceDoesNotKeepItsListenerAlive) {
  // The listener owns the source and its connection; the source only sees the handler.
  struct Listener {
    Ref<cls_Probe> source = make<cls_Probe>();
    Connection c;
  };
  auto* l = new Listener;
  cls_Probe* raw = l->source.get();
  l->c = raw->MOVED.connect([l] { (void)l; });
  EXPECT_EQ(raw->refCount(), 1);
  delete l;  // frees the source too: no cycle
}

namespace {

// Reading it by its default member fails with a C++ exception that is no run-time error.
class cls_Thrower final : public ObjectOf<cls_Thrower> {
 public:
  static constexpr std::string_view ClassName = "cls_Thrower";
  static const ClassInfo& typeInfo();
  int32_t VALUE() const {
    if (outOfMemory) throw std::bad_alloc();
    throw std::out_of_range("vector index");
  }
  static inline bool outOfMemory = false;
};

const ClassInfo& cls_Thrower::typeInfo() {
  static const ClassInfo info =
      ClassBuilder<cls_Thrower>().creatable().get("VALUE", &cls_Thrower::VALUE).defaultMember("VALUE");
  return info;
}
TESSEL_REGISTER_CLASS(cls_Thrower)

}  // namespace

TEST(TypeLib, AssigningMissingIsATypeMismatchUnderTheAccessorsSource) {
  auto p = make<cls_Probe>();
  p->X(2);
  p->LIMIT = 7;
  Error e = raisedBy([&] { call(p.get(), "X", {Variant::missing()}, {}, InvokeKind::Let); });
  EXPECT_EQ(e.number(), static_cast<int32_t>(0x8004000D));
  EXPECT_EQ(e.source(), "cls_Probe.X.LET");
  EXPECT_EQ(raisedBy([&] { call(p.get(), "LIMIT", {Variant::missing()}, {}, InvokeKind::Let); }).source(),
            "cls_Probe.LIMIT.LET");
  EXPECT_EQ(p->X(), 2);  // neither changed
  EXPECT_EQ(p->LIMIT, 7);
  // An omitted argument still means its default.
  EXPECT_EQ(call(p.get(), "SUM", {1, Variant::missing()}), Variant(11));
}

TEST(TypeLib, AnyFailureWhileConvertingAnArgumentBecomesTheMembersError) {
  auto p = make<cls_Probe>();
  for (bool memory : {false, true}) {
    cls_Thrower::outOfMemory = memory;
    Error e = raisedBy([&] { call(p.get(), "SUM", {Variant(make<cls_Thrower>())}); });
    EXPECT_EQ(e.source(), "cls_Probe.SUM");
    EXPECT_EQ(e.number() & 0xFFFF, memory ? rt::OutOfMemory : rt::InternalError);
  }
  cls_Thrower::outOfMemory = false;
}
