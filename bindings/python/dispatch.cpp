// tessel.Object and its bound members: attribute access, assignment and calls by member name,
// all through the type library.
//
// The hot path is `obj.X`: tp_getattro finds the member in a per-class dict keyed by the Python
// string (so each spelling is resolved once), and a property without parameters is read with
// the already resolved MemberInfo, without building an argument list.
#include "host.h"

#include <tessel/core/Text.h>

#include <structmember.h>

#include <cstring>
#include <memory>
#include <new>
#include <unordered_map>
#include <vector>

namespace tessel::python {

PyTypeObject* gObjectType = nullptr;

namespace {

PyTypeObject* gBoundType = nullptr;

// ---- the per-class member cache -------------------------------------------------------------

constexpr long kConnect = -1;    // automation's own `connect`
constexpr long kNotMember = -2;  // Python's own attribute lookup

struct ClassCache {
  const ClassInfo* ci = nullptr;
  PyObject* names = nullptr;  // str -> int code; every spelling met so far
  // Per member: read directly on attribute access (a property without parameters) or handed
  // out as a bound member (methods and properties with parameters).
  std::vector<bool> direct;
};

std::unordered_map<const ClassInfo*, std::unique_ptr<ClassCache>> gCaches;
ClassCache* gLastCache = nullptr;

ClassCache* cacheFor(const ClassInfo& ci) {
  if (gLastCache && gLastCache->ci == &ci) return gLastCache;
  auto& slot = gCaches[&ci];
  if (!slot) {
    auto c = std::make_unique<ClassCache>();
    c->ci = &ci;
    c->names = PyDict_New();
    if (!c->names) return nullptr;
    for (auto& m : ci.members()) {
      // A member with only a let or set is read through Invoke too, which reports 438.
      bool direct = m.get ? m.get.params.empty() : !m.method;
      c->direct.push_back(direct);
    }
    slot = std::move(c);
  }
  gLastCache = slot.get();
  return gLastCache;
}

// The code of an attribute name: a member index, kConnect or kNotMember; -3 on a Python error.
long lookup(ClassCache& c, PyObject* name) {
  if (PyObject* hit = PyDict_GetItemWithError(c.names, name)) return PyLong_AsLong(hit);
  if (PyErr_Occurred()) return -3;
  Py_ssize_t len = 0;
  const char* s = PyUnicode_AsUTF8AndSize(name, &len);
  if (!s) return -3;
  long code = kNotMember;
  std::string_view n(s, static_cast<size_t>(len));
  if (n.size() >= 2 && n[0] == '_' && n[1] == '_') code = kNotMember;
  else if (n == "connect") code = kConnect;
  else if (const MemberInfo* m = c.ci->find(n)) code = static_cast<long>(m - c.ci->members().data());
  // Names that are no member are remembered too, but not without bound (getattr with made-up names).
  if (PyUnicode_CheckExact(name) && (code != kNotMember || PyDict_GET_SIZE(c.names) < 4096)) {
    PyObject* v = PyLong_FromLong(code);
    if (!v || PyDict_SetItem(c.names, name, v) < 0) {
      Py_XDECREF(v);
      return -3;
    }
    Py_DECREF(v);
  }
  return code;
}

inline Object* nativeFast(PyObject* self) {
  auto* inst = reinterpret_cast<py::detail::instance*>(self);
  return static_cast<Object*>(inst->simple_value_holder[0]);
}

PyObject* notBound() {
  PyErr_SetString(PyExc_TypeError, "this tessel.Object is not bound to a native object");
  return nullptr;
}

// ---- bound members --------------------------------------------------------------------------

enum class BoundMode { Member, Connector };

struct BoundObject {
  PyObject_HEAD
  vectorcallfunc vectorcall;
  PyObject* self;  // the tessel.Object
  const MemberInfo* member;
  BoundMode mode;
};

PyObject* connectorCall(BoundObject* b, PyObject* const* args, size_t nargs, PyObject* kwnames);

PyObject* boundVectorcall(PyObject* callable, PyObject* const* args, size_t nargsf, PyObject* kwnames) {
  auto* b = reinterpret_cast<BoundObject*>(callable);
  const size_t nargs = PyVectorcall_NARGS(nargsf);
  if (b->mode == BoundMode::Connector) return connectorCall(b, args, nargs, kwnames);
  return callMember(nativeFast(b->self), b->member, InvokeKind::Method, args, nargs, kwnames, nullptr);
}

PyObject* newBound(PyObject* self, const MemberInfo* m, BoundMode mode) {
  auto* b = PyObject_GC_New(BoundObject, gBoundType);
  if (!b) return nullptr;
  b->vectorcall = boundVectorcall;
  Py_INCREF(self);
  b->self = self;
  b->member = m;
  b->mode = mode;
  PyObject_GC_Track(b);
  return reinterpret_cast<PyObject*>(b);
}

int boundTraverse(PyObject* o, visitproc visit, void* arg) {
  Py_VISIT(Py_TYPE(o));
  Py_VISIT(reinterpret_cast<BoundObject*>(o)->self);
  return 0;
}
int boundClear(PyObject* o) {
  Py_CLEAR(reinterpret_cast<BoundObject*>(o)->self);
  return 0;
}
void boundDealloc(PyObject* o) {
  PyTypeObject* type = Py_TYPE(o);
  PyObject_GC_UnTrack(o);
  boundClear(o);
  PyObject_GC_Del(o);
  Py_DECREF(type);
}

// Subscripts are the parameters of a property: p[1] and p[1, 2].
void subscriptArgs(PyObject* key, PyObject* const*& args, size_t& n) {
  if (PyTuple_Check(key)) {
    args = &PyTuple_GET_ITEM(key, 0);
    n = static_cast<size_t>(PyTuple_GET_SIZE(key));
  } else {
    args = nullptr;
    n = 1;
  }
}

Object* boundTarget(BoundObject* b) {
  Object* o = b->self ? nativeFast(b->self) : nullptr;
  if (!o) notBound();
  return o;
}

PyObject* boundGetItem(PyObject* o, PyObject* key) {
  auto* b = reinterpret_cast<BoundObject*>(o);
  if (b->mode != BoundMode::Member) {
    PyErr_SetString(PyExc_TypeError, "connect is not subscriptable");
    return nullptr;
  }
  Object* target = boundTarget(b);
  if (!target) return nullptr;
  PyObject* const* args;
  size_t n;
  subscriptArgs(key, args, n);
  return callMember(target, b->member, InvokeKind::Get, args ? args : &key, n, nullptr, nullptr);
}

bool isObjectValue(PyObject* v) { return v == Py_None || nativeOf(v) != nullptr; }

int boundSetItem(PyObject* o, PyObject* key, PyObject* value) {
  auto* b = reinterpret_cast<BoundObject*>(o);
  if (b->mode != BoundMode::Member || !value) {
    PyErr_SetString(PyExc_TypeError, value ? "connect does not support item assignment"
                                           : "members of tessel objects cannot be deleted");
    return -1;
  }
  Object* target = boundTarget(b);
  if (!target) return -1;
  PyObject* const* args;
  size_t n;
  subscriptArgs(key, args, n);
  InvokeKind kind = isObjectValue(value) ? InvokeKind::Set : InvokeKind::Let;
  PyObject* r = callMember(target, b->member, kind, args ? args : &key, n, nullptr, value);
  if (!r) return -1;
  Py_DECREF(r);
  return 0;
}

const ClassInfo* boundClass(BoundObject* b) {
  Object* o = b->self ? nativeFast(b->self) : nullptr;
  return o ? &o->classInfo() : nullptr;
}

PyObject* boundName(PyObject* o, void*) {
  auto* b = reinterpret_cast<BoundObject*>(o);
  return b->mode == BoundMode::Connector ? PyUnicode_FromString("connect") : fromUtf8(b->member->name);
}

PyObject* boundQualName(PyObject* o, void*) {
  auto* b = reinterpret_cast<BoundObject*>(o);
  const ClassInfo* ci = boundClass(b);
  std::string s = ci ? ci->name() : std::string("Object");
  s += ".";
  s += b->mode == BoundMode::Connector ? std::string("connect") : b->member->name;
  return fromUtf8(s);
}

std::string describeEvents(const ClassInfo& ci) {
  std::string s =
      "connect(event, callback) -> tessel.Connection\n\nCalls callback with the event's arguments whenever the "
      "object raises the event; ByRef arguments arrive as tessel.ByRef cells. Keep the returned connection: "
      "the object holds its listeners weakly, and dropping the connection disconnects.\n\nEvents of " +
      ci.name() + ":";
  if (ci.events().empty()) s += " none";
  for (auto& e : ci.events()) {
    s += "\n  " + e.name + "(";
    for (size_t i = 0; i < e.params.size(); ++i) {
      if (i) s += ", ";
      if (e.params[i].byRef) s += "ByRef ";
      s += e.params[i].name.empty() ? "arg" + std::to_string(i + 1) : e.params[i].name;
      s += " As " + e.params[i].typeName;
    }
    s += ")";
  }
  return s;
}

PyObject* boundDoc(PyObject* o, void*) {
  auto* b = reinterpret_cast<BoundObject*>(o);
  const ClassInfo* ci = boundClass(b);
  if (!ci) Py_RETURN_NONE;
  if (b->mode == BoundMode::Connector) return fromUtf8(describeEvents(*ci));
  return fromUtf8(describeMember(*ci, *b->member));
}

// inspect.signature() of a bound member, for help(): parameter names and defaults as the
// type library registers them. None when the names do not make a Python signature.
PyObject* boundSignature(PyObject* o, void*) {
  auto* b = reinterpret_cast<BoundObject*>(o);
  if (b->mode != BoundMode::Member) Py_RETURN_NONE;
  const Accessor* acc = b->member->method ? &b->member->method : b->member->get ? &b->member->get : nullptr;
  if (!acc) Py_RETURN_NONE;
  try {
    py::module_ inspect = py::module_::import("inspect");
    py::object Parameter = inspect.attr("Parameter");
    py::object kind = Parameter.attr("POSITIONAL_OR_KEYWORD");
    py::list params;
    for (size_t i = 0; i < acc->params.size(); ++i) {
      const ParamInfo& p = acc->params[i];
      py::str name(p.name.empty() ? "arg" + std::to_string(i + 1) : p.name);
      if (p.optional || p.hasDefault) {
        py::object def = steal(fromVariant(p.hasDefault ? p.defaultValue : Variant::missing()));
        params.append(Parameter(name, kind, py::arg("default") = def));
      } else {
        params.append(Parameter(name, kind));
      }
    }
    return inspect.attr("Signature")(params).release().ptr();
  } catch (py::error_already_set& e) {
    if (e.matches(PyExc_ValueError) || e.matches(PyExc_TypeError)) Py_RETURN_NONE;
    e.restore();
    return nullptr;
  }
}

PyObject* boundRepr(PyObject* o) {
  auto* b = reinterpret_cast<BoundObject*>(o);
  PyObject* q = boundQualName(o, nullptr);
  if (!q) return nullptr;
  PyObject* r = PyUnicode_FromFormat("<tessel %s %U>", b->mode == BoundMode::Connector ? "event connector" : "member",
                                     q);
  Py_DECREF(q);
  return r;
}

// A descriptor's __get__, so that help() and inspect treat bound members as routines.
PyObject* boundDescrGet(PyObject* self, PyObject*, PyObject*) {
  Py_INCREF(self);
  return self;
}

PyObject* boundSelf(PyObject* o, void*) {
  PyObject* s = reinterpret_cast<BoundObject*>(o)->self;
  if (!s) Py_RETURN_NONE;
  Py_INCREF(s);
  return s;
}

PyGetSetDef boundGetSet[] = {
    {"__name__", boundName, nullptr, nullptr, nullptr},
    {"__qualname__", boundQualName, nullptr, nullptr, nullptr},
    {"__doc__", boundDoc, nullptr, nullptr, nullptr},
    {"__signature__", boundSignature, nullptr, nullptr, nullptr},
    {"__tessel_object__", boundSelf, nullptr, nullptr, nullptr},
    {nullptr, nullptr, nullptr, nullptr, nullptr},
};
PyMemberDef boundMembers[] = {
    {"__vectorcalloffset__", T_PYSSIZET, offsetof(BoundObject, vectorcall), READONLY, nullptr},
    {nullptr, 0, 0, 0, nullptr},
};
PyType_Slot boundSlots[] = {
    {Py_tp_dealloc, reinterpret_cast<void*>(boundDealloc)},
    {Py_tp_traverse, reinterpret_cast<void*>(boundTraverse)},
    {Py_tp_clear, reinterpret_cast<void*>(boundClear)},
    {Py_tp_call, reinterpret_cast<void*>(PyVectorcall_Call)},
    {Py_tp_repr, reinterpret_cast<void*>(boundRepr)},
    {Py_tp_descr_get, reinterpret_cast<void*>(boundDescrGet)},
    {Py_mp_subscript, reinterpret_cast<void*>(boundGetItem)},
    {Py_mp_ass_subscript, reinterpret_cast<void*>(boundSetItem)},
    {Py_tp_getset, boundGetSet},
    {Py_tp_members, boundMembers},
    {0, nullptr},
};
PyType_Spec boundSpec = {"tessel.Member", sizeof(BoundObject), 0,
                         Py_TPFLAGS_DEFAULT | Py_TPFLAGS_HAVE_GC | Py_TPFLAGS_HAVE_VECTORCALL, boundSlots};

// ---- the call path --------------------------------------------------------------------------

// Exactly n Variants, on the stack when few.
class ArgVec {
 public:
  explicit ArgVec(size_t n) : n_(n) {
    data_ = n <= kInline ? reinterpret_cast<Variant*>(inline_) : static_cast<Variant*>(::operator new(n * sizeof(Variant)));
    for (size_t i = 0; i < n; ++i) new (data_ + i) Variant();
  }
  ~ArgVec() {
    for (size_t i = 0; i < n_; ++i) data_[i].~Variant();
    if (n_ > kInline) ::operator delete(data_);
  }
  ArgVec(const ArgVec&) = delete;
  ArgVec& operator=(const ArgVec&) = delete;
  Variant* data() { return data_; }
  Variant& operator[](size_t i) { return data_[i]; }

 private:
  static constexpr size_t kInline = 6;
  size_t n_;
  Variant* data_;
  alignas(Variant) unsigned char inline_[kInline * sizeof(Variant)];
};

// After the call: a cell passed for a ByRef parameter takes what the member left there.
bool writeBack(PyObject* cell, const Variant& v) {
  PyObject* value = fromVariant(v);
  if (!value) return false;
  Py_XSETREF(reinterpret_cast<ByRefObject*>(cell)->value, value);
  return true;
}

PyObject* connectorCall(BoundObject* b, PyObject* const* args, size_t nargs, PyObject* kwnames) {
  Object* target = boundTarget(b);
  if (!target) return nullptr;
  const ClassInfo& ci = target->classInfo();
  const bool eventForm = nargs == 2 && !kwnames && PyUnicode_Check(args[0]);
  if (eventForm) {
    Py_ssize_t len = 0;
    const char* s = PyUnicode_AsUTF8AndSize(args[0], &len);
    if (!s) return nullptr;
    const MemberInfo* member = ci.find("connect");
    // A class with a member of the same name keeps it for everything but connect(event, callback).
    if (!member || ci.findEvent(std::string_view(s, static_cast<size_t>(len))))
      return connectEvent(b->self, args[0], args[1]);
  }
  if (const MemberInfo* member = ci.find("connect"))
    return callMember(target, member, InvokeKind::Method, args, nargs, kwnames, nullptr);
  PyErr_SetString(PyExc_TypeError, "connect() takes an event name and a callback");
  return nullptr;
}

// ---- tessel.Object slots ---------------------------------------------------------------------

PyObject* noMember(PyObject* self, PyObject* name, const ClassInfo& ci) {
  PyErr_Format(PyExc_AttributeError, "'%s' object has no member '%U'", ci.name().c_str(), name);
  return nullptr;
}

PyObject* objectGetAttr(PyObject* self, PyObject* name) {
  Object* obj = nativeFast(self);
  if (!obj || !PyUnicode_Check(name)) return PyObject_GenericGetAttr(self, name);
  const ClassInfo& ci = obj->classInfo();
  ClassCache* c = cacheFor(ci);
  if (!c) return nullptr;
  const long code = lookup(*c, name);
  if (code >= 0) {
    const MemberInfo& m = ci.members()[static_cast<size_t>(code)];
    if (!c->direct[static_cast<size_t>(code)]) return newBound(self, &m, BoundMode::Member);
    return guarded([&]() -> PyObject* {
      return fromVariant(Invoke(m, obj, InvokeKind::Get, std::span<Variant>()));
    });
  }
  if (code == kConnect) return newBound(self, nullptr, BoundMode::Connector);
  if (code == -3) return nullptr;
  PyObject* r = PyObject_GenericGetAttr(self, name);
  if (!r && PyErr_ExceptionMatches(PyExc_AttributeError)) {
    PyErr_Clear();
    return noMember(self, name, ci);
  }
  return r;
}

int objectSetAttr(PyObject* self, PyObject* name, PyObject* value) {
  Object* obj = nativeFast(self);
  if (!obj || !PyUnicode_Check(name)) return PyObject_GenericSetAttr(self, name, value);
  const ClassInfo& ci = obj->classInfo();
  ClassCache* c = cacheFor(ci);
  if (!c) return -1;
  const long code = lookup(*c, name);
  if (code == -3) return -1;
  if (code < 0) {
    if (PyObject_GenericSetAttr(self, name, value) == 0) return 0;
    if (PyErr_ExceptionMatches(PyExc_AttributeError)) {
      PyErr_Clear();
      noMember(self, name, ci);
    }
    return -1;
  }
  if (!value) {
    PyErr_SetString(PyExc_TypeError, "members of tessel objects cannot be deleted");
    return -1;
  }
  const MemberInfo& m = ci.members()[static_cast<size_t>(code)];
  // Objects (and Nothing) are set, everything else is let; each falls back on the other.
  const InvokeKind kind = isObjectValue(value) ? InvokeKind::Set : InvokeKind::Let;
  PyObject* r = guarded([&]() -> PyObject* {
    Variant v;
    if (!toVariant(value, v)) return nullptr;
    Invoke(m, obj, kind, std::span<Variant>(&v, 1));
    Py_RETURN_NONE;
  });
  if (!r) return -1;
  Py_DECREF(r);
  return 0;
}

// obj(args) calls the default member.
PyObject* objectCall(PyObject* self, PyObject* args, PyObject* kwargs) {
  Object* obj = nativeFast(self);
  if (!obj) return notBound();
  return callMemberDict(obj, nullptr, InvokeKind::Method, &PyTuple_GET_ITEM(args, 0),
                        static_cast<size_t>(PyTuple_GET_SIZE(args)), kwargs, nullptr);
}

PyObject* objectRepr(PyObject* self) {
  Object* obj = nativeFast(self);
  if (!obj) return PyUnicode_FromFormat("<tessel.Object (unbound) at %p>", self);
  return PyUnicode_FromFormat("<tessel.%s object at %p>", obj->classInfo().name().c_str(), self);
}

}  // namespace

Object* nativeOf(PyObject* o) {
  if (Py_TYPE(o) != gObjectType) return nullptr;
  return nativeFast(o);
}

PyObject* wrapObject(Object* o) {
  if (!o) Py_RETURN_NONE;
  // The holder caster finds the Python object that already stands for `o`, or makes one that
  // holds a Ref to it.
  Ref<Object> ref(o);
  try {
    return py::detail::make_caster<Ref<Object>>::cast(ref, py::return_value_policy::take_ownership, py::handle())
        .ptr();
  } catch (py::error_already_set& e) {
    e.restore();
    return nullptr;
  } catch (const std::bad_alloc&) {
    return PyErr_NoMemory();
  }
}

PyObject* wrapObject(const Ref<Object>& o) { return wrapObject(o.get()); }

PyObject* callMember(Object* target, const MemberInfo* member, InvokeKind kind, PyObject* const* args, size_t nargs,
                     PyObject* kwnames, PyObject* assigned) {
  return guarded([&]() -> PyObject* {
    const size_t nkw = kwnames ? static_cast<size_t>(PyTuple_GET_SIZE(kwnames)) : 0;
    const size_t total = nargs + (assigned ? 1 : 0);
    ArgVec argv(total);
    bool cells = false;
    for (size_t i = 0; i < nargs; ++i) {
      if (!toVariant(args[i], argv[i])) return nullptr;
      cells = cells || isByRef(args[i]);
    }
    if (assigned && !toVariant(assigned, argv[nargs])) return nullptr;
    std::vector<NamedArg> named;
    if (nkw) {
      named.resize(nkw);
      for (size_t k = 0; k < nkw; ++k) {
        Py_ssize_t len = 0;
        const char* s = PyUnicode_AsUTF8AndSize(PyTuple_GET_ITEM(kwnames, k), &len);
        if (!s) return nullptr;
        named[k].name.assign(s, static_cast<size_t>(len));
        if (!toVariant(args[nargs + k], named[k].value)) return nullptr;
        cells = cells || isByRef(args[nargs + k]);
      }
    }
    if (!member) {
      member = target->classInfo().defaultMember();
      if (!member) raise(rt::NoSuchMember);
    }
    Variant result = Invoke(*member, target, kind, std::span<Variant>(argv.data(), total),
                            std::span<NamedArg>(named.data(), named.size()));
    if (cells) {
      const Accessor* acc = member->accessor(kind);
      const size_t indexCount = acc->params.size() - ((kind == InvokeKind::Let || kind == InvokeKind::Set) ? 1 : 0);
      for (size_t i = 0; i < nargs && i < indexCount; ++i)
        if (acc->params[i].byRef && isByRef(args[i]) && !writeBack(args[i], argv[i])) return nullptr;
      for (size_t k = 0; k < nkw; ++k) {
        PyObject* a = args[nargs + k];
        if (!isByRef(a)) continue;
        for (size_t i = 0; i < indexCount; ++i)
          if (acc->params[i].byRef && equalsIgnoreCase(acc->params[i].name, named[k].name)) {
            if (!writeBack(a, named[k].value)) return nullptr;
            break;
          }
      }
    }
    return fromVariant(result);
  });
}

PyObject* callMemberDict(Object* target, const MemberInfo* member, InvokeKind kind, PyObject* const* args,
                         size_t nargs, PyObject* kwargs, PyObject* assigned) {
  if (!kwargs || PyDict_GET_SIZE(kwargs) == 0)
    return callMember(target, member, kind, args, nargs, nullptr, assigned);
  const Py_ssize_t nkw = PyDict_GET_SIZE(kwargs);
  std::vector<PyObject*> all(args, args + nargs);
  PyObject* names = PyTuple_New(nkw);
  if (!names) return nullptr;
  Py_ssize_t pos = 0, k = 0;
  PyObject *key, *value;
  while (PyDict_Next(kwargs, &pos, &key, &value)) {
    Py_INCREF(key);
    PyTuple_SET_ITEM(names, k++, key);
    all.push_back(value);
  }
  PyObject* r = callMember(target, member, kind, all.data(), nargs, names, assigned);
  Py_DECREF(names);
  return r;
}

std::string describeMember(const ClassInfo& ci, const MemberInfo& m) {
  auto value = [](const Variant& v) {
    PyObject* o = fromVariant(v);
    PyObject* r = o ? PyObject_Repr(o) : nullptr;
    Py_XDECREF(o);
    std::string s = "?";
    if (r) {
      if (const char* u = PyUnicode_AsUTF8(r)) s = u;
      Py_DECREF(r);
    }
    PyErr_Clear();
    return s;
  };
  auto params = [&](const Accessor& a, size_t count) {
    std::string s;
    for (size_t i = 0; i < count; ++i) {
      const ParamInfo& p = a.params[i];
      if (i) s += ", ";
      const bool opt = p.optional || p.hasDefault;
      if (opt) s += "[";
      if (p.byRef) s += "ByRef ";
      s += p.name.empty() ? "arg" + std::to_string(i + 1) : p.name;
      s += " As " + p.typeName;
      if (p.hasDefault) s += " = " + value(p.defaultValue);
      if (opt) s += "]";
    }
    return s;
  };
  std::string s;
  if (m.method) {
    s += m.name + "(" + params(m.method, m.method.params.size()) + ")";
    if (!m.method.resultType.empty()) s += " As " + m.method.resultType;
    s += "\n";
  }
  if (m.isProperty()) {
    // One line for the property: its parameters and type, and which accessors it has.
    const Accessor* assign = m.let ? &m.let : m.set ? &m.set : nullptr;
    std::string list, type, kinds;
    if (m.get) list = params(m.get, m.get.params.size()), type = m.get.resultType;
    else if (assign && !assign->params.empty()) list = params(*assign, assign->params.size() - 1);
    if (type.empty() && assign && !assign->params.empty()) type = assign->params.back().typeName;
    for (auto [a, k] : {std::pair{&m.get, "get"}, {&m.let, "let"}, {&m.set, "set"}})
      if (*a) kinds += std::string(kinds.empty() ? "" : ", ") + k;
    s += m.name + (list.empty() ? "" : "(" + list + ")") + " As " + type + "  [" + kinds + "]\n";
  }
  s += "\nMember of " + ci.name() + ".";
  if (m.get && !m.get.params.empty())
    s += " Read it with " + m.name + "(...) or " + m.name + "[...]" +
         ((m.let || m.set) ? ", assign with " + m.name + "[...] = value." : ".");
  if (ci.defaultMember() == &m) s += " The default member: calling the object calls it.";
  return s;
}

void initObjectTypes(py::module_& m) {
  PyObject* bound = PyType_FromSpec(&boundSpec);
  if (!bound) throw py::error_already_set();
  gBoundType = reinterpret_cast<PyTypeObject*>(bound);
  m.attr("Member") = py::reinterpret_steal<py::object>(bound);
  Py_INCREF(bound);  // also held by gBoundType for the life of the process

  py::class_<Object, Ref<Object>> cls(
      m, "Object", py::is_final(),
      py::custom_type_setup([](PyHeapTypeObject* heap) {
        PyTypeObject* t = &heap->ht_type;
        t->tp_getattro = objectGetAttr;
        t->tp_setattro = objectSetAttr;
        t->tp_call = objectCall;
        t->tp_repr = objectRepr;
      }),
      "An object of Tessel. Its members are reached by name through the type library:\n"
      "obj.NAME reads a property (or gives a bound method), obj.NAME = value assigns one,\n"
      "obj.NAME(args) calls, obj.NAME[args] reads or assigns a property with parameters,\n"
      "obj(args) calls the default member, obj.connect(event, callback) listens to an event.");
  gObjectType = reinterpret_cast<PyTypeObject*>(cls.ptr());
  cls.def("__dir__", [](py::handle self) {
    py::list names;
    Object* o = nativeOf(self.ptr());
    if (!o) return names;
    for (auto& mem : o->classInfo().members()) names.append(steal(fromUtf8(mem.name)));
    if (!o->classInfo().events().empty()) names.append("connect");
    return names;
  });
  cls.def_property_readonly("__tessel_class__", [](py::handle self) -> py::object {
    Object* o = nativeOf(self.ptr());
    if (!o) return py::none();
    return py::str(o->classInfo().name());
  }, "The name of the object's class in the type library.");
}

}  // namespace tessel::python
