// The Python scripting host: what the sources of the extension share.
//
// Every tessel object appears as one pybind11 type, tessel.Object, held by the intrusive
// Ref, so that one native object is one Python object while Python holds it. Its members are
// not bound one by one: attribute access, calls and assignments go through the type library.
// The small helper types (bound members, ByRef cells, connections, the Empty / Null / Missing
// sentinels) are plain CPython types, because they sit on the hot path.
#pragma once

#include <Python.h>

#include <pybind11/pybind11.h>

#include <tessel/core/TypeLib.h>

#include <string>

namespace py = pybind11;

PYBIND11_DECLARE_HOLDER_TYPE(T, tessel::Ref<T>, true)

namespace pybind11 {
// Every object is shown as tessel.Object whatever its C++ class: skip the dynamic-type lookup,
// which would fail for every class anyway.
template <>
struct polymorphic_type_hook<tessel::Object> {
  static const void* get(const tessel::Object* src, const std::type_info*& type) {
    type = nullptr;
    return src;
  }
};
}  // namespace pybind11

namespace tessel::python {

// ---- values (convert.cpp) -------------------------------------------------------------------

// The sentinels and the ByRef cell type; created by initValueTypes.
extern PyObject* gEmpty;
extern PyObject* gNull;
extern PyObject* gMissing;
extern PyTypeObject* gByRefType;
void initValueTypes(py::module_& m);

struct ByRefObject {
  PyObject_HEAD
  PyObject* value;  // never null
};
inline bool isByRef(PyObject* o) { return Py_TYPE(o) == gByRefType || PyObject_TypeCheck(o, gByRefType); }
PyObject* newByRef(PyObject* value);  // steals nothing; new reference

// Python value -> Variant. False with a Python error set (TypeError, OverflowError) when the
// value has no Variant form. A ByRef cell stands for its value.
bool toVariant(PyObject* o, Variant& out);
// Variant -> new reference (nullptr with a Python error only when memory runs out).
PyObject* fromVariant(const Variant& v);

PyObject* fromUtf8(const std::string& s);  // invalid bytes replaced

// ---- objects (dispatch.cpp) -----------------------------------------------------------------

extern PyTypeObject* gObjectType;
void initObjectTypes(py::module_& m);
// The native object of a tessel.Object, or null for anything else (and for an instance that
// was never bound to one).
Object* nativeOf(PyObject* o);
// The Python object of a native one (None for Nothing); the same one while Python holds it.
PyObject* wrapObject(const Ref<Object>& o);
PyObject* wrapObject(Object* o);

// The late-bound call shared by every path: positional arguments (ByRef cells written back),
// keyword arguments as named ones, and for let / set the assigned value last. A null member
// means the default member.
PyObject* callMember(Object* target, const MemberInfo* member, InvokeKind kind, PyObject* const* args,
                     size_t nargs, PyObject* kwnames, PyObject* assigned);
// The same with the keywords as a dict (or null).
PyObject* callMemberDict(Object* target, const MemberInfo* member, InvokeKind kind, PyObject* const* args,
                         size_t nargs, PyObject* kwargs, PyObject* assigned);

// A description of a member for help(): parameters with types and defaults.
std::string describeMember(const ClassInfo& ci, const MemberInfo& m);

// ---- errors, events and seams (events.cpp) --------------------------------------------------

extern PyObject* gErrorType;
void initErrors(py::module_& m);
void initEvents(py::module_& m);

// obj.connect(event, callback): a tessel.Connection that owns the callback.
PyObject* connectEvent(PyObject* source, PyObject* event, PyObject* callback);

// Runs a call into the library. Converts tessel::Error to tessel.Error, Terminated to
// SystemExit, and raises an exception that a Python callback (event handler, message-box
// answerer) raised during the call in its place. `body` returns a new reference, or null with
// a Python error set.
template <class F>
PyObject* guarded(F&& body);

// The state guarded() keeps per thread.
struct CallScope {
  CallScope();
  ~CallScope();
  // Finishes the call: result or null; applies the exceptions callbacks left behind.
  PyObject* finish(PyObject* result);
  void onError(const Error& e);
  void onTerminated();
  void onUnknown();

 private:
  PyObject* saved_[3];
};

template <class F>
PyObject* guarded(F&& body) {
  CallScope scope;
  PyObject* result = nullptr;
  try {
    result = body();
  } catch (const Error& e) {
    scope.onError(e);
  } catch (const Terminated&) {
    scope.onTerminated();
  } catch (py::error_already_set& e) {
    e.restore();
  } catch (...) {
    scope.onUnknown();
  }
  return scope.finish(result);
}

// For pybind11-defined functions: a null result becomes error_already_set.
inline py::object steal(PyObject* o) {
  if (!o) throw py::error_already_set();
  return py::reinterpret_steal<py::object>(o);
}

// Called from inside a Python callback that the library invoked, with the callback's exception
// set: keeps it for the enclosing call (or reports it as unraisable when there is none). For
// SystemExit and KeyboardInterrupt it throws Terminated, so that no more library code runs.
void stashCallbackError(const char* where);

// Raises tessel.Error for a library error (with a Python error set afterwards).
void raiseError(const Error& e);

}  // namespace tessel::python
