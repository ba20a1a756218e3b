#include <tessel/core/TypeLib.h>

#include <tessel/core/Text.h>

#include <deque>
#include <map>
#include <mutex>
#include <shared_mutex>
#include <stdexcept>

namespace tessel {

std::string_view Object::typeName() const noexcept { return classInfo().name(); }

namespace {

std::string lowerKey(std::string_view name) { return toLowerAscii(name); }

// Filled while libraries load, which may be on any thread and while other threads look
// classes up (a library loaded later registers its classes then). Entries are never removed
// and a published ClassInfo never changes, so a pointer read under the lock stays good after it.
struct Registry {
  std::shared_mutex lock;
  std::map<std::string, const ClassInfo*> classes;  // lower-case name
  std::deque<ClassInfo> merged;                     // modules spread over several tables
  // Every list of enumerations ever published, and the current one. A registration publishes
  // a new list and keeps the old: a list handed out stays valid and unchanged. Enumerations
  // are few and registered once, so the copies cost nothing worth saving.
  std::deque<std::vector<EnumInfo>> enumLists{1};
  std::atomic<const std::vector<EnumInfo>*> enums{&enumLists.front()};
};
Registry& registry() {
  static Registry r;
  return r;
}

bool isAssignment(InvokeKind k) { return k == InvokeKind::Let || k == InvokeKind::Set; }

}  // namespace

const Accessor* MemberInfo::accessor(InvokeKind kind) const noexcept {
  // As late binding does: a method may be read like a property and a property called like a
  // method; let and set stand in for each other.
  switch (kind) {
    case InvokeKind::Method: return method ? &method : get ? &get : nullptr;
    case InvokeKind::Get: return get ? &get : method ? &method : nullptr;
    case InvokeKind::Let: return let ? &let : set ? &set : nullptr;
    case InvokeKind::Set: return set ? &set : let ? &let : nullptr;
  }
  return nullptr;
}

Ref<Object> ClassInfo::create() const {
  if (!create_) raise(429);
  return create_();
}

namespace {

// FNV-1a over the ASCII-lower-cased name: no copy, no division.
uint32_t foldedHash(std::string_view name) noexcept {
  uint32_t h = 2166136261u;
  for (char c : name) {
    h ^= static_cast<unsigned char>((c >= 'A' && c <= 'Z') ? c + 32 : c);
    h *= 16777619u;
  }
  return h;
}

}  // namespace

void ClassInfo::buildLookup() {
  size_t size = 8;
  while (size < members_.size() * 2) size *= 2;
  lookup_.assign(size, -1);
  for (size_t m = 0; m < members_.size(); ++m) {
    size_t i = foldedHash(members_[m].name) & (size - 1);
    while (lookup_[i] >= 0) i = (i + 1) & (size - 1);
    lookup_[i] = static_cast<int32_t>(m);
  }
}

const MemberInfo* ClassInfo::find(std::string_view name) const noexcept {
  if (!lookup_.empty()) {
    const size_t mask = lookup_.size() - 1;
    for (size_t i = foldedHash(name) & mask;; i = (i + 1) & mask) {
      const int32_t m = lookup_[i];
      if (m < 0) return nullptr;
      if (equalsIgnoreCase(members_[m].name, name)) return &members_[m];
    }
  }
  // While the class is being built.
  auto it = index_.find(lowerKey(name));
  return it == index_.end() ? nullptr : &members_[it->second];
}

const EventInfo* ClassInfo::findEvent(std::string_view name) const noexcept {
  for (auto& e : events_)
    if (equalsIgnoreCase(e.name, name)) return &e;
  return nullptr;
}

// A module spread over several tables (one per layer) is one class of the type library.
void mergeModule(ClassInfo& into, const ClassInfo& part) {
  if (into.description_.empty()) into.description_ = part.description_;
  for (const MemberInfo& m : part.members_) {
    MemberInfo& slot = detail::slot(into.members_, into.index_, m.name);
    slot = m;
  }
  into.buildLookup();
}

namespace TypeLib {

void add(const ClassInfo& info) {
  Registry& r = registry();
  std::unique_lock lock(r.lock);
  const ClassInfo*& entry = r.classes[lowerKey(info.name())];
  if (!entry) {
    entry = &info;
    return;
  }
  if (!entry->isGlobal() || !info.isGlobal())
    throw std::logic_error("the type library has two classes named " + info.name());
  // A new entry, complete before it is published: readers may still hold the old one.
  r.merged.push_back(*entry);
  mergeModule(r.merged.back(), info);
  entry = &r.merged.back();
}
void addEnum(EnumInfo info) {
  Registry& r = registry();
  std::unique_lock lock(r.lock);
  std::vector<EnumInfo> next = r.enumLists.back();
  next.push_back(std::move(info));
  r.enumLists.push_back(std::move(next));
  r.enums.store(&r.enumLists.back(), std::memory_order_release);
}

const ClassInfo* findClass(std::string_view name) noexcept {
  Registry& r = registry();
  const std::string key = lowerKey(name);
  std::shared_lock lock(r.lock);
  auto it = r.classes.find(key);
  return it == r.classes.end() ? nullptr : it->second;
}

std::vector<const ClassInfo*> classes() {
  Registry& r = registry();
  std::shared_lock lock(r.lock);
  std::vector<const ClassInfo*> out;
  for (auto& [k, v] : r.classes) out.push_back(v);
  return out;
}

const std::vector<EnumInfo>& enums() { return *registry().enums.load(std::memory_order_acquire); }

}  // namespace TypeLib

namespace detail {

void nameParams(Accessor& a, std::string_view cls, std::string_view member, std::initializer_list<Param> params,
                bool assigns) {
  size_t named = assigns ? a.params.size() - 1 : a.params.size();
  if (assigns && a.params.empty())
    throw std::logic_error(std::string(cls) + "." + std::string(member) + ": an assignment takes a value");
  if (params.size() != named && !(assigns && params.size() == a.params.size()))
    throw std::logic_error(std::string(cls) + "." + std::string(member) + ": " + std::to_string(params.size()) +
                           " parameter names for " + std::to_string(named) + " parameters");
  size_t i = 0;
  for (auto& p : params) {
    auto& info = a.params[i++];
    info.name = p.name;
    info.optional = p.optional;
    if (p.def) {
      info.hasDefault = true;
      info.defaultValue = *p.def;
    }
  }
  if (assigns && a.params.back().name.empty()) a.params.back().name = "RHS";
}

}  // namespace detail

namespace MemberProbe {
std::atomic<bool> armed{false};
namespace {
thread_local std::vector<Variant> last;
}
void arm(bool on) noexcept { armed.store(on, std::memory_order_relaxed); }
const std::vector<Variant>& lastArguments() noexcept { return last; }
void fail(std::vector<Variant> args) {
  last = std::move(args);
  raise(kProbeError);
}
}  // namespace MemberProbe

void RaiseCallError(int32_t number, const Object& target, std::string_view member, std::string_view what) {
  std::string text = runtimeErrorText(number);
  if (!what.empty()) text += ": " + std::string(what);
  std::string source = target.classInfo().name();
  if (!member.empty()) source += "." + std::string(member);
  throw Error(number, std::move(text), std::move(source));
}

namespace {

std::string countText(size_t given, size_t most) {
  return std::to_string(given) + (given == 1 ? " Argument" : " Argumente") + ", höchstens " + std::to_string(most);
}

const char* accessorText(InvokeKind kind) {
  switch (kind) {
    case InvokeKind::Let: return "keine Zuweisung eines Wertes";
    case InvokeKind::Set: return "keine Zuweisung eines Objekts";
    case InvokeKind::Get: return "kein Lesen";
    default: return "kein Aufruf";
  }
}

}  // namespace

Variant Invoke(const MemberInfo& member, Object* target, InvokeKind kind, std::span<Variant> args,
               std::span<NamedArg> named) {
  if (!target) raise(rt::ObjectNotSet);
  const Accessor* acc = member.accessor(kind);
  if (!acc) RaiseCallError(rt::NoSuchMember, *target, member.name, accessorText(kind));
  const bool assigns = isAssignment(kind);
  const size_t n = acc->params.size();

  // The common case: every argument given in place and none omitted.
  if (named.empty() && args.size() == n) {
    bool complete = true;
    for (auto& a : args)
      if (a.isMissing()) { complete = false; break; }
    if (complete) return acc->call(target, args.data());
  }

  if (assigns && args.empty()) RaiseCallError(rt::WrongArgumentCount, *target, member.name, "kein Wert zum Zuweisen");
  const size_t indexCount = assigns ? n - 1 : n;
  const size_t positional = assigns ? args.size() - 1 : args.size();
  if (positional > indexCount)
    RaiseCallError(rt::WrongArgumentCount, *target, member.name, countText(positional, indexCount));

  std::vector<Variant> full(n, Variant::missing());
  std::vector<Variant*> origin(n, nullptr);
  std::vector<bool> given(n, false);
  for (size_t i = 0; i < positional; ++i) {
    full[i] = args[i];
    origin[i] = &args[i];
    given[i] = true;
  }
  for (auto& na : named) {
    size_t k = 0;
    while (k < indexCount && !equalsIgnoreCase(acc->params[k].name, na.name)) ++k;
    if (k == indexCount || given[k]) RaiseCallError(rt::NamedArgumentNotFound, *target, member.name, na.name);
    full[k] = na.value;
    origin[k] = &na.value;
    given[k] = true;
  }
  if (assigns) full[n - 1] = args.back();
  for (size_t k = 0; k < indexCount; ++k) {
    if (given[k] && !full[k].isMissing()) continue;
    const ParamInfo& p = acc->params[k];
    if (p.hasDefault) full[k] = p.defaultValue;
    else if (!p.optional) RaiseCallError(rt::ArgumentNotOptional, *target, member.name, p.name);
  }
  Variant result = acc->call(target, full.data());
  for (size_t k = 0; k < indexCount; ++k)
    if (origin[k] && acc->params[k].byRef) *origin[k] = full[k];
  return result;
}

Variant Invoke(Object* target, std::string_view name, InvokeKind kind, std::span<Variant> args,
               std::span<NamedArg> named) {
  if (!target) raise(rt::ObjectNotSet);
  const ClassInfo& ci = target->classInfo();
  const MemberInfo* m = name.empty() ? ci.defaultMember() : ci.find(name);
  if (!m) RaiseCallError(rt::NoSuchMember, *target, name, name.empty() ? "kein Standardmember" : name);
  return Invoke(*m, target, kind, args, named);
}

Variant Invoke(const Variant& target, std::string_view name, InvokeKind kind, std::span<Variant> args,
               std::span<NamedArg> named) {
  if (!target.isObject()) raise(424);
  return Invoke(target.obj(), name, kind, args, named);
}

Variant Invoke(Object* target, std::string_view name, InvokeKind kind, std::initializer_list<Variant> args) {
  std::vector<Variant> v(args);
  return Invoke(target, name, kind, std::span<Variant>(v));
}

Connection ConnectEvent(Object& source, std::string_view name, std::function<void(std::span<Variant>)> handler) {
  const EventInfo* e = source.classInfo().findEvent(name);
  if (!e) RaiseCallError(rt::NoSuchMember, source, name, "kein Ereignis " + std::string(name));
  return e->connect(source, std::move(handler));
}

}  // namespace tessel
