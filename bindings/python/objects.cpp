// tessel.Object, tessel.Class and a Python type per class of the type library.
//
// A class's type is made the first time the class is met (so a class registered after import
// appears by itself): a subclass of tessel.Object whose type is tessel.Class, with a descriptor
// per member in its dict (for help(), inspect and the class-level forms) and the protocol
// methods its type-library entry asks for: len() and iteration for a collection, iteration for
// a tuple form, `with` where there is a DELETE, copy.copy where there is a CLONE. Attribute
// access on objects does not go through the dict: tp_getattro finds members in any spelling in
// the class's cache, and reads a property without parameters with the resolved member.
//
// Lifetime. The registry maps a native object to its Python object while Python holds it.
// Connections to an object's events belong to the object's Python object (events.cpp). When
// Python lets go of an object that has connections while the library still holds the native
// object, the finalizer keeps the Python object alive by a reference to itself (`pin`): the
// connections stay as long as anybody holds the native object. The collector sees that
// reference only once the Python object holds the last native reference; from then on nothing
// but Python could raise the events, and a Python object nobody reaches is freed with its
// connections, whatever cycles its handlers make. An object nobody else holds goes at once,
// with its connections, as any Python object does.
#include "host.h"

#include <tessel/core/Text.h>

#include <structmember.h>

#include <memory>
#include <new>
#include <unordered_map>

namespace tessel::python {

PyTypeObject* gObjectType = nullptr;
PyTypeObject* gClassType = nullptr;

namespace {

std::unordered_map<const ClassInfo*, std::unique_ptr<ClassCache>> gCaches;
std::unordered_map<PyTypeObject*, ClassCache*> gByType;
std::unordered_map<const Object*, PyObject*> gRegistry;

ClassCache* cacheOfType(PyTypeObject* t) {
  auto it = gByType.find(t);
  return it == gByType.end() ? nullptr : it->second;
}

bool isDunderText(std::string_view n) { return n.size() >= 2 && n[0] == '_' && n[1] == '_'; }

// The module's own `connect`, for a class with events. A member spelled exactly so keeps the name;
// one spelled otherwise (CONNECT) is still reached by connect() calls that name no event.
bool hasConnector(const ClassInfo& ci) {
  if (ci.events().empty()) return false;
  for (auto& m : ci.members())
    if (m.name == "connect") return false;
  return true;
}

PyObject* notOurs(const char* what) {
  PyErr_Format(PyExc_TypeError, "%s needs a tessel object", what);
  return nullptr;
}

// ---- creating objects -----------------------------------------------------------------------

PyObject* createObject(ClassCache* c, PyObject* args, PyObject* kwargs) {
  if ((args && PyTuple_GET_SIZE(args)) || (kwargs && PyDict_GET_SIZE(kwargs))) {
    PyErr_Format(PyExc_TypeError, "%s() takes no arguments; set the new object's members instead",
                 c->ci->name().c_str());
    return nullptr;
  }
  return guarded([&]() -> PyObject* { return wrapObject(c->ci->create()); });
}

// ---- tessel.Object --------------------------------------------------------------------------

PyObject* objectNew(PyTypeObject* type, PyObject* args, PyObject* kwargs) {
  if (ClassCache* c = cacheOfType(type)) return createObject(c, args, kwargs);
  PyErr_SetString(PyExc_TypeError,
                  "tessel.Object cannot be instantiated: objects come from the classes of the module "
                  "and from the library");
  return nullptr;
}

int objectTraverse(PyObject* self, visitproc visit, void* arg) {
  Py_VISIT(Py_TYPE(self));
  auto* inst = asInstance(self);
  Py_VISIT(inst->links);
  // The reference to itself counts as the collector's to find only while no one but this
  // Python object holds the native one (see the top of the file).
  if (inst->pin && inst->native && inst->native->refCount() == 1) Py_VISIT(inst->pin);
  return 0;
}

int objectClear(PyObject* self) {
  auto* inst = asInstance(self);
  dropLinks(inst);
  Py_CLEAR(inst->pin);
  return 0;
}

// Python lets go of the object: it lives on, pinned, if its handlers may still be called.
// Finalizers run once per object; connect() pins an object that was finalized already.
void objectFinalize(PyObject* self) {
  auto* inst = asInstance(self);
  if (inst->links && !inst->pin && inst->native && inst->native->refCount() > 1) {
    Py_INCREF(self);
    inst->pin = self;
  }
}

void objectDealloc(PyObject* self) {
  PyTypeObject* type = Py_TYPE(self);
  PyObject_GC_UnTrack(self);
  auto* inst = asInstance(self);
  // Out of the registry first: a weakref callback that meets the native object again gets a
  // new Python object, not this dying one.
  if (inst->native) {
    auto it = gRegistry.find(inst->native);
    if (it != gRegistry.end() && it->second == self) gRegistry.erase(it);
  }
  if (inst->weakrefs) PyObject_ClearWeakRefs(self);
  dropLinks(inst);  // the object is gone: so are its handlers
  Py_CLEAR(inst->pin);
  if (Object* o = std::exchange(inst->native, nullptr)) o->release();
  type->tp_free(self);
  Py_DECREF(type);
}

PyObject* objectGetAttr(PyObject* self, PyObject* name) {
  auto* inst = asInstance(self);
  ClassCache* c = inst->cls;
  if (!c || !PyUnicode_Check(name)) return PyObject_GenericGetAttr(self, name);
  const long code = lookupName(*c, name);
  if (code >= 0) {
    const MemberInfo& m = c->ci->members()[static_cast<size_t>(code)];
    if (!c->direct[static_cast<size_t>(code)]) return newBound(self, *c->ci, &m, BoundMode::Member);
    return readMember(inst->native, m);
  }
  if (code == kConnect) return newBound(self, *c->ci, nullptr, BoundMode::Connector);
  if (code == kLookupFailed) return nullptr;
  PyObject* r = PyObject_GenericGetAttr(self, name);
  if (!r && !isDunder(name) && PyErr_ExceptionMatches(PyExc_AttributeError)) {
    PyErr_Clear();
    raiseNoMember(self, name, *c->ci);
  }
  return r;
}

int objectSetAttr(PyObject* self, PyObject* name, PyObject* value) {
  auto* inst = asInstance(self);
  ClassCache* c = inst->cls;
  if (!c || !PyUnicode_Check(name)) return PyObject_GenericSetAttr(self, name, value);
  const long code = lookupName(*c, name);
  if (code == kLookupFailed) return -1;
  if (code < 0) {
    if (PyObject_GenericSetAttr(self, name, value) == 0) return 0;
    if (!isDunder(name) && PyErr_ExceptionMatches(PyExc_AttributeError)) {
      PyErr_Clear();
      raiseNoMember(self, name, *c->ci);
    }
    return -1;
  }
  if (!value) {
    PyErr_SetString(PyExc_TypeError, "members of tessel objects cannot be deleted");
    return -1;
  }
  return assignMember(inst->native, c->ci->members()[static_cast<size_t>(code)], value);
}

// obj(args) calls the default member.
PyObject* objectCall(PyObject* self, PyObject* args, PyObject* kwargs) {
  auto* inst = asInstance(self);
  if (!inst->native) return notOurs("a call");
  return callMemberDict(inst->native, nullptr, InvokeKind::Method, &PyTuple_GET_ITEM(args, 0),
                        static_cast<size_t>(PyTuple_GET_SIZE(args)), kwargs, nullptr);
}

// The state that identifies the object: its display member's text, else class and identity.
// A display member that fails falls back to the identity form; repr() must not fail for that.
PyObject* objectRepr(PyObject* self) {
  auto* inst = asInstance(self);
  const char* name = Py_TYPE(self)->tp_name;
  if (inst->cls && inst->cls->display) {
    PyObject* shown = readMember(inst->native, *inst->cls->display);
    if (shown) {
      PyObject* r = PyUnicode_Check(shown) ? PyUnicode_FromFormat("<tessel.%s %U>", name, shown)
                                           : PyUnicode_FromFormat("<tessel.%s %S>", name, shown);
      Py_DECREF(shown);
      return r;
    }
    if (!PyErr_ExceptionMatches(gErrorType)) return nullptr;
    PyErr_Clear();
  }
  return PyUnicode_FromFormat("<tessel.%s object at %p>", name, self);
}

PyObject* objectDir(PyObject* self, PyObject*) {
  ClassCache* c = asInstance(self)->cls;
  PyObject* names = PyList_New(0);
  if (!names || !c) return names;
  auto add = [&](const std::string& s) {
    PyObject* str = fromUtf8(s);
    bool ok = str && PyList_Append(names, str) == 0;
    Py_XDECREF(str);
    return ok;
  };
  bool ok = true;
  for (auto& m : c->ci->members()) ok = ok && add(m.name);
  if (ok && hasConnector(*c->ci)) ok = add("connect");
  if (!ok) Py_CLEAR(names);
  return names;
}

PyObject* objectReduce(PyObject* self, PyObject*) {
  ClassCache* c = asInstance(self)->cls;
  if (c && c->clone)
    PyErr_Format(PyExc_TypeError, "'%s' objects cannot be pickled; copy.copy() makes a copy with CLONE",
                 Py_TYPE(self)->tp_name);
  else
    PyErr_Format(PyExc_TypeError, "'%s' objects cannot be pickled or copied: their state is the library's",
                 Py_TYPE(self)->tp_name);
  return nullptr;
}

PyObject* objectClassName(PyObject* self, void*) {
  ClassCache* c = asInstance(self)->cls;
  if (!c) Py_RETURN_NONE;
  return fromUtf8(c->ci->name());
}

// ---- the host seams: memory in place, and a picture for notebooks -----------------------------

// A loan of an object's memory is an object of its own (Py_buffer.obj): it holds the lender,
// the loan's shape and strides, and returns the loan when the last view of it goes. So the
// lender's type needs no releasebuffer slot, which would make Python refuse it where a read-only
// bytes-like argument is asked for (PIL's decoders).
struct Loan {
  PyObject_HEAD
  PyObject* lender;
  Py_ssize_t dims[6];  // shape, then strides
};

PyTypeObject* gLoanType = nullptr;

void loanDealloc(PyObject* self) {
  auto* loan = reinterpret_cast<Loan*>(self);
  PyTypeObject* type = Py_TYPE(self);
  if (Object* o = asInstance(loan->lender)->native) o->unexportBuffer();
  Py_DECREF(loan->lender);
  type->tp_free(self);
  Py_DECREF(type);
}

PyType_Slot loanSlots[] = {
    {Py_tp_dealloc, reinterpret_cast<void*>(loanDealloc)},
    {Py_tp_doc, const_cast<char*>("Memory that a tessel object lends while a view of it is held.")},
    {0, nullptr},
};
PyType_Spec loanSpec = {"tessel._Loan", sizeof(Loan), 0, Py_TPFLAGS_DEFAULT, loanSlots};

int objectGetBuffer(PyObject* self, Py_buffer* view, int flags) {
  view->obj = nullptr;
  auto* inst = asInstance(self);
  ExportedBuffer lent;
  bool ok = false;
  try {
    ok = inst->native && inst->native->exportBuffer(lent);
  } catch (...) {
  }
  if (!ok) {
    PyErr_Format(PyExc_BufferError, "this %s lends no memory", Py_TYPE(self)->tp_name);
    return -1;
  }
  auto* loan = PyObject_New(Loan, gLoanType);
  if (!loan) {
    inst->native->unexportBuffer();
    return -1;
  }
  loan->lender = Py_NewRef(self);  // from here on the loan returns what was lent
  if (lent.rowStride != lent.columns * lent.channels && !(flags & PyBUF_STRIDES)) {
    Py_DECREF(loan);
    PyErr_SetString(PyExc_BufferError, "the rows are not contiguous: ask for strides");
    return -1;
  }
  Py_ssize_t* dims = loan->dims;
  dims[0] = lent.rows, dims[1] = lent.columns, dims[2] = lent.channels;
  dims[3] = lent.rowStride, dims[4] = lent.channels, dims[5] = 1;
  view->buf = lent.data;
  view->obj = reinterpret_cast<PyObject*>(loan);
  view->len = lent.rows * lent.columns * lent.channels;
  view->readonly = 0;
  view->itemsize = 1;
  view->format = (flags & PyBUF_FORMAT) ? const_cast<char*>("B") : nullptr;
  view->ndim = (flags & PyBUF_ND) ? 3 : 1;
  view->shape = (flags & PyBUF_ND) ? dims : nullptr;
  view->strides = (flags & PyBUF_STRIDES) ? dims + 3 : nullptr;
  view->suboffsets = nullptr;
  view->internal = nullptr;
  return 0;
}

PyObject* objectReprPng(PyObject* self, PyObject*) {
  Object* o = asInstance(self)->native;
  std::string png;
  try {
    if (o) png = o->toPng();
  } catch (...) {
  }
  if (png.empty()) Py_RETURN_NONE;
  return PyBytes_FromStringAndSize(png.data(), static_cast<Py_ssize_t>(png.size()));
}

PyMethodDef objectMethods[] = {
    {"__dir__", objectDir, METH_NOARGS, "The object's members (and connect when it has events)."},
    {"_repr_png_", objectReprPng, METH_NOARGS,
     "The object as PNG bytes, for notebooks that show objects as pictures; None when it is no picture."},
    {"__reduce_ex__", objectReduce, METH_O, nullptr},
    {nullptr, nullptr, 0, nullptr},
};
PyGetSetDef objectGetSet[] = {
    {"__tessel_class__", objectClassName, nullptr, "The name of the object's class in the type library.", nullptr},
    {nullptr, nullptr, nullptr, nullptr, nullptr},
};
PyMemberDef objectMembers[] = {
    {"__weaklistoffset__", T_PYSSIZET, offsetof(ObjectInstance, weakrefs), READONLY, nullptr},
    {nullptr, 0, 0, 0, nullptr},
};
PyType_Slot objectSlots[] = {
    {Py_tp_new, reinterpret_cast<void*>(objectNew)},
    {Py_tp_dealloc, reinterpret_cast<void*>(objectDealloc)},
    {Py_tp_finalize, reinterpret_cast<void*>(objectFinalize)},
    {Py_tp_traverse, reinterpret_cast<void*>(objectTraverse)},
    {Py_tp_clear, reinterpret_cast<void*>(objectClear)},
    {Py_tp_getattro, reinterpret_cast<void*>(objectGetAttr)},
    {Py_tp_setattro, reinterpret_cast<void*>(objectSetAttr)},
    {Py_tp_call, reinterpret_cast<void*>(objectCall)},
    {Py_tp_repr, reinterpret_cast<void*>(objectRepr)},
    {Py_bf_getbuffer, reinterpret_cast<void*>(objectGetBuffer)},
    {Py_tp_methods, objectMethods},
    {Py_tp_getset, objectGetSet},
    {Py_tp_members, objectMembers},
    {Py_tp_doc, const_cast<char*>(
                    "An object of Tessel; every class of the type library is a subclass. Its members are reached "
                    "by name through the type library:\n"
                    "obj.NAME reads a property (or gives a bound method), obj.NAME = value assigns one,\n"
                    "obj.NAME(args) calls, obj.NAME[args] reads or assigns a property with parameters,\n"
                    "obj(args) calls the default member, obj.connect(event, callback) listens to an event.")},
    {0, nullptr},
};
PyType_Spec objectSpec = {"tessel.Object", sizeof(ObjectInstance), 0,
                          Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE | Py_TPFLAGS_HAVE_GC, objectSlots};

// ---- the protocols a class's entry asks for -------------------------------------------------

ClassCache* protocolCache(PyObject* self) {
  ClassCache* c = PyObject_TypeCheck(self, gObjectType) ? asInstance(self)->cls : nullptr;
  if (!c) notOurs("this protocol");
  return c;
}

// The count of a collection as a size; -1 with a Python error.
Py_ssize_t collectionCount(PyObject* self, ClassCache* c) {
  PyObject* n = readMember(asInstance(self)->native, *c->count);
  if (!n) return -1;
  Py_ssize_t count = PyNumber_AsSsize_t(n, PyExc_OverflowError);
  Py_DECREF(n);
  if (count < 0 && !PyErr_Occurred()) count = 0;
  return count;
}

PyObject* protoLen(PyObject* self, PyObject*) {
  ClassCache* c = protocolCache(self);
  if (!c) return nullptr;
  Py_ssize_t n = collectionCount(self, c);
  return n < 0 ? nullptr : PyLong_FromSsize_t(n);
}

// Iteration reads the items (or the values) at its start: changing the collection in the loop
// does not disturb it, as with a copy.
PyObject* protoIter(PyObject* self, PyObject*) {
  ClassCache* c = protocolCache(self);
  if (!c) return nullptr;
  Object* obj = asInstance(self)->native;
  PyObject* items = nullptr;
  if (c->count) {
    Py_ssize_t n = collectionCount(self, c);
    if (n < 0) return nullptr;
    items = PyTuple_New(n);
    for (Py_ssize_t i = 0; items && i < n; ++i) {
      PyObject* index = PyLong_FromSsize_t(i + 1);
      PyObject* item = index ? callMember(obj, c->item, InvokeKind::Get, &index, 1, nullptr, nullptr) : nullptr;
      Py_XDECREF(index);
      if (!item) Py_CLEAR(items);
      else PyTuple_SET_ITEM(items, i, item);
    }
  } else {
    items = PyTuple_New(static_cast<Py_ssize_t>(c->values.size()));
    for (size_t i = 0; items && i < c->values.size(); ++i) {
      PyObject* v = readMember(obj, *c->values[i]);
      if (!v) Py_CLEAR(items);
      else PyTuple_SET_ITEM(items, static_cast<Py_ssize_t>(i), v);
    }
  }
  if (!items) return nullptr;
  PyObject* it = PyObject_GetIter(items);
  Py_DECREF(items);
  return it;
}

PyObject* protoEnter(PyObject* self, PyObject*) {
  Py_INCREF(self);
  return self;
}

// DELETE releases what the object owns; an exception of the block goes on (False).
PyObject* protoExit(PyObject* self, PyObject* const*, Py_ssize_t) {
  ClassCache* c = protocolCache(self);
  if (!c) return nullptr;
  PyObject* r = callMember(asInstance(self)->native, c->release, InvokeKind::Method, nullptr, 0, nullptr, nullptr);
  if (!r) return nullptr;
  Py_DECREF(r);
  Py_RETURN_FALSE;
}

PyObject* protoCopy(PyObject* self, PyObject*) {
  ClassCache* c = protocolCache(self);
  if (!c) return nullptr;
  return callMember(asInstance(self)->native, c->clone, InvokeKind::Method, nullptr, 0, nullptr, nullptr);
}

PyMethodDef lenDef = {"__len__", protoLen, METH_NOARGS, "The collection's count."};
PyMethodDef iterDef = {"__iter__", protoIter, METH_NOARGS,
                       "The collection's items, or the object's values (its tuple form)."};
PyMethodDef enterDef = {"__enter__", protoEnter, METH_NOARGS, "The object itself."};
PyMethodDef exitDef = {"__exit__", reinterpret_cast<PyCFunction>(reinterpret_cast<void*>(protoExit)), METH_FASTCALL,
                       "Calls DELETE, which releases what the object owns."};
PyMethodDef copyDef = {"__copy__", protoCopy, METH_NOARGS, "A copy made by CLONE."};

// ---- tessel.Class ---------------------------------------------------------------------------

PyObject* classCall(PyObject* type, PyObject* args, PyObject* kwargs) {
  ClassCache* c = cacheOfType(reinterpret_cast<PyTypeObject*>(type));
  if (!c) return objectNew(reinterpret_cast<PyTypeObject*>(type), args, kwargs);
  return createObject(c, args, kwargs);
}

PyObject* classNew(PyTypeObject*, PyObject*, PyObject*) {
  PyErr_SetString(PyExc_TypeError, "the classes of tessel come from its type library and cannot be subclassed");
  return nullptr;
}

ClassCache* classOf(PyObject* type) {
  ClassCache* c = cacheOfType(reinterpret_cast<PyTypeObject*>(type));
  if (!c) PyErr_SetString(PyExc_TypeError, "not a class of the type library");
  return c;
}

PyObject* classCreatable(PyObject* type, void*) {
  ClassCache* c = classOf(type);
  return c ? PyBool_FromLong(c->ci->creatable()) : nullptr;
}
PyObject* classIsGlobal(PyObject* type, void*) {
  ClassCache* c = classOf(type);
  return c ? PyBool_FromLong(c->ci->isGlobal()) : nullptr;
}
template <class List>
PyObject* nameList(const List& items) {
  PyObject* l = PyList_New(static_cast<Py_ssize_t>(items.size()));
  for (size_t i = 0; l && i < items.size(); ++i) {
    PyObject* s = fromUtf8(items[i].name);
    if (!s) Py_CLEAR(l);
    else PyList_SET_ITEM(l, static_cast<Py_ssize_t>(i), s);
  }
  return l;
}
PyObject* classMembers(PyObject* type, void*) {
  ClassCache* c = classOf(type);
  return c ? nameList(c->ci->members()) : nullptr;
}
PyObject* classEvents(PyObject* type, void*) {
  ClassCache* c = classOf(type);
  return c ? nameList(c->ci->events()) : nullptr;
}

PyGetSetDef classGetSet[] = {
    {"creatable", classCreatable, nullptr, "Whether calling the class makes a new object.", nullptr},
    {"is_global", classIsGlobal, nullptr, "Whether the class is a global object (one per thread).", nullptr},
    {"members", classMembers, nullptr, "The member names in interface order.", nullptr},
    {"events", classEvents, nullptr, "The event names.", nullptr},
    {nullptr, nullptr, nullptr, nullptr, nullptr},
};
PyType_Slot classSlots[] = {
    {Py_tp_call, reinterpret_cast<void*>(classCall)},
    {Py_tp_new, reinterpret_cast<void*>(classNew)},
    {Py_tp_getset, classGetSet},
    {Py_tp_doc, const_cast<char*>("The type of the classes of Tessel's type library. Calling a class makes a new "
                                  "object of it; a class that clients cannot create raises tessel.Error 429.")},
    {0, nullptr},
};
PyType_Spec classSpec = {"tessel.Class", 0, 0, Py_TPFLAGS_DEFAULT, classSlots};

std::string describeClass(const ClassCache& c) {
  const ClassInfo& ci = *c.ci;
  std::string s = ci.description().empty() ? "" : ci.description() + "\n\n";
  s += ci.isGlobal()    ? "A global object of Tessel: one per thread, reached through the module."
       : ci.creatable() ? "A class of Tessel; calling it makes a new object."
                        : "A class of Tessel; its objects come from the library.";
  auto list = [](const std::vector<const MemberInfo*>& ms) {
    std::string l;
    for (auto* m : ms) l += (l.empty() ? "" : ", ") + m->name;
    return l;
  };
  if (c.display) s += "\nrepr() shows " + c.display->name + ".";
  if (c.count) s += "\nA collection: len() reads " + c.count->name + ", iterating gives " + c.item->name +
                    "(1) to " + c.item->name + "(" + c.count->name + ").";
  else if (!c.values.empty()) s += "\nIterating gives its values " + list(c.values) + ".";
  if (c.release) s += "\nUsable in a with block: " + c.release->name + " runs at its end.";
  if (c.clone) s += "\ncopy.copy() makes a copy with " + c.clone->name + ".";
  if (!ci.events().empty()) {
    s += "\n\nEvents (obj.connect(name, callback)):";
    for (auto& e : ci.events()) {
      s += "\n  " + e.name + "(" + describeParams(e.params, e.params.size()) + ")";
      if (!e.description.empty()) s += "  " + e.description;
    }
  }
  return s;
}

// Members that a class's entry names for a protocol; null when it names none or one it lacks.
const MemberInfo* named(const ClassInfo& ci, const std::string& name) {
  return name.empty() ? nullptr : ci.find(name);
}

bool setItem(PyObject* dict, const char* key, PyObject* value) {
  if (!value) return false;
  int rc = PyDict_SetItemString(dict, key, value);
  Py_DECREF(value);
  return rc == 0;
}

bool addMethod(PyObject* dict, PyMethodDef* def) {
  return setItem(dict, def->ml_name, PyDescr_NewMethod(gObjectType, def));
}

PyTypeObject* makeType(ClassCache& c) {
  const ClassInfo& ci = *c.ci;
  PyObject* dict = PyDict_New();
  if (!dict) return nullptr;
  bool ok = setItem(dict, "__module__", PyUnicode_FromString("tessel")) &&
            setItem(dict, "__qualname__", fromUtf8(ci.name())) && setItem(dict, "__doc__", fromUtf8(describeClass(c))) &&
            setItem(dict, "__slots__", PyTuple_New(0));
  for (size_t i = 0; ok && i < ci.members().size(); ++i) {
    const MemberInfo& m = ci.members()[i];
    if (isDunderText(m.name)) continue;
    ok = setItem(dict, m.name.c_str(), c.direct[i] ? newProperty(ci, m) : newBound(nullptr, ci, &m, BoundMode::Member));
  }
  if (ok && hasConnector(ci))
    ok = setItem(dict, "connect", newBound(nullptr, ci, nullptr, BoundMode::Connector));
  if (ok && c.count) ok = addMethod(dict, &lenDef);
  if (ok && (c.count || !c.values.empty())) ok = addMethod(dict, &iterDef);
  if (ok && c.release) ok = addMethod(dict, &enterDef) && addMethod(dict, &exitDef);
  if (ok && c.clone) ok = addMethod(dict, &copyDef);
  PyObject* type = nullptr;
  if (ok) {
    PyObject* args = Py_BuildValue("(N(O)O)", fromUtf8(ci.name()), reinterpret_cast<PyObject*>(gObjectType), dict);
    if (args) type = PyType_Type.tp_new(gClassType, args, nullptr);
    Py_XDECREF(args);
  }
  Py_DECREF(dict);
  if (!type) return nullptr;
  auto* t = reinterpret_cast<PyTypeObject*>(type);
  // Objects come from the library: a Python subclass would have no native object to stand for.
  t->tp_flags &= ~Py_TPFLAGS_BASETYPE;
  PyType_Modified(t);
  return t;
}

}  // namespace

long lookupName(ClassCache& c, PyObject* name) {
  if (PyObject* hit = PyDict_GetItemWithError(c.names, name)) return PyLong_AsLong(hit);
  if (PyErr_Occurred()) return kLookupFailed;
  std::string_view n;
  const int valid = nameOf(name, n);
  if (valid < 0) return kLookupFailed;
  long code = kNotMember;
  // A name with a NUL or a lone surrogate is no member's; so are Python's own names.
  if (!valid || isDunderText(n)) code = kNotMember;
  else if (n == "connect" && hasConnector(*c.ci)) code = kConnect;
  else if (const MemberInfo* m = c.ci->find(n)) code = static_cast<long>(m - c.ci->members().data());
  // Names that are no member are remembered too, but not without bound (getattr with made-up names).
  if (PyUnicode_CheckExact(name) && (code != kNotMember || PyDict_GET_SIZE(c.names) < 4096)) {
    PyObject* v = PyLong_FromLong(code);
    if (!v || PyDict_SetItem(c.names, name, v) < 0) {
      Py_XDECREF(v);
      return kLookupFailed;
    }
    Py_DECREF(v);
  }
  return code;
}

ClassCache* cacheFor(const ClassInfo& ci) {
  auto it = gCaches.find(&ci);
  if (it != gCaches.end()) return it->second.get();
  auto c = std::make_unique<ClassCache>();
  c->ci = &ci;
  for (auto& m : ci.members()) {
    // A member with only a let or set is read through Invoke too, which reports 438.
    c->direct.push_back(m.get ? m.get.params.empty() : !m.method);
  }
  c->display = named(ci, ci.displayMember());
  c->count = named(ci, ci.countMember());
  c->item = named(ci, ci.itemMember());
  if (!c->count || !c->item) c->count = c->item = nullptr;
  for (auto& v : ci.valueMembers()) {
    const MemberInfo* m = ci.find(v);
    if (!m) {
      c->values.clear();
      break;
    }
    c->values.push_back(m);
  }
  if (const MemberInfo* m = ci.find("DELETE"); m && m->method) c->release = m;
  if (const MemberInfo* m = ci.find("CLONE"); m && m->method) c->clone = m;
  c->names = PyDict_New();
  if (!c->names) return nullptr;
  c->type = makeType(*c);
  if (!c->type) {
    Py_CLEAR(c->names);
    return nullptr;
  }
  ClassCache* raw = c.get();
  try {
    gByType.emplace(raw->type, raw);
    gCaches.emplace(&ci, std::move(c));
  } catch (const std::bad_alloc&) {
    gByType.erase(raw->type);
    PyErr_NoMemory();
    return nullptr;
  }
  return raw;
}

PyObject* wrapObject(Object* o) {
  if (!o) Py_RETURN_NONE;
  auto it = gRegistry.find(o);
  if (it != gRegistry.end()) {
    Py_INCREF(it->second);
    return it->second;
  }
  ClassCache* c = cacheFor(o->classInfo());
  if (!c) return nullptr;
  PyObject* self = c->type->tp_alloc(c->type, 0);
  if (!self) return nullptr;
  auto* inst = asInstance(self);
  inst->cls = c;
  try {
    gRegistry.emplace(o, self);
  } catch (const std::bad_alloc&) {
    Py_DECREF(self);
    return PyErr_NoMemory();
  }
  o->addRef();
  inst->native = o;
  return self;
}

PyObject* wrapObject(const Ref<Object>& o) { return wrapObject(o.get()); }

void initObjectTypes(py::module_& m) {
  PyObject* object = PyType_FromSpec(&objectSpec);
  if (!object) throw py::error_already_set();
  gObjectType = reinterpret_cast<PyTypeObject*>(object);
  PyObject* bases = PyTuple_Pack(1, reinterpret_cast<PyObject*>(&PyType_Type));
  PyObject* cls = bases ? PyType_FromSpecWithBases(&classSpec, bases) : nullptr;
  Py_XDECREF(bases);
  if (!cls) throw py::error_already_set();
  gClassType = reinterpret_cast<PyTypeObject*>(cls);
  gLoanType = reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&loanSpec));
  if (!gLoanType) throw py::error_already_set();
  // All three live as long as the process; the module holds a reference of its own.
  m.attr("Object") = py::reinterpret_borrow<py::object>(object);
  m.attr("Class") = py::reinterpret_borrow<py::object>(cls);
}

}  // namespace tessel::python
