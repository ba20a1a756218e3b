// Members: bound members (tessel.Member), the class-level descriptors (tessel.Member without an
// object, tessel.Property), the late-bound call path, and the descriptions help() shows.
#include "host.h"

#include <tessel/core/Text.h>

#include <structmember.h>

#include <new>
#include <vector>

namespace tessel::python {

PyTypeObject* gBoundType = nullptr;
PyTypeObject* gPropertyType = nullptr;

namespace {

// ---- bound members --------------------------------------------------------------------------

struct BoundObject {
  PyObject_HEAD
  vectorcallfunc vectorcall;
  PyObject* self;  // the tessel object; null for the class's own descriptor
  const ClassInfo* ci;
  const MemberInfo* member;  // null for the connector
  BoundMode mode;
};

BoundObject* asBound(PyObject* o) { return reinterpret_cast<BoundObject*>(o); }

bool isObjectValue(PyObject* v) { return v == Py_None || nativeOf(v) != nullptr; }

// The object a class-level member is called or read on: an object of exactly that class.
Object* objectOfClass(const ClassInfo& ci, PyObject* o, const char* what) {
  Object* obj = nativeOf(o);
  if (obj && &obj->classInfo() == &ci) return obj;
  PyErr_Format(PyExc_TypeError, "%s needs a %s object, not '%.200s'", what, ci.name().c_str(), Py_TYPE(o)->tp_name);
  return nullptr;
}

PyObject* connectorCall(PyObject* self, const ClassInfo& ci, PyObject* const* args, size_t nargs, PyObject* kwnames);

PyObject* boundVectorcall(PyObject* callable, PyObject* const* args, size_t nargsf, PyObject* kwnames) {
  auto* b = asBound(callable);
  size_t nargs = PyVectorcall_NARGS(nargsf);
  PyObject* self = b->self;
  if (!self) {
    // The class's own member: the object comes first, as with a method of a Python class.
    const std::string name = b->ci->name() + "." + (b->member ? b->member->name : std::string("connect"));
    if (nargs == 0) {
      PyErr_Format(PyExc_TypeError, "%s() needs the object as its first argument", name.c_str());
      return nullptr;
    }
    if (!objectOfClass(*b->ci, args[0], name.c_str())) return nullptr;
    self = args[0];
    ++args;
    --nargs;
  }
  if (b->mode == BoundMode::Connector) return connectorCall(self, *b->ci, args, nargs, kwnames);
  return callMember(asInstance(self)->native, b->member, InvokeKind::Method, args, nargs, kwnames, nullptr);
}

int boundTraverse(PyObject* o, visitproc visit, void* arg) {
  Py_VISIT(Py_TYPE(o));
  Py_VISIT(asBound(o)->self);
  return 0;
}
int boundClear(PyObject* o) {
  Py_CLEAR(asBound(o)->self);
  return 0;
}
void boundDealloc(PyObject* o) {
  PyTypeObject* type = Py_TYPE(o);
  PyObject_GC_UnTrack(o);
  boundClear(o);
  PyObject_GC_Del(o);
  Py_DECREF(type);
}

// A member is no truth value: `if draw.READY:` would always hold. Call it.
int boundBool(PyObject* o) {
  auto* b = asBound(o);
  if (!b->self) return 1;
  const std::string name = b->member ? b->member->name : std::string("connect");
  PyErr_Format(PyExc_TypeError, "%s.%s is a member, not a value: call it, %s()", b->ci->name().c_str(), name.c_str(),
               name.c_str());
  return -1;
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

Object* subscriptTarget(BoundObject* b, const char* what) {
  if (b->mode != BoundMode::Member) {
    PyErr_Format(PyExc_TypeError, "connect %s", what);
    return nullptr;
  }
  if (!b->self) {
    PyErr_Format(PyExc_TypeError, "%s.%s: subscripts need an object: obj.%s[...]", b->ci->name().c_str(),
                 b->member->name.c_str(), b->member->name.c_str());
    return nullptr;
  }
  return asInstance(b->self)->native;
}

PyObject* boundGetItem(PyObject* o, PyObject* key) {
  auto* b = asBound(o);
  Object* target = subscriptTarget(b, "is not subscriptable");
  if (!target) return nullptr;
  PyObject* const* args;
  size_t n;
  subscriptArgs(key, args, n);
  return callMember(target, b->member, InvokeKind::Get, args ? args : &key, n, nullptr, nullptr);
}

int boundSetItem(PyObject* o, PyObject* key, PyObject* value) {
  auto* b = asBound(o);
  if (!value) {
    PyErr_SetString(PyExc_TypeError, "members of tessel objects cannot be deleted");
    return -1;
  }
  Object* target = subscriptTarget(b, "does not support item assignment");
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

PyObject* boundName(PyObject* o, void*) {
  auto* b = asBound(o);
  return b->member ? fromUtf8(b->member->name) : PyUnicode_FromString("connect");
}

PyObject* boundQualName(PyObject* o, void*) {
  auto* b = asBound(o);
  return fromUtf8(b->ci->name() + "." + (b->member ? b->member->name : std::string("connect")));
}

PyObject* boundDoc(PyObject* o, void*) {
  auto* b = asBound(o);
  return fromUtf8(b->member ? describeMember(*b->ci, *b->member) : describeEvents(*b->ci));
}

// inspect.signature() of a member, for help(): parameter names and defaults as the type
// library registers them. None when the names do not make a Python signature.
PyObject* boundSignature(PyObject* o, void*) {
  auto* b = asBound(o);
  try {
    py::module_ inspect = py::module_::import("inspect");
    py::object Parameter = inspect.attr("Parameter");
    py::object kind = Parameter.attr("POSITIONAL_OR_KEYWORD");
    py::list params;
    if (!b->member) {
      params.append(Parameter("event", kind));
      params.append(Parameter("callback", kind));
      return inspect.attr("Signature")(params).release().ptr();
    }
    const MemberInfo& m = *b->member;
    const Accessor* acc = m.method ? &m.method : m.get ? &m.get : nullptr;
    if (!acc) Py_RETURN_NONE;
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
  auto* b = asBound(o);
  PyObject* q = boundQualName(o, nullptr);
  if (!q) return nullptr;
  PyObject* r = PyUnicode_FromFormat("<tessel %s %U>", b->member ? "member" : "event connector", q);
  Py_DECREF(q);
  return r;
}

// A descriptor's __get__: the class's own member binds to an object read through the class's
// dict; otherwise the member itself, so that help() and inspect treat members as routines.
PyObject* boundDescrGet(PyObject* o, PyObject* obj, PyObject*) {
  auto* b = asBound(o);
  if (!b->self && obj && obj != Py_None) {
    if (!objectOfClass(*b->ci, obj, "binding a member")) return nullptr;
    return newBound(obj, *b->ci, b->member, b->mode);
  }
  Py_INCREF(o);
  return o;
}

PyObject* boundSelf(PyObject* o, void*) {
  PyObject* s = asBound(o)->self;
  if (!s) Py_RETURN_NONE;
  Py_INCREF(s);
  return s;
}

PyGetSetDef boundGetSet[] = {
    {"__name__", boundName, nullptr, nullptr, nullptr},
    {"__qualname__", boundQualName, nullptr, nullptr, nullptr},
    {"__doc__", boundDoc, nullptr, nullptr, nullptr},
    {"__signature__", boundSignature, nullptr, nullptr, nullptr},
    {"__tessel_object__", boundSelf, nullptr, "The object the member is bound to (None for the class's own).",
     nullptr},
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
    {Py_nb_bool, reinterpret_cast<void*>(boundBool)},
    {Py_mp_subscript, reinterpret_cast<void*>(boundGetItem)},
    {Py_mp_ass_subscript, reinterpret_cast<void*>(boundSetItem)},
    {Py_tp_getset, boundGetSet},
    {Py_tp_members, boundMembers},
    {0, nullptr},
};
// Members and properties are made by the module only (newBound, newProperty): never empty.
PyType_Spec boundSpec = {"tessel.Member", sizeof(BoundObject), 0,
                         Py_TPFLAGS_DEFAULT | Py_TPFLAGS_HAVE_GC | Py_TPFLAGS_HAVE_VECTORCALL |
                             Py_TPFLAGS_DISALLOW_INSTANTIATION,
                         boundSlots};

// ---- properties of a class ------------------------------------------------------------------

// A property without parameters in its class's dict: a data descriptor, so that help() lists
// it with the class's data and the class-level forms read and assign it.
struct PropertyObject {
  PyObject_HEAD
  const ClassInfo* ci;
  const MemberInfo* member;
};

PropertyObject* asProperty(PyObject* o) { return reinterpret_cast<PropertyObject*>(o); }

PyObject* propertyGet(PyObject* o, PyObject* obj, PyObject*) {
  auto* p = asProperty(o);
  if (!obj || obj == Py_None) {
    Py_INCREF(o);
    return o;
  }
  Object* target = objectOfClass(*p->ci, obj, p->member->name.c_str());
  return target ? readMember(target, *p->member) : nullptr;
}

int propertySet(PyObject* o, PyObject* obj, PyObject* value) {
  auto* p = asProperty(o);
  if (!value) {
    PyErr_SetString(PyExc_TypeError, "members of tessel objects cannot be deleted");
    return -1;
  }
  Object* target = objectOfClass(*p->ci, obj, p->member->name.c_str());
  return target ? assignMember(target, *p->member, value) : -1;
}

void propertyDealloc(PyObject* o) {
  PyTypeObject* type = Py_TYPE(o);
  PyObject_Free(o);
  Py_DECREF(type);
}

PyObject* propertyName(PyObject* o, void*) { return fromUtf8(asProperty(o)->member->name); }
PyObject* propertyQualName(PyObject* o, void*) {
  auto* p = asProperty(o);
  return fromUtf8(p->ci->name() + "." + p->member->name);
}
PyObject* propertyDoc(PyObject* o, void*) {
  auto* p = asProperty(o);
  return fromUtf8(describeMember(*p->ci, *p->member));
}
PyObject* propertyObjClass(PyObject* o, void*) {
  ClassCache* c = cacheFor(*asProperty(o)->ci);
  if (!c) return nullptr;
  Py_INCREF(c->type);
  return reinterpret_cast<PyObject*>(c->type);
}
PyObject* propertyRepr(PyObject* o) {
  auto* p = asProperty(o);
  return PyUnicode_FromFormat("<tessel property %s.%s>", p->ci->name().c_str(), p->member->name.c_str());
}

PyGetSetDef propertyGetSet[] = {
    {"__name__", propertyName, nullptr, nullptr, nullptr},
    {"__qualname__", propertyQualName, nullptr, nullptr, nullptr},
    {"__doc__", propertyDoc, nullptr, nullptr, nullptr},
    {"__objclass__", propertyObjClass, nullptr, nullptr, nullptr},
    {nullptr, nullptr, nullptr, nullptr, nullptr},
};
PyType_Slot propertySlots[] = {
    {Py_tp_dealloc, reinterpret_cast<void*>(propertyDealloc)},
    {Py_tp_descr_get, reinterpret_cast<void*>(propertyGet)},
    {Py_tp_descr_set, reinterpret_cast<void*>(propertySet)},
    {Py_tp_repr, reinterpret_cast<void*>(propertyRepr)},
    {Py_tp_getset, propertyGetSet},
    {0, nullptr},
};
PyType_Spec propertySpec = {"tessel.Property", sizeof(PropertyObject), 0,
                            Py_TPFLAGS_DEFAULT | Py_TPFLAGS_DISALLOW_INSTANTIATION, propertySlots};

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

PyObject* connectorCall(PyObject* self, const ClassInfo& ci, PyObject* const* args, size_t nargs, PyObject* kwnames) {
  Object* target = asInstance(self)->native;
  // A member spelled like the module's own `connect` (CONNECT) keeps every call but
  // connect(event, callback).
  const MemberInfo* member = ci.find("connect");
  if (nargs == 2 && !kwnames && PyUnicode_Check(args[0])) {
    std::string_view event;
    const int valid = nameOf(args[0], event);
    if (valid < 0) return nullptr;
    if (!member || (valid && ci.findEvent(event))) return connectEvent(self, args[0], args[1]);
  }
  if (member) return callMember(target, member, InvokeKind::Method, args, nargs, kwnames, nullptr);
  PyErr_SetString(PyExc_TypeError, "connect() takes an event name and a callback");
  return nullptr;
}

}  // namespace

PyObject* newBound(PyObject* self, const ClassInfo& ci, const MemberInfo* m, BoundMode mode) {
  auto* b = PyObject_GC_New(BoundObject, gBoundType);
  if (!b) return nullptr;
  b->vectorcall = boundVectorcall;
  Py_XINCREF(self);
  b->self = self;
  b->ci = &ci;
  b->member = m;
  b->mode = mode;
  PyObject_GC_Track(b);
  return reinterpret_cast<PyObject*>(b);
}

PyObject* newProperty(const ClassInfo& ci, const MemberInfo& m) {
  auto* p = PyObject_New(PropertyObject, gPropertyType);
  if (!p) return nullptr;
  p->ci = &ci;
  p->member = &m;
  return reinterpret_cast<PyObject*>(p);
}

PyObject* readMember(Object* obj, const MemberInfo& m) {
  return guarded([&]() -> PyObject* { return fromVariant(Invoke(m, obj, InvokeKind::Get, std::span<Variant>())); });
}

int assignMember(Object* obj, const MemberInfo& m, PyObject* value) {
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
        std::string_view name;
        const int valid = nameOf(PyTuple_GET_ITEM(kwnames, k), name);
        if (valid < 0) return nullptr;
        // An empty keyword, or one with no UTF-8 form, names no parameter; nor can a NUL, which
        // matches nothing: the library says so (448).
        named[k].name.assign(name.empty() ? std::string_view("\0", 1) : name);
        if (!toVariant(args[nargs + k], named[k].value)) return nullptr;
        cells = cells || isByRef(args[nargs + k]);
      }
    }
    if (!member) {
      member = target->classInfo().defaultMember();
      if (!member) RaiseCallError(rt::NoSuchMember, *target, "", "kein Standardmember");
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

std::string describeParams(const std::vector<ParamInfo>& params, size_t count) {
  auto value = [](const Variant& v) {
    PyObject* o = fromVariant(v);
    PyObject* r = o ? PyObject_Repr(o) : nullptr;
    Py_XDECREF(o);
    std::string s = "?";
    if (r) {
      Py_ssize_t len = 0;
      if (const char* u = PyUnicode_AsUTF8AndSize(r, &len)) s.assign(u, static_cast<size_t>(len));
      Py_DECREF(r);
    }
    PyErr_Clear();
    return s;
  };
  std::string s;
  for (size_t i = 0; i < count && i < params.size(); ++i) {
    const ParamInfo& p = params[i];
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
}

std::string describeMember(const ClassInfo& ci, const MemberInfo& m) {
  std::string s;
  if (!m.description.empty()) s += m.description + "\n\n";
  if (m.method) {
    s += m.name + "(" + describeParams(m.method.params, m.method.params.size()) + ")";
    if (!m.method.resultType.empty()) s += " As " + m.method.resultType;
    s += "\n";
  }
  if (m.isProperty()) {
    // One line for the property: its parameters and type, and which accessors it has.
    const Accessor* assign = m.let ? &m.let : m.set ? &m.set : nullptr;
    std::string list, type, kinds;
    if (m.get) list = describeParams(m.get.params, m.get.params.size()), type = m.get.resultType;
    else if (assign && !assign->params.empty()) list = describeParams(assign->params, assign->params.size() - 1);
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

std::string describeEvents(const ClassInfo& ci) {
  std::string s =
      "connect(event, callback) -> tessel.Connection\n\nCalls callback with the event's arguments whenever the "
      "object raises the event; ByRef arguments arrive as tessel.ByRef cells. The object keeps the connection: "
      "the callback stays connected until conn.disconnect(), or until the object is gone.\n\nEvents of " +
      ci.name() + ":";
  if (ci.events().empty()) s += " none";
  for (auto& e : ci.events()) {
    s += "\n  " + e.name + "(" + describeParams(e.params, e.params.size()) + ")";
    if (!e.description.empty()) s += "  " + e.description;
  }
  return s;
}

void initMemberTypes(py::module_& m) {
  PyObject* bound = PyType_FromSpec(&boundSpec);
  PyObject* property = bound ? PyType_FromSpec(&propertySpec) : nullptr;
  if (!property) throw py::error_already_set();
  // Both live as long as the process; the module holds references of its own.
  gBoundType = reinterpret_cast<PyTypeObject*>(bound);
  gPropertyType = reinterpret_cast<PyTypeObject*>(property);
  m.attr("Member") = py::reinterpret_borrow<py::object>(bound);
  m.attr("Property") = py::reinterpret_borrow<py::object>(property);
}

}  // namespace tessel::python
