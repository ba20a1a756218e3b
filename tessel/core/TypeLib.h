// The type library: every class of the model is known here by name, with its members, their
// parameters, defaults and descriptions. Late-bound dispatch, the Python module and the reference
// pages all read it.
//
// Classes do not fill it by hand: a member table next to the class (cls_DrawRect.members) is
// turned by scripts/members.py into the declarations, the traps and the registration below, so a
// member's name, parameters and defaults are written once. The builder here is what the
// generated code calls; docs/core.md shows a class from table to implementation.
//
// Arguments are converted to the C++ parameter types by automation's rules; a conversion that
// fails is reported through the member's own error trap (source "cls_DrawRect.MOVE"), as if
// the member had converted the argument itself. Unknown members (438), named arguments that do
// not exist (448), missing required arguments (449) and too many arguments (450) are
// automation's own errors and are raised as they are.
#pragma once

#include <tessel/core/Error.h>
#include <tessel/core/Event.h>
#include <tessel/core/Object.h>
#include <tessel/core/Variant.h>
#include <tessel/core/mdl_Err.h>
#include <tessel/core/Text.h>

#include <array>
#include <atomic>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <utility>
#include <vector>

namespace tessel {

enum class InvokeKind : uint8_t { Method = 1, Get = 2, Let = 4, Set = 8 };

// The tags that tell a member's body from its public, trapped entry: `float X(Get) const` is the
// body of the getter `float X() const`, `MOVE(Call, …)` the body of `MOVE(…)`.
namespace tl {
struct Call {};
struct Get {};
struct Let {};
struct Set {};
}  // namespace tl

// The type library name of an enumeration of the model; the member tables define it.
template <class E>
struct EnumName;

struct ParamInfo {
  std::string name;
  std::string typeName;  // "Single", "Variant", "cls_DrawPoint", …
  bool optional = false;
  bool byRef = false;
  bool hasDefault = false;
  Variant defaultValue;  // Missing unless hasDefault
};

// One callable shape of a member. `call` receives exactly params.size() arguments, already
// completed with defaults; for let and set the last one is the assigned value.
struct Accessor {
  std::vector<ParamInfo> params;
  std::string resultType;
  std::function<Variant(Object* self, Variant* args)> call;
  explicit operator bool() const noexcept { return static_cast<bool>(call); }
};

struct MemberInfo {
  std::string name;
  Accessor method, get, let, set;
  std::string description;  // one line, for help() and the reference
  bool isField = false;     // a public data member: no procedure, no trap
  bool isProperty() const noexcept { return get || let || set; }
  const Accessor* accessor(InvokeKind kind) const noexcept;
};

struct EventInfo {
  std::string name;
  std::vector<ParamInfo> params;
  std::string description;
  // The handler receives the arguments as variants; ByRef ones are written back after it returns.
  std::function<Connection(Object& source, std::function<void(std::span<Variant>)> handler)> connect;
};

struct EnumInfo {
  std::string name;
  std::vector<std::pair<std::string, int32_t>> members;
  std::string description;
};

class ClassInfo {
 public:
  const std::string& name() const noexcept { return name_; }
  const std::string& description() const noexcept { return description_; }
  // How hosts present an object: the members whose values make up its tuple form (a
  // rectangle's X, Y, W, H), the member whose text shows it (a rectangle's INFO), and for a
  // collection the member that counts it and the member that reads item 1 to count.
  const std::vector<std::string>& valueMembers() const noexcept { return values_; }
  const std::string& displayMember() const noexcept { return display_; }
  const std::string& countMember() const noexcept { return count_; }
  const std::string& itemMember() const noexcept { return item_; }
  bool creatable() const noexcept { return static_cast<bool>(create_); }
  // A new object of a creatable class; 429 when the class cannot be created by clients.
  Ref<Object> create() const;
  // The calling thread's instance of a global object or module (sys_Global, mdl_Global); null otherwise.
  Ref<Object> instance() const { return instance_ ? instance_() : Ref<Object>(); }
  bool isGlobal() const noexcept { return static_cast<bool>(instance_); }

  const MemberInfo* find(std::string_view name) const noexcept;  // any case
  const MemberInfo* defaultMember() const noexcept { return default_ < 0 ? nullptr : &members_[default_]; }
  const EventInfo* findEvent(std::string_view name) const noexcept;
  const std::vector<MemberInfo>& members() const noexcept { return members_; }  // interface order
  const std::vector<EventInfo>& events() const noexcept { return events_; }

 private:
  template <class C>
  friend class ClassBuilder;
  friend void mergeModule(ClassInfo& into, const ClassInfo& part);
  std::string name_;
  std::string description_;
  std::vector<std::string> values_;
  std::string display_, count_, item_;
  std::function<Ref<Object>()> create_;
  std::function<Ref<Object>()> instance_;
  std::vector<MemberInfo> members_;
  struct NameHash {
    using is_transparent = void;
    size_t operator()(std::string_view s) const noexcept { return std::hash<std::string_view>{}(s); }
  };
  std::unordered_map<std::string, size_t, NameHash, std::equal_to<>> index_;  // lower-case name -> member
  // The lookup that late-bound calls use once the class is complete: open addressing over a
  // power-of-two table of member indices (-1 free), hashed without regard to ASCII case.
  std::vector<int32_t> lookup_;
  void buildLookup();
  std::vector<EventInfo> events_;
  int default_ = -1;
};

// The registry of classes and enumerations, filled while libraries load. Safe from any thread;
// the entries it hands out live as long as the process and do not change.
namespace TypeLib {
void add(const ClassInfo& info);
void addEnum(EnumInfo info);
const ClassInfo* findClass(std::string_view name) noexcept;  // any case
std::vector<const ClassInfo*> classes();
const std::vector<EnumInfo>& enums();  // as registered so far; a later one does not change it
}  // namespace TypeLib

struct NamedArg {
  std::string name;
  Variant value;
};

// Late-bound call of a member by name. An empty name calls the default member. ByRef
// parameters write their results back into `args` (or into the named argument's value).
Variant Invoke(Object* target, std::string_view name, InvokeKind kind, std::span<Variant> args = {},
               std::span<NamedArg> named = {});
Variant Invoke(const Variant& target, std::string_view name, InvokeKind kind, std::span<Variant> args = {},
               std::span<NamedArg> named = {});
// The same with the member already looked up (the hot path of script hosts).
Variant Invoke(const MemberInfo& member, Object* target, InvokeKind kind, std::span<Variant> args,
               std::span<NamedArg> named = {});

// Convenience for C++ callers: Invoke(obj, "MOVE", InvokeKind::Method, {1, 2}).
Variant Invoke(Object* target, std::string_view name, InvokeKind kind, std::initializer_list<Variant> args);

// Automation's own error of a late-bound call (438, 448, 449, 450), naming the member as its
// source ("cls_DrawRect.MOVE", the class alone for an empty name) and what is wrong after its
// text ("Benanntes Argument nicht gefunden: pZ"). Hosts raise their own lookups' failures so.
[[noreturn]] void RaiseCallError(int32_t number, const Object& target, std::string_view member,
                                 std::string_view what);

// Connects a handler to an event by name; 438 when the object has no such event.
Connection ConnectEvent(Object& source, std::string_view name, std::function<void(std::span<Variant>)> handler);

// ---------------------------------------------------------------------------------------------
// Registration helpers.

struct Param {
  Param(const char* n) : name(n) {}
  Param(const char* n, bool isOptional, std::optional<Variant> d)
      : name(n), optional(isOptional), def(std::move(d)) {}
  const char* name;
  bool optional = false;
  std::optional<Variant> def;
};
// An optional parameter: without a default it receives Missing (or the zero of its C++ type).
inline Param opt(const char* name) { return Param(name, true, std::nullopt); }
inline Param opt(const char* name, Variant def) { return Param(name, true, std::move(def)); }

namespace detail {

template <class T>
struct Bare {
  using type = std::remove_cv_t<std::remove_reference_t<T>>;
};
template <class T>
using bare_t = typename Bare<T>::type;

template <class T>
struct IsRef : std::false_type {};
template <class T>
struct IsRef<Ref<T>> : std::true_type {
  using element = T;
};

template <class T>
std::string typeNameOf() {
  using B = bare_t<T>;
  if constexpr (std::is_void_v<B>) return "";
  else if constexpr (std::is_same_v<B, bool>) return "Boolean";
  else if constexpr (std::is_same_v<B, uint8_t>) return "Byte";
  else if constexpr (std::is_same_v<B, int16_t>) return "Integer";
  else if constexpr (std::is_same_v<B, int32_t>) return "Long";
  else if constexpr (std::is_same_v<B, int64_t>) return "LongLong";
  else if constexpr (std::is_same_v<B, float>) return "Single";
  else if constexpr (std::is_same_v<B, double>) return "Double";
  else if constexpr (std::is_same_v<B, std::u16string>) return "String";
  else if constexpr (std::is_same_v<B, Variant>) return "Variant";
  else if constexpr (std::is_enum_v<B>) {
    if constexpr (requires { EnumName<B>::value; }) return std::string(EnumName<B>::value);
    else return "Long";
  } else if constexpr (IsRef<B>::value) {
    using E = typename IsRef<B>::element;
    if constexpr (std::is_same_v<E, Object>) return "Object";
    else return std::string(E::ClassName);
  } else static_assert(sizeof(B) == 0, "type not supported by the type library");
}

// Converts one argument to the C++ parameter type. An omitted argument (Missing) gives the
// type's zero; a value assigned to a property must be a value, so there it is a type mismatch.
template <class T>
T fromVariant(const Variant& v, bool assigned = false) {
  if constexpr (std::is_same_v<T, Variant>) {
    if (assigned && v.isMissing()) raise(rt::TypeMismatch);
    return v;
  } else {
    if (v.isMissing()) {
      if (assigned) raise(rt::TypeMismatch);
      return T{};
    }
    if constexpr (std::is_same_v<T, bool>) return v.toBool();
    else if constexpr (std::is_same_v<T, uint8_t>) return v.toByte();
    else if constexpr (std::is_same_v<T, int16_t>) return v.toInteger();
    else if constexpr (std::is_same_v<T, int32_t>) return v.toLong();
    else if constexpr (std::is_same_v<T, int64_t>) return v.toLongLong();
    else if constexpr (std::is_same_v<T, float>) return v.toSingle();
    else if constexpr (std::is_same_v<T, double>) return v.toDouble();
    else if constexpr (std::is_same_v<T, std::u16string>) return v.toString();
    else if constexpr (std::is_enum_v<T>) return static_cast<T>(v.toLong());
    else if constexpr (IsRef<T>::value) {
      using E = typename IsRef<T>::element;
      Ref<Object> o = v.toObject();
      if constexpr (std::is_same_v<E, Object>) return o;
      else {
        if (!o) return T{};
        Ref<E> r = refCast<E>(o);
        if (!r) raise(rt::TypeMismatch);
        return r;
      }
    } else static_assert(sizeof(T) == 0, "type not supported by the type library");
  }
}

template <class R>
Variant toVariant(R&& r) {
  using B = bare_t<R>;
  if constexpr (std::is_same_v<B, Variant>) return std::forward<R>(r);
  else if constexpr (std::is_enum_v<B>) return Variant(static_cast<int32_t>(r));
  else if constexpr (IsRef<B>::value) return Variant(Ref<Object>(std::forward<R>(r)));
  else return Variant(std::forward<R>(r));
}

// Holds one converted argument for the duration of a call. A non-const lvalue reference
// parameter is ByRef: a Variant& is the caller's own cell; any other T& gets a converted copy
// that is written back after the call.
template <class A>
struct ArgHolder {
  using B = bare_t<A>;
  static constexpr bool byRef = std::is_lvalue_reference_v<A> && !std::is_const_v<std::remove_reference_t<A>>;
  ArgHolder(Variant& v, bool assigned) : cell(&v), value(fromVariant<B>(v, assigned)) {}
  B& get() { return value; }
  void writeBack() {
    if constexpr (byRef) *cell = toVariant(value);
  }
  Variant* cell;
  B value;
};
template <>
struct ArgHolder<Variant&> {
  static constexpr bool byRef = true;
  ArgHolder(Variant& v, bool assigned) : cell(&v) {
    if (assigned && v.isMissing()) raise(rt::TypeMismatch);
  }
  Variant& get() { return *cell; }
  void writeBack() {}
  Variant* cell;
};
template <>
struct ArgHolder<const Variant&> {
  static constexpr bool byRef = false;
  ArgHolder(Variant& v, bool assigned) : cell(&v) {
    if (assigned && v.isMissing()) raise(rt::TypeMismatch);
  }
  const Variant& get() { return *cell; }
  void writeBack() {}
  Variant* cell;
};

// Reports a failed argument conversion through the member's trap; true means retry.
bool conversionFailed(std::string_view module, std::string_view procedure);

template <class Fn>
struct Signature;
template <class C, class R, class... A>
struct Signature<R (C::*)(A...)> {
  using Result = R;
  using Args = std::tuple<A...>;
  static constexpr bool isStatic = false;
};
template <class C, class R, class... A>
struct Signature<R (C::*)(A...) const> : Signature<R (C::*)(A...)> {};
template <class C, class R, class... A>
struct Signature<R (C::*)(A...) noexcept> : Signature<R (C::*)(A...)> {};
template <class C, class R, class... A>
struct Signature<R (C::*)(A...) const noexcept> : Signature<R (C::*)(A...)> {};
template <class R, class... A>
struct Signature<R (*)(A...)> {
  using Result = R;
  using Args = std::tuple<A...>;
  static constexpr bool isStatic = true;
};
template <class R, class... A>
struct Signature<R (*)(A...) noexcept> : Signature<R (*)(A...)> {};

// Where an accessor reports a failed conversion, and whether its last argument is an assigned value.
struct CallSite {
  std::string module, procedure;
  bool assigns = false;
};

template <class C, class Fn, class... A, size_t... I>
Variant callWith(Fn fn, Object* self, Variant* args, const CallSite& site, std::index_sequence<I...>) {
  using R = typename Signature<Fn>::Result;
  constexpr size_t last = sizeof...(A) - 1;
  std::optional<std::tuple<ArgHolder<A>...>> holders;
  for (;;) {
    try {
      // Braces: arguments convert left to right.
      holders.emplace(std::tuple<ArgHolder<A>...>{ArgHolder<A>(args[I], site.assigns && I == last)...});
      break;
    } catch (const Terminated&) {
      throw;
    } catch (...) {
      // Whatever went wrong (a run-time error, an allocation, the standard library) fails
      // inside the member's trap and leaves as an Error with the member's source.
      if (!conversionFailed(site.module, site.procedure)) return Variant();
    }
  }
  auto invoke = [&]() -> decltype(auto) {
    if constexpr (Signature<Fn>::isStatic) return fn(std::get<I>(*holders).get()...);
    else return (static_cast<C*>(self)->*fn)(std::get<I>(*holders).get()...);
  };
  Variant result;
  if constexpr (std::is_void_v<R>) invoke();
  else result = toVariant(invoke());
  (std::get<I>(*holders).writeBack(), ...);
  return result;
}

template <class C, class Fn, class Tuple>
struct Thunk;
template <class C, class Fn, class... A>
struct Thunk<C, Fn, std::tuple<A...>> {
  static Accessor make(Fn fn, std::string module, std::string procedure, bool assigns) {
    Accessor a;
    auto site = std::make_shared<CallSite>(CallSite{std::move(module), std::move(procedure), assigns});
    a.call = [fn, site](Object* self, Variant* args) {
      return callWith<C, Fn, A...>(fn, self, args, *site, std::index_sequence_for<A...>{});
    };
    (a.params.push_back(ParamInfo{"", typeNameOf<A>(), false, ArgHolder<A>::byRef, false, Variant::missing()}),
     ...);
    a.resultType = typeNameOf<typename Signature<Fn>::Result>();
    return a;
  }
};

}  // namespace detail

template <class C>
class ClassBuilder {
 public:
  ClassBuilder() { info_.name_ = std::string(C::ClassName); }

  // Clients may create objects of the class (New C).
  ClassBuilder& creatable() {
    info_.create_ = [] { return Ref<Object>(make<C>()); };
    return *this;
  }
  // A global object or module: one instance per thread, reached through `instance`.
  ClassBuilder& global(Ref<C> (*instance)()) {
    info_.instance_ = [instance] { return Ref<Object>(instance()); };
    return *this;
  }

  template <class Fn>
  ClassBuilder& method(std::string_view name, Fn fn, std::initializer_list<Param> params = {}) {
    slot(name).method = accessor(fn, name, "", params);
    return *this;
  }
  template <class Fn>
  ClassBuilder& get(std::string_view name, Fn fn, std::initializer_list<Param> params = {}) {
    slot(name).get = accessor(fn, name, ".GET", params);
    return *this;
  }
  template <class Fn>
  ClassBuilder& let(std::string_view name, Fn fn, std::initializer_list<Param> params = {}) {
    slot(name).let = accessor(fn, name, ".LET", params, true);
    return *this;
  }
  template <class Fn>
  ClassBuilder& set(std::string_view name, Fn fn, std::initializer_list<Param> params = {}) {
    slot(name).set = accessor(fn, name, ".SET", params, true);
    return *this;
  }
  // A get/let pair named alike: `V X() const` and `void X(V)`.
  template <class V, class... G, class... L>
  ClassBuilder& property(std::string_view name, V (C::*getter)(G...) const, void (C::*letter)(L...),
                         std::initializer_list<Param> params = {}) {
    get(name, getter, params);
    return let(name, letter, params);
  }
  // An object-valued get/set pair: `Ref<T> X()` and `void X(Ref<T>)`.
  template <class T>
  ClassBuilder& objectProperty(std::string_view name, Ref<T> (C::*getter)(), void (C::*setter)(Ref<T>)) {
    get(name, getter);
    return set(name, setter);
  }
  // A public data member read and written directly (automation's public fields).
  template <class V>
  ClassBuilder& field(std::string_view name, V C::*member) {
    auto& m = slot(name);
    m.isField = true;
    std::string module(C::ClassName), proc(name);
    m.get.resultType = detail::typeNameOf<V>();
    m.get.call = [member](Object* self, Variant*) { return detail::toVariant(static_cast<C*>(self)->*member); };
    m.let.params.push_back(ParamInfo{"RHS", detail::typeNameOf<V>(), false, false, false, Variant::missing()});
    m.let.call = [member, module, proc](Object* self, Variant* args) {
      for (;;) {
        try {
          static_cast<C*>(self)->*member = detail::fromVariant<V>(args[0], true);
          return Variant();
        } catch (const Terminated&) {
          throw;
        } catch (...) {
          if (!detail::conversionFailed(module, proc + ".LET")) return Variant();
        }
      }
    };
    return *this;
  }
  template <class... A>
  ClassBuilder& event(std::string_view name, Event<A...> C::*member, std::initializer_list<Param> params = {});

  // One-line descriptions: of the class, or of a member or event already registered.
  ClassBuilder& describe(std::string text) {
    info_.description_ = std::move(text);
    return *this;
  }
  ClassBuilder& describe(std::string_view member, std::string text) {
    for (auto& e : info_.events_)
      if (e.name == member) e.description = text;
    if (auto it = info_.index_.find(toLowerAscii(member)); it != info_.index_.end())
      info_.members_[it->second].description = std::move(text);
    return *this;
  }

  ClassBuilder& values(std::vector<std::string> members) {
    info_.values_ = std::move(members);
    return *this;
  }
  ClassBuilder& display(std::string member) {
    info_.display_ = std::move(member);
    return *this;
  }
  ClassBuilder& collection(std::string countMember, std::string itemMember) {
    info_.count_ = std::move(countMember);
    info_.item_ = std::move(itemMember);
    return *this;
  }

  // The members that a higher layer adds to the class, registered by that layer.
  ClassBuilder& with(void (*part)(ClassBuilder&)) {
    part(*this);
    return *this;
  }

  ClassBuilder& defaultMember(std::string_view name) {
    info_.default_ = static_cast<int>(&slot(name) - info_.members_.data());
    return *this;
  }

  operator ClassInfo() {
    info_.buildLookup();
    return std::move(info_);
  }

 private:
  MemberInfo& slot(std::string_view name);
  template <class Fn>
  Accessor accessor(Fn fn, std::string_view name, std::string_view suffix, std::initializer_list<Param> params,
                    bool assigns = false) {
    using Sig = detail::Signature<Fn>;
    Accessor a = detail::Thunk<C, Fn, typename Sig::Args>::make(fn, std::string(C::ClassName),
                                                                 std::string(name) + std::string(suffix), assigns);
    nameParams(a, name, params, assigns);
    return a;
  }
  void nameParams(Accessor& a, std::string_view member, std::initializer_list<Param> params, bool assigns);

  ClassInfo info_;
};

namespace detail {
void nameParams(Accessor& a, std::string_view cls, std::string_view member, std::initializer_list<Param> params,
                bool assigns);
template <class Index>
MemberInfo& slot(std::vector<MemberInfo>& members, Index& index, std::string_view name) {
  auto key = toLowerAscii(name);
  auto it = index.find(key);
  if (it != index.end()) return members[it->second];
  index.emplace(key, members.size());
  members.emplace_back().name = std::string(name);
  return members.back();
}

template <class... A>
void callGeneric(const std::function<void(std::span<Variant>)>& h, A&... args) {
  std::array<Variant, sizeof...(A)> vs{toVariant(args)...};
  h(std::span<Variant>(vs.data(), vs.size()));
  [[maybe_unused]] size_t i = 0;
  [[maybe_unused]] auto back = [&](auto& a) {
    using T = std::remove_reference_t<decltype(a)>;
    if constexpr (!std::is_const_v<T>) {
      if constexpr (std::is_same_v<T, Variant>) a = vs[i];
      else {
        // A handler that stores an unconvertible value leaves the argument as it was.
        try {
          a = fromVariant<T>(vs[i]);
        } catch (const Error&) {
        }
      }
    }
    ++i;
  };
  (back(args), ...);
}
}  // namespace detail

template <class C>
MemberInfo& ClassBuilder<C>::slot(std::string_view name) {
  return detail::slot(info_.members_, info_.index_, name);
}

template <class C>
void ClassBuilder<C>::nameParams(Accessor& a, std::string_view member, std::initializer_list<Param> params,
                                 bool assigns) {
  detail::nameParams(a, C::ClassName, member, params, assigns);
}

template <class C>
template <class... A>
ClassBuilder<C>& ClassBuilder<C>::event(std::string_view name, Event<A...> C::*member,
                                        std::initializer_list<Param> params) {
  EventInfo e;
  e.name = std::string(name);
  (e.params.push_back(ParamInfo{"", detail::typeNameOf<A>(), false,
                                std::is_lvalue_reference_v<A> && !std::is_const_v<std::remove_reference_t<A>>,
                                false, Variant::missing()}),
   ...);
  size_t i = 0;
  for (auto& p : params)
    if (i < e.params.size()) e.params[i++].name = p.name;
  e.connect = [member](Object& source, std::function<void(std::span<Variant>)> h) {
    return (static_cast<C&>(source).*member).connect([h = std::move(h)](A... args) {
      detail::callGeneric(h, args...);
    });
  };
  info_.events_.push_back(std::move(e));
  return *this;
}

// Registers a class with the type library when the library loads.
struct ClassRegistrar {
  explicit ClassRegistrar(const ClassInfo& info) { TypeLib::add(info); }
};
struct EnumRegistrar {
  explicit EnumRegistrar(EnumInfo info) { TypeLib::addEnum(std::move(info)); }
};
#define TESSEL_REGISTER_CLASS(C) \
  static const ::tessel::ClassRegistrar tessel_registrar_##C(C::typeInfo());

// Base of every class of the model: ties the C++ class to its type-library entry and gives its
// procedures the error trap under the class's name.
template <class D>
class ObjectOf : public Object {
 public:
  const ClassInfo& classInfo() const noexcept override { return D::typeInfo(); }

 protected:
  using Call = tl::Call;
  using Get = tl::Get;
  using Let = tl::Let;
  using Set = tl::Set;

  // The trap for classes registered by hand (test fixtures); tabled classes get theirs generated.
  template <class F>
  static auto trap(std::string_view procedure, F&& body) {
    return Trap(ProcInfo{D::ClassName, procedure}, std::forward<F>(body));
  }
};

// Expands, inside a class body, the members that the class's table declares.
#define TESSEL_MEMBERS(C) TESSEL_MEMBERS_##C

// A seam for the type library's consistency test. While it is armed, every generated member
// records the arguments it received and fails at the entry of its trap with kProbeError, so a
// test can see which source a member's errors carry and which values its defaults give.
namespace MemberProbe {
inline constexpr int32_t kProbeError = 17;
extern std::atomic<bool> armed;
void arm(bool on) noexcept;
// The arguments the last member that failed for the probe received on this thread.
const std::vector<Variant>& lastArguments() noexcept;
[[noreturn]] void fail(std::vector<Variant> args);
template <class... A>
inline void check(A&... args) {
  if (armed.load(std::memory_order_relaxed)) [[unlikely]]
    fail(std::vector<Variant>{detail::toVariant(args)...});
}
}  // namespace MemberProbe

}  // namespace tessel
