// The Python scripting host: what the sources of the extension share.
//
// Each class of the type library is a Python type of its own (tessel.cls_DrawRect), a subclass
// of tessel.Object made from the class's type-library entry the first time the class is met.
// A native object has one Python object while Python holds it; that object holds one native
// reference. Members are not bound one by one: attribute access, calls and assignments go
// through the type library. All these types are plain CPython types, because they sit on the
// hot path; pybind11 lays out the module and its functions.
#pragma once

#include <Python.h>

#include <pybind11/pybind11.h>

#include <tessel/core/TypeLib.h>

#include <exception>
#include <string>
#include <vector>

namespace py = pybind11;

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

// A str as a name for the type library (member, event, parameter, class, button): its UTF-8
// form over its whole length. 1 for a name; 0 when it can be no name (a NUL inside, or a lone
// surrogate, which has no UTF-8 form), with no Python error left; -1 with a Python error.
int nameOf(PyObject* s, std::string_view& out);
// Python's own names (`__x`), which never reach the type library.
bool isDunder(PyObject* name);

// ---- objects and classes (objects.cpp) ------------------------------------------------------

// What the module keeps per class of the type library: its Python type, the attribute spellings
// met so far, and the members that the class's entry names for Python's protocols.
struct ClassCache {
  const ClassInfo* ci = nullptr;
  PyTypeObject* type = nullptr;  // lives as long as the process
  PyObject* names = nullptr;     // str -> int code (lookupName); every spelling met so far
  // Per member: read directly on attribute access (a property without parameters) or handed
  // out as a bound member (methods and properties with parameters).
  std::vector<bool> direct;
  const MemberInfo* count = nullptr;    // a collection: len() and iteration over item 1..count
  const MemberInfo* item = nullptr;
  std::vector<const MemberInfo*> values;  // the tuple form, iterated
  const MemberInfo* display = nullptr;  // the text repr() shows
  const MemberInfo* release = nullptr;  // DELETE: called at the end of a `with` block
  const MemberInfo* clone = nullptr;    // CLONE: copy.copy
};

constexpr long kConnect = -1;    // the module's own `connect`
constexpr long kNotMember = -2;  // no member of the class: Python's own attribute lookup
constexpr long kLookupFailed = -3;
// A member index, kConnect or kNotMember for an attribute name; kLookupFailed with a Python error.
long lookupName(ClassCache& c, PyObject* name);

// The Python object of a native one.
struct ObjectInstance {
  PyObject_HEAD
  Object* native;     // one reference; never null for an object the module made
  ClassCache* cls;
  PyObject* weakrefs;
  PyObject* links;    // a list of the live connections to the object's events, or null
  PyObject* pin;      // the object itself, while it has connections and the library holds it (objects.cpp)
};
inline ObjectInstance* asInstance(PyObject* o) { return reinterpret_cast<ObjectInstance*>(o); }

extern PyTypeObject* gObjectType;  // tessel.Object, the base of every class
extern PyTypeObject* gClassType;   // tessel.Class, the type of every class
void initObjectTypes(py::module_& m);

// The native object of a tessel object, or null for anything else.
inline Object* nativeOf(PyObject* o) { return PyObject_TypeCheck(o, gObjectType) ? asInstance(o)->native : nullptr; }
// The Python object of a native one (None for Nothing); the same one while Python holds it.
PyObject* wrapObject(const Ref<Object>& o);
PyObject* wrapObject(Object* o);
// The cache and Python type of a class, made on first use; null with a Python error.
ClassCache* cacheFor(const ClassInfo& ci);

// ---- members (members.cpp) ------------------------------------------------------------------

extern PyTypeObject* gBoundType;     // tessel.Member: a member of an object, or of a class
extern PyTypeObject* gPropertyType;  // tessel.Property: a property without parameters of a class
void initMemberTypes(py::module_& m);

enum class BoundMode : uint8_t { Member, Connector };
// A member bound to `self`, or with a null `self` the class's own descriptor of it.
PyObject* newBound(PyObject* self, const ClassInfo& ci, const MemberInfo* m, BoundMode mode);
PyObject* newProperty(const ClassInfo& ci, const MemberInfo& m);

// Reads a property without parameters (or a method without arguments) of `obj`.
PyObject* readMember(Object* obj, const MemberInfo& m);
// Assigns to a property without parameters: objects (and None) are set, other values let.
int assignMember(Object* obj, const MemberInfo& m, PyObject* value);

// The late-bound call shared by every path: positional arguments (ByRef cells written back),
// keyword arguments as named ones, and for let / set the assigned value last. A null member
// means the default member.
PyObject* callMember(Object* target, const MemberInfo* member, InvokeKind kind, PyObject* const* args,
                     size_t nargs, PyObject* kwnames, PyObject* assigned);
// The same with the keywords as a dict (or null).
PyObject* callMemberDict(Object* target, const MemberInfo* member, InvokeKind kind, PyObject* const* args,
                         size_t nargs, PyObject* kwargs, PyObject* assigned);

// Descriptions for help(): a member with its parameters, types and defaults; the events.
std::string describeMember(const ClassInfo& ci, const MemberInfo& m);
std::string describeEvents(const ClassInfo& ci);
std::string describeParams(const std::vector<ParamInfo>& params, size_t count);

// ---- errors (errors.cpp) --------------------------------------------------------------------

extern PyObject* gErrorType;
void initErrors(py::module_& m);

// Raises the library error as the tessel.Error subclass that fits its number. For an unknown
// attribute `attribute` and `obj` fill AttributeError's name and obj, and `message` (a str)
// replaces the text built from source and description.
void raiseError(const Error& e, PyObject* attribute = nullptr, PyObject* obj = nullptr, PyObject* message = nullptr);
// Automation's own 438 for an attribute name the class does not have.
void raiseNoMember(PyObject* obj, PyObject* name, const ClassInfo& ci);

// Runs a call into the library. Converts tessel::Error to tessel.Error, Terminated to
// SystemExit, and raises an exception that a Python callback (event handler, message-box
// answerer) raised during the call in its place. `body` returns a new reference, or null with
// a Python error set.
template <class F>
PyObject* guarded(F&& body);

// While the interpreter shuts down it ends daemon threads the next time they wait for its lock
// (pthread_exit, which unwinds the thread's C++ frames as a foreign exception). Below a Python
// callback lie the library's frames, which trap every exception, and catching the unwinding
// there, or anywhere while another exception is being handled, terminates the process. So no
// handler may see it: a guard whose scope is left neither normally nor by a C++ exception
// stops the thread in its destructor, which runs before any handler; the thread sleeps until
// the process exits.
[[noreturn]] void sleepUntilExit();
class ThreadEndGuard {
 public:
  ThreadEndGuard() = default;
  ThreadEndGuard(const ThreadEndGuard&) = delete;
  ThreadEndGuard& operator=(const ThreadEndGuard&) = delete;
  ~ThreadEndGuard() {
    if (ending()) sleepUntilExit();
  }
  void passed() { passed_ = true; }
  // Left by the thread's ending: not passed, and no C++ exception under way.
  bool ending() const { return !passed_ && std::uncaught_exceptions() == 0; }

 private:
  bool passed_ = false;
};

// The state guarded() keeps per thread.
struct CallScope {
  CallScope();
  ~CallScope();
  // False (with RecursionError set) when callbacks have re-entered the library too deeply on
  // this thread: the call must not run, its stack might not suffice.
  bool entered() const { return entered_; }
  // Finishes the call: result or null; applies the exceptions callbacks left behind.
  PyObject* finish(PyObject* result);
  void onError(const Error& e);
  void onTerminated();
  void onUnknown();

 private:
  PyObject* saved_[3];
  bool entered_;
};

template <class F>
PyObject* guarded(F&& body) {
  CallScope scope;
  PyObject* result = nullptr;
  if (!scope.entered()) return scope.finish(nullptr);
  try {
    ThreadEndGuard ending;
    result = body();
    ending.passed();
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

// ---- events and seams (events.cpp) ----------------------------------------------------------

void initEvents(py::module_& m);

// obj.connect(event, callback): a tessel.Connection, owned by the object (see events.cpp).
PyObject* connectEvent(PyObject* source, PyObject* event, PyObject* callback);
// Disconnects every connection of the object and lets go of them (the collector's clear and
// the object's end).
void dropLinks(ObjectInstance* source);

}  // namespace tessel::python
