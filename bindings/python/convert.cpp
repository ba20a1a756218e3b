// Python values <-> Variant, the Empty / Null / Missing sentinels and the ByRef cell.
#include "host.h"

#include <tessel/core/Text.h>

#include <charconv>
#include <cmath>
#include <cstring>

namespace tessel::python {

PyObject* gEmpty = nullptr;
PyObject* gNull = nullptr;
PyObject* gMissing = nullptr;
PyTypeObject* gByRefType = nullptr;

namespace {

// ---- sentinels ------------------------------------------------------------------------------

struct SentinelObject {
  PyObject_HEAD
  const char* name;
};

PyObject* sentinelRepr(PyObject* self) {
  return PyUnicode_FromFormat("tessel.%s", reinterpret_cast<SentinelObject*>(self)->name);
}
int sentinelBool(PyObject*) { return 0; }
// Pickling and copying keep the singletons: they are found again by name in the module.
PyObject* sentinelReduce(PyObject* self, PyObject*) {
  return PyUnicode_FromString(reinterpret_cast<SentinelObject*>(self)->name);
}
PyMethodDef sentinelMethods[] = {
    {"__reduce__", sentinelReduce, METH_NOARGS, nullptr},
    {nullptr, nullptr, 0, nullptr},
};
PyType_Slot sentinelSlots[] = {
    {Py_tp_repr, reinterpret_cast<void*>(sentinelRepr)},
    {Py_nb_bool, reinterpret_cast<void*>(sentinelBool)},
    {Py_tp_methods, sentinelMethods},
    {Py_tp_doc, const_cast<char*>("The Variant values Empty, Null and Missing (an omitted argument).")},
    {0, nullptr},
};
// Three instances, made by the module; no others.
PyType_Spec sentinelSpec = {"tessel.Special", sizeof(SentinelObject), 0,
                            Py_TPFLAGS_DEFAULT | Py_TPFLAGS_DISALLOW_INSTANTIATION, sentinelSlots};

PyObject* makeSentinel(PyTypeObject* type, const char* name) {
  auto* s = PyObject_New(SentinelObject, type);
  if (s) s->name = name;
  return reinterpret_cast<PyObject*>(s);
}

// ---- ByRef ----------------------------------------------------------------------------------

int byRefInit(PyObject* self, PyObject* args, PyObject* kwargs) {
  static const char* names[] = {"value", nullptr};
  PyObject* value = gEmpty;
  if (!PyArg_ParseTupleAndKeywords(args, kwargs, "|O:ByRef", const_cast<char**>(names), &value)) return -1;
  auto* cell = reinterpret_cast<ByRefObject*>(self);
  Py_INCREF(value);
  Py_XSETREF(cell->value, value);
  return 0;
}
PyObject* byRefNew(PyTypeObject* type, PyObject*, PyObject*) {
  PyObject* self = type->tp_alloc(type, 0);
  if (self) {
    Py_INCREF(gEmpty);
    reinterpret_cast<ByRefObject*>(self)->value = gEmpty;
  }
  return self;
}
int byRefTraverse(PyObject* self, visitproc visit, void* arg) {
  Py_VISIT(Py_TYPE(self));
  Py_VISIT(reinterpret_cast<ByRefObject*>(self)->value);
  return 0;
}
int byRefClear(PyObject* self) {
  Py_CLEAR(reinterpret_cast<ByRefObject*>(self)->value);
  return 0;
}
void byRefDealloc(PyObject* self) {
  PyTypeObject* type = Py_TYPE(self);
  PyObject_GC_UnTrack(self);
  byRefClear(self);
  type->tp_free(self);
  Py_DECREF(type);
}
PyObject* byRefGetValue(PyObject* self, void*) {
  PyObject* v = reinterpret_cast<ByRefObject*>(self)->value;
  if (!v) v = gEmpty;  // only after the collector cleared a cycle
  Py_INCREF(v);
  return v;
}
int byRefSetValue(PyObject* self, PyObject* value, void*) {
  if (!value) {
    PyErr_SetString(PyExc_AttributeError, "a ByRef cell's value cannot be deleted");
    return -1;
  }
  Py_INCREF(value);
  Py_XSETREF(reinterpret_cast<ByRefObject*>(self)->value, value);
  return 0;
}
// copy and pickle make a cell with the same value (by reference, as a cell holds it).
PyObject* byRefReduce(PyObject* self, PyObject*) {
  return Py_BuildValue("O(N)", reinterpret_cast<PyObject*>(Py_TYPE(self)), byRefGetValue(self, nullptr));
}
PyMethodDef byRefMethods[] = {
    {"__reduce__", byRefReduce, METH_NOARGS, nullptr},
    {nullptr, nullptr, 0, nullptr},
};
PyObject* byRefRepr(PyObject* self) {
  PyObject* v = reinterpret_cast<ByRefObject*>(self)->value;
  return v ? PyUnicode_FromFormat("tessel.ByRef(%R)", v) : PyUnicode_FromString("tessel.ByRef()");
}
PyGetSetDef byRefGetSet[] = {
    {"value", byRefGetValue, byRefSetValue, "What the cell holds; a member with a ByRef parameter writes here.",
     nullptr},
    {nullptr, nullptr, nullptr, nullptr, nullptr},
};
PyType_Slot byRefSlots[] = {
    {Py_tp_new, reinterpret_cast<void*>(byRefNew)},
    {Py_tp_init, reinterpret_cast<void*>(byRefInit)},
    {Py_tp_dealloc, reinterpret_cast<void*>(byRefDealloc)},
    {Py_tp_traverse, reinterpret_cast<void*>(byRefTraverse)},
    {Py_tp_clear, reinterpret_cast<void*>(byRefClear)},
    {Py_tp_repr, reinterpret_cast<void*>(byRefRepr)},
    {Py_tp_getset, byRefGetSet},
    {Py_tp_methods, byRefMethods},
    {Py_tp_doc, const_cast<char*>("ByRef(value=Empty)\n\nA variable for a ByRef parameter: pass the cell, and "
                                  "after the call .value holds what the member left there.")},
    {0, nullptr},
};
PyType_Spec byRefSpec = {"tessel.ByRef", sizeof(ByRefObject), 0,
                         Py_TPFLAGS_DEFAULT | Py_TPFLAGS_HAVE_GC | Py_TPFLAGS_BASETYPE, byRefSlots};

// ---- strings --------------------------------------------------------------------------------

bool toUtf16String(PyObject* s, std::u16string& out) {
  const Py_ssize_t n = PyUnicode_GET_LENGTH(s);
  const int kind = PyUnicode_KIND(s);
  const void* data = PyUnicode_DATA(s);
  out.clear();
  if (kind == PyUnicode_1BYTE_KIND) {
    out.resize(static_cast<size_t>(n));
    auto* p = static_cast<const Py_UCS1*>(data);
    for (Py_ssize_t i = 0; i < n; ++i) out[i] = p[i];
  } else if (kind == PyUnicode_2BYTE_KIND) {
    // UCS-2 is UTF-16 without pairs; a lone surrogate passes as it is.
    out.assign(static_cast<const char16_t*>(data), static_cast<size_t>(n));
  } else {
    out.reserve(static_cast<size_t>(n) + 8);
    auto* p = static_cast<const Py_UCS4*>(data);
    for (Py_ssize_t i = 0; i < n; ++i) appendCodePoint(out, p[i]);
  }
  return true;
}

PyObject* fromUtf16(const std::u16string& s) {
  bool surrogates = false;
  for (char16_t c : s)
    if (isSurrogate(c)) { surrogates = true; break; }
  if (!surrogates)
    return PyUnicode_FromKindAndData(PyUnicode_2BYTE_KIND, s.data(), static_cast<Py_ssize_t>(s.size()));
  // Pairs become one code point; a lone surrogate stays one (Python strings may hold it).
  std::u32string wide;
  wide.reserve(s.size());
  for (size_t i = 0; i < s.size();) wide.push_back(nextCodePoint(s, i));
  return PyUnicode_FromKindAndData(PyUnicode_4BYTE_KIND, wide.data(), static_cast<Py_ssize_t>(wide.size()));
}

// A Single reads back as the shortest decimal that names it, so 10.3 stored in a Single
// property reads 10.3 and not 10.300000190734863.
double singleToDouble(float f) {
  const double d = f;
  if (!std::isfinite(d) || d == std::trunc(d)) return d;
  char buf[32];
  auto r = std::to_chars(buf, buf + sizeof buf, f);
  double out = d;
  std::from_chars(buf, r.ptr, out);
  return out;
}

}  // namespace

PyObject* newByRef(PyObject* value) {
  PyObject* cell = byRefNew(gByRefType, nullptr, nullptr);
  if (cell) {
    Py_INCREF(value);
    Py_XSETREF(reinterpret_cast<ByRefObject*>(cell)->value, value);
  }
  return cell;
}

PyObject* fromUtf8(const std::string& s) {
  return PyUnicode_DecodeUTF8(s.data(), static_cast<Py_ssize_t>(s.size()), "replace");
}

int nameOf(PyObject* s, std::string_view& out) {
  Py_ssize_t len = 0;
  const char* p = PyUnicode_AsUTF8AndSize(s, &len);
  if (!p) {
    if (!PyErr_ExceptionMatches(PyExc_UnicodeEncodeError)) return -1;
    PyErr_Clear();
    out = {};
    return 0;
  }
  out = std::string_view(p, static_cast<size_t>(len));
  return std::memchr(p, 0, out.size()) ? 0 : 1;
}

bool isDunder(PyObject* name) {
  return PyUnicode_GET_LENGTH(name) >= 2 && PyUnicode_READ_CHAR(name, 0) == '_' && PyUnicode_READ_CHAR(name, 1) == '_';
}

bool toVariant(PyObject* o, Variant& out) {
  if (PyFloat_CheckExact(o)) {
    out = Variant(PyFloat_AS_DOUBLE(o));
    return true;
  }
  if (PyBool_Check(o)) {
    out = Variant(o == Py_True);
    return true;
  }
  if (PyLong_Check(o)) {
    int overflow = 0;
    long long v = PyLong_AsLongLongAndOverflow(o, &overflow);
    if (!overflow) {
      if (v == -1 && PyErr_Occurred()) return false;
      // Long when it fits, else LongLong (a native handle is one); beyond 64 bits a Double.
      if (v >= INT32_MIN && v <= INT32_MAX) out = Variant(static_cast<int32_t>(v));
      else out = Variant(static_cast<int64_t>(v));
      return true;
    }
    double d = PyLong_AsDouble(o);
    if (d == -1.0 && PyErr_Occurred()) return false;
    out = Variant(d);
    return true;
  }
  if (PyUnicode_Check(o)) {
    std::u16string s;
    if (PyUnicode_READY(o) < 0) return false;
    toUtf16String(o, s);
    out = Variant(std::move(s));
    return true;
  }
  if (o == Py_None) {
    out = Variant::nothing();
    return true;
  }
  if (Object* obj = nativeOf(o)) {
    out = Variant(Ref<Object>(obj));
    return true;
  }
  if (o == gEmpty) {
    out = Variant();
    return true;
  }
  if (o == gMissing) {
    out = Variant::missing();
    return true;
  }
  if (o == gNull) {
    out = Variant::null();
    return true;
  }
  if (PyFloat_Check(o)) {
    out = Variant(PyFloat_AS_DOUBLE(o));
    return true;
  }
  if (PyTuple_Check(o) || PyList_Check(o)) {
    // An array of Variants, item by item; a list is copied as it stands now. Nested sequences
    // become nested arrays, up to a depth that no sensible argument reaches.
    if (Py_EnterRecursiveCall(" while passing a sequence to tessel")) return false;
    const Py_ssize_t n = PySequence_Fast_GET_SIZE(o);
    std::vector<Variant> items(static_cast<size_t>(n));
    bool ok = true;
    for (Py_ssize_t i = 0; ok && i < n; ++i) ok = toVariant(PySequence_Fast_GET_ITEM(o, i), items[static_cast<size_t>(i)]);
    Py_LeaveRecursiveCall();
    if (ok) out = Variant(std::move(items));
    return ok;
  }
  if (isByRef(o)) {
    PyObject* v = reinterpret_cast<ByRefObject*>(o)->value;
    if (!v || isByRef(v)) {
      PyErr_SetString(PyExc_TypeError, "a ByRef cell cannot hold another cell");
      return false;
    }
    return toVariant(v, out);
  }
  // Other numbers (numpy scalars, Decimal, Fraction): whole ones by __index__, the rest by __float__.
  if (PyIndex_Check(o)) {
    PyObject* i = PyNumber_Index(o);
    if (!i) return false;
    bool ok = toVariant(i, out);
    Py_DECREF(i);
    return ok;
  }
  if (Py_TYPE(o)->tp_as_number && Py_TYPE(o)->tp_as_number->nb_float) {
    double d = PyFloat_AsDouble(o);
    if (d == -1.0 && PyErr_Occurred()) return false;
    out = Variant(d);
    return true;
  }
  PyErr_Format(PyExc_TypeError, "tessel cannot pass a value of type '%.200s' (use bool, int, float, str, None, "
               "a tuple or list of these, a tessel object, tessel.Empty, tessel.Null or tessel.Missing)", Py_TYPE(o)->tp_name);
  return false;
}

PyObject* fromVariant(const Variant& v) {
  switch (v.type()) {
    case VarType::Empty: Py_INCREF(gEmpty); return gEmpty;
    case VarType::Null: Py_INCREF(gNull); return gNull;
    case VarType::Error: Py_INCREF(gMissing); return gMissing;
    case VarType::Boolean: return PyBool_FromLong(v.toBool());
    case VarType::Byte:
    case VarType::Integer:
    case VarType::Long: return PyLong_FromLong(v.toLong());
    case VarType::LongLong: return PyLong_FromLongLong(v.toLongLong());
    case VarType::Single: return PyFloat_FromDouble(singleToDouble(v.toSingle()));
    case VarType::Double: return PyFloat_FromDouble(v.toDouble());
    case VarType::String: return fromUtf16(v.str());
    case VarType::Object: return wrapObject(v.objRef());
    case VarType::VariantArray: {
      const std::vector<Variant>& items = v.items();
      PyObject* tuple = PyTuple_New(static_cast<Py_ssize_t>(items.size()));
      for (size_t i = 0; tuple && i < items.size(); ++i) {
        PyObject* item = fromVariant(items[i]);
        if (!item) {
          Py_CLEAR(tuple);
          break;
        }
        PyTuple_SET_ITEM(tuple, static_cast<Py_ssize_t>(i), item);
      }
      return tuple;
    }
    case VarType::Array: break;
  }
  // The array flag alone is no value; it reads as an empty tuple.
  return PyTuple_New(0);
}

void initValueTypes(py::module_& m) {
  PyObject* sentinelType = PyType_FromSpec(&sentinelSpec);
  PyObject* byRef = PyType_FromSpec(&byRefSpec);
  if (!sentinelType || !byRef) throw py::error_already_set();
  auto* st = reinterpret_cast<PyTypeObject*>(sentinelType);
  // The sentinels live as long as the process: the library may hand them out at any time.
  gEmpty = makeSentinel(st, "Empty");
  gNull = makeSentinel(st, "Null");
  gMissing = makeSentinel(st, "Missing");
  gByRefType = reinterpret_cast<PyTypeObject*>(byRef);
  if (!gEmpty || !gNull || !gMissing) throw py::error_already_set();
  m.attr("Empty") = py::reinterpret_borrow<py::object>(gEmpty);
  m.attr("Null") = py::reinterpret_borrow<py::object>(gNull);
  m.attr("Missing") = py::reinterpret_borrow<py::object>(gMissing);
  m.attr("ByRef") = py::reinterpret_borrow<py::object>(byRef);
  Py_DECREF(sentinelType);  // the instances keep their type
}

}  // namespace tessel::python
