// The whole type library, member by member: an error raised inside a member names that member
// as its source, whether it was called late-bound or typed, and an omitted optional argument
// reaches the member with the same value either way. The member probe makes every member fail
// at the entry of its trap and records what it received.
#include "core/ErrorCapture.h"
#include "library/TypedCalls.h"

#include <tessel/root/sys_Global.h>
#include <tessel/tessel.h>

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <set>

namespace tessel {

// Readable failures: the type code and the value.
void PrintTo(const Variant& v, std::ostream* os) {
  *os << "<type " << static_cast<int>(v.type()) << "> ";
  if (v.isObject()) *os << (v.obj() ? "object" : "Nothing");
  else if (v.isNumeric() || v.isString()) *os << v.toUtf8();
}

namespace {

using testing::TypedCall;
using testing::typedCalls;

struct ProbeArmed {
  ProbeArmed() { MemberProbe::arm(true); }
  ~ProbeArmed() { MemberProbe::arm(false); }
};

std::string suffix(InvokeKind k) {
  switch (k) {
    case InvokeKind::Get: return ".GET";
    case InvokeKind::Let: return ".LET";
    case InvokeKind::Set: return ".SET";
    default: return "";
  }
}

// An object to call members on: a new one, the thread's global, the root object, or the names
// list of a new image cache.
Ref<Object> sample(const ClassInfo& ci) {
  if (ci.creatable()) return ci.create();
  if (ci.isGlobal()) return ci.instance();
  if (ci.name() == "cls_DrawTool") return mdl_Global::DRAW();
  if (ci.name() == "cls_DrawNames") return make<cls_DrawResources>()->NAMES();
  ADD_FAILURE() << "no way to get a " << ci.name() << " for the consistency test: add one to sample()";
  return {};
}

// The zero of a parameter's type, as a late-bound caller would pass it.
Variant zeroOf(const std::string& type) {
  if (type == "Boolean") return Variant(false);
  if (type == "Byte") return Variant(uint8_t(0));
  if (type == "Integer") return Variant(int16_t(0));
  if (type == "Single") return Variant(0.0f);
  if (type == "Double") return Variant(0.0);
  if (type == "String") return Variant(std::u16string());
  if (type == "Variant") return Variant();
  if (type == "Long") return Variant(int32_t(0));
  if (type == "LongLong") return Variant(int64_t(0));
  for (auto& e : TypeLib::enums())
    if (e.name == type) return Variant(int32_t(0));
  return Variant::nothing();  // an object of some class
}

const Accessor& exact(const MemberInfo& m, InvokeKind k) {
  switch (k) {
    case InvokeKind::Get: return m.get;
    case InvokeKind::Let: return m.let;
    case InvokeKind::Set: return m.set;
    default: return m.method;
  }
}

struct Outcome {
  std::optional<Error> error;
  std::vector<Variant> received;
};

template <class F>
Outcome probe(F&& call) {
  Outcome out;
  ProbeArmed armed;
  try {
    call();
  } catch (const Error& e) {
    out.error = e;
    out.received = MemberProbe::lastArguments();
  }
  return out;
}

TEST(TypeLibrary, EveryMemberReportsItsOwnSourceAndAgreesOnDefaults) {
  ErrorCapture capture;
  std::set<std::string> covered;
  for (const TypedCall& call : typedCalls()) {
    const ClassInfo* ci = TypeLib::findClass(call.cls);
    ASSERT_NE(ci, nullptr) << call.cls;
    const MemberInfo* m = ci->find(call.member);
    ASSERT_NE(m, nullptr) << call.cls << "." << call.member;
    const std::string where = std::string(call.cls) + "." + call.member + suffix(call.kind);
    covered.insert(where);
    Ref<Object> target = sample(*ci);
    ASSERT_TRUE(target) << where;

    // Late-bound: required arguments at their zero, optional ones omitted, a value to assign.
    const Accessor& acc = exact(*m, call.kind);
    ASSERT_TRUE(acc) << where;
    std::vector<Variant> args;
    for (auto& p : acc.params)
      if (!p.optional) args.push_back(zeroOf(p.typeName));
    Outcome late = probe([&] { Invoke(*m, target.get(), call.kind, std::span<Variant>(args)); });
    Outcome typed = probe([&] { call.invoke(target.get()); });

    for (auto* o : {&late, &typed}) {
      ASSERT_TRUE(o->error) << where << (o == &late ? " late-bound" : " typed") << " did not reach its trap";
      EXPECT_EQ(o->error->source(), where) << (o == &late ? "late-bound" : "typed");
      EXPECT_EQ(o->error->number() & 0xFFFF, MemberProbe::kProbeError) << where;
    }
    ASSERT_EQ(late.received.size(), typed.received.size()) << where;
    for (size_t i = 0; i < late.received.size(); ++i)
      EXPECT_EQ(late.received[i], typed.received[i]) << where << " argument " << i + 1 << " differs";
  }

  // Every procedure of the type library was among them: none registered past the tables.
  for (const ClassInfo* ci : TypeLib::classes()) {
    for (const MemberInfo& m : ci->members()) {
      if (m.isField) continue;  // read and written in place, no procedure
      for (InvokeKind k : {InvokeKind::Method, InvokeKind::Get, InvokeKind::Let, InvokeKind::Set}) {
        if (!exact(m, k)) continue;
        EXPECT_TRUE(covered.count(ci->name() + "." + m.name + suffix(k)))
            << ci->name() << "." << m.name << suffix(k) << " is not generated from a member table";
      }
    }
  }
  EXPECT_GT(covered.size(), 100u);
}

// The probe's own seam: disarmed, members run; a member's source survives a nested call.
TEST(TypeLibrary, TheProbeOnlyActsWhileArmed) {
  auto r = make<cls_DrawRect>();
  r->SIZE(5, 6);
  EXPECT_EQ(r->W(), 5);
  {
    ProbeArmed armed;
    try {
      r->SIZE(7, 8);  // SIZE calls MOVE inside; the first trap entered names the error
      ADD_FAILURE() << "no error";
    } catch (const Error& e) {
      EXPECT_EQ(e.source(), "cls_DrawRect.SIZE");
    }
  }
  EXPECT_EQ(r->W(), 5);
}

}  // namespace
}  // namespace tessel
