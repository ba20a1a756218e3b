// Errors: tessel.Error and its classes, and the per-thread state of calls into the library.
//
// Python callbacks run inside library calls (an event raised by a property let, a dialog asked
// by the error path). Their exceptions cannot travel through the library's own frames, so the
// callback's exception is kept per thread and raised by the enclosing call once the library
// has returned. SystemExit and KeyboardInterrupt unwind the library at once, as the
// termination does.
#include "host.h"

#include <algorithm>
#include <cstdio>
#include <new>
#include <string_view>
#include <vector>

namespace tessel::python {

PyObject* gErrorType = nullptr;

namespace {

// The classes of tessel.Error that also derive from the exception a Python user catches.
PyObject* gTypeMismatchType = nullptr;  // 13, TypeError
PyObject* gArgumentType = nullptr;      // the call does not fit the member (448, 449, 450), TypeError
PyObject* gParameterType = nullptr;     // the other parameter errors, ValueError
PyObject* gNoSuchMemberType = nullptr;  // 438, AttributeError

// Library calls nested on one thread, each through a Python callback (an event handler or a
// dialog answerer that calls back in). A level costs some 2.6 KB of C stack in the library and
// the interpreter (6.5 KB with the sanitizers): this bound keeps a runaway handler within about
// 1.5 MB, well inside the 8 MB a thread gets by default, however high the script sets the
// recursion limit.
constexpr int kMaxDepth = 200;

struct ThreadState {
  int depth = 0;              // library calls under way on this thread
  PyObject* pending[3] = {};  // type, value, traceback of a callback's exception
};
thread_local ThreadState tState;

void fetchNormalized(PyObject*& t, PyObject*& v, PyObject*& tb) {
  PyErr_Fetch(&t, &v, &tb);
  if (!t) return;
  PyErr_NormalizeException(&t, &v, &tb);
  if (tb && v) PyException_SetTraceback(v, tb);
}

// The library raises its own errors as object errors (0x80040000 | n): the low part tells
// what they are.
PyObject* errorTypeFor(int32_t number) {
  const uint32_t u = static_cast<uint32_t>(number);
  const int32_t n = (u & 0xFFFF0000u) == 0x80040000u ? static_cast<int32_t>(u & 0xFFFFu) : number;
  switch (n) {
    case rt::TypeMismatch:
      return gTypeMismatchType;
    case rt::NamedArgumentNotFound: case rt::ArgumentNotOptional: case rt::WrongArgumentCount:
      return gArgumentType;
    case rt::NoSuchMember:
      return gNoSuchMemberType;
    default:
      // The parameter errors as the error handler classifies them.
      return mdl_Err::IsParameterError(n) ? gParameterType : gErrorType;
  }
}

PyObject* makeClass(const char* name, const char* doc, PyObject* builtin) {
  PyObject* bases = PyTuple_Pack(2, gErrorType, builtin);
  if (!bases) throw py::error_already_set();
  PyObject* type = PyErr_NewExceptionWithDoc(name, doc, bases, nullptr);
  Py_DECREF(bases);
  if (!type) throw py::error_already_set();
  return type;
}

}  // namespace

void raiseError(const Error& e, PyObject* attribute, PyObject* obj, PyObject* message) {
  PyObject* type = errorTypeFor(e.number());
  PyObject* description = fromUtf8(e.description());
  PyObject* source = fromUtf8(e.source());
  PyObject* number = PyLong_FromLong(e.number());
  PyObject* text = nullptr;
  PyObject* inst = nullptr;
  if (description && source && number) {
    // Object errors read best in hexadecimal (0x8004000D), automation's own in decimal (438).
    char num[16];
    if (e.number() < 0) std::snprintf(num, sizeof num, "0x%08X", static_cast<unsigned>(e.number()));
    else std::snprintf(num, sizeof num, "%d", static_cast<int>(e.number()));
    text = message              ? PyUnicode_FromFormat("%U (error %s)", message, num)
           : e.source().empty() ? PyUnicode_FromFormat("%U (error %s)", description, num)
                                : PyUnicode_FromFormat("%U: %U (error %s)", source, description, num);
  }
  if (text) inst = PyObject_CallOneArg(type, text);
  bool ok = inst && PyObject_SetAttrString(inst, "number", number) == 0 &&
            PyObject_SetAttrString(inst, "source", source) == 0 &&
            PyObject_SetAttrString(inst, "description", description) == 0;
  // AttributeError's own fields, which its message suggestions read.
  if (ok && attribute && PyErr_GivenExceptionMatches(type, PyExc_AttributeError))
    ok = PyObject_SetAttrString(inst, "name", attribute) == 0 && PyObject_SetAttrString(inst, "obj", obj) == 0;
  if (ok) PyErr_SetObject(type, inst);
  Py_XDECREF(inst);
  Py_XDECREF(text);
  Py_XDECREF(number);
  Py_XDECREF(source);
  Py_XDECREF(description);
}

namespace {

// Edit distance without regard to ASCII case, capped: names further apart are no suggestion.
size_t distance(std::string_view a, std::string_view b, size_t cap) {
  if (a.size() > b.size() + cap || b.size() > a.size() + cap) return cap + 1;
  auto fold = [](char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c; };
  std::vector<size_t> row(b.size() + 1);
  for (size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (size_t i = 1; i <= a.size(); ++i) {
    size_t diagonal = row[0];
    row[0] = i;
    for (size_t j = 1; j <= b.size(); ++j) {
      const size_t up = row[j];
      row[j] = std::min({row[j] + 1, row[j - 1] + 1, diagonal + (fold(a[i - 1]) == fold(b[j - 1]) ? 0 : 1)});
      diagonal = up;
    }
  }
  return row[b.size()];
}

// The member spelled most like `name`, as Python suggests for its own attributes (a subclass
// of AttributeError gets no suggestion from the interpreter, so the message carries it).
std::string closestMember(const ClassInfo& ci, std::string_view name) {
  const size_t cap = std::max<size_t>(1, name.size() / 3);
  std::string best;
  size_t bestDistance = cap + 1;
  for (const MemberInfo& m : ci.members()) {
    const size_t d = distance(name, m.name, cap);
    if (d < bestDistance) bestDistance = d, best = m.name;
  }
  return best;
}

}  // namespace

void raiseNoMember(PyObject* obj, PyObject* name, const ClassInfo& ci) {
  // The name as given, whatever it holds (a NUL, a lone surrogate); a suggestion only for a name.
  std::string_view attribute;
  const int valid = nameOf(name, attribute);
  if (valid < 0) return;
  const std::string like = valid ? closestMember(ci, attribute) : std::string();
  PyObject* message =
      like.empty() ? PyUnicode_FromFormat("'%s' object has no member '%U'", ci.name().c_str(), name)
                   : PyUnicode_FromFormat("'%s' object has no member '%U'. Did you mean: '%s'?", ci.name().c_str(), name,
                                          like.c_str());
  if (!message) return;
  const std::string text = runtimeErrorText(rt::NoSuchMember) + ": " + (valid ? std::string(attribute) : "kein gültiger Name");
  raiseError(Error(rt::NoSuchMember, text, valid ? ci.name() + "." + std::string(attribute) : ci.name()), name, obj,
             message);
  Py_DECREF(message);
}

CallScope::CallScope() : entered_(true) {
  for (int i = 0; i < 3; ++i) {
    saved_[i] = tState.pending[i];
    tState.pending[i] = nullptr;
  }
  if (++tState.depth > kMaxDepth) {
    PyErr_Format(PyExc_RecursionError,
                 "maximum recursion depth exceeded: callbacks re-entered tessel more than %d calls deep", kMaxDepth);
    entered_ = false;
  }
}

CallScope::~CallScope() = default;

void CallScope::onError(const Error& e) { raiseError(e); }

void CallScope::onTerminated() {
  // A callback's exception (say, a terminate handler's own) takes the place of SystemExit.
  if (tState.pending[0]) return;
  PyObject* code = PyLong_FromLong(1);
  PyErr_SetObject(PyExc_SystemExit, code);
  Py_XDECREF(code);
}

void CallScope::onUnknown() {
  try {
    throw;
  } catch (const std::bad_alloc&) {
    PyErr_NoMemory();
  } catch (const std::exception& e) {
    PyErr_Format(PyExc_RuntimeError, "tessel: %s", e.what());
  } catch (...) {
    PyErr_SetString(PyExc_RuntimeError, "tessel: unknown failure");
  }
}

PyObject* CallScope::finish(PyObject* result) {
  --tState.depth;
  if (tState.pending[0]) {
    // The callback's exception is raised in the call's place; an error of the call itself
    // becomes its context.
    Py_XDECREF(result);
    result = nullptr;
    PyObject *t, *v, *tb;
    fetchNormalized(t, v, tb);
    if (v && v != tState.pending[1]) PyException_SetContext(tState.pending[1], v);
    else Py_XDECREF(v);
    Py_XDECREF(t);
    Py_XDECREF(tb);
    PyErr_Restore(tState.pending[0], tState.pending[1], tState.pending[2]);
  }
  for (int i = 0; i < 3; ++i) tState.pending[i] = saved_[i];
  return result;
}

void stashCallbackError(const char* where) {
  if (tState.depth == 0) {
    PyObject* ctx = PyUnicode_FromString(where);
    PyErr_WriteUnraisable(ctx);
    Py_XDECREF(ctx);
    return;
  }
  PyObject *t, *v, *tb;
  fetchNormalized(t, v, tb);
  if (!t) return;
  const bool fatal = !PyErr_GivenExceptionMatches(t, PyExc_Exception);
  if (!tState.pending[0]) {
    tState.pending[0] = t, tState.pending[1] = v, tState.pending[2] = tb;
  } else if (fatal) {
    // Ending the program wins over an earlier callback's failure, which becomes its context.
    PyException_SetContext(v, tState.pending[1]);
    Py_XDECREF(tState.pending[0]);
    Py_XDECREF(tState.pending[2]);
    tState.pending[0] = t, tState.pending[1] = v, tState.pending[2] = tb;
  } else {
    PyErr_Restore(t, v, tb);
    PyObject* ctx = PyUnicode_FromString(where);
    PyErr_WriteUnraisable(ctx);
    Py_XDECREF(ctx);
  }
  if (fatal) throw Terminated{};
}


void initErrors(py::module_& m) {
  PyObject* dict = Py_BuildValue("{s:i,s:s,s:s}", "number", 0, "source", "", "description", "");
  if (!dict) throw py::error_already_set();
  gErrorType = PyErr_NewExceptionWithDoc(
      "tessel.Error",
      "A run-time error raised by Tessel.\n\n"
      "number: the error number as a client sees it (an int, e.g. -2147217311 for 0x80040FA1)\n"
      "source: where it was raised, \"module.procedure\" (\"cls_DrawRect.MOVECENTER\")\n"
      "description: the library's text for it\n\n"
      "Errors that a Python user would catch as built-in exceptions are raised as the subclasses\n"
      "TypeMismatchError and ArgumentError (TypeError), ParameterError (ValueError) and\n"
      "NoSuchMemberError (AttributeError).",
      PyExc_Exception, dict);
  Py_DECREF(dict);
  if (!gErrorType) throw py::error_already_set();
  gTypeMismatchType = makeClass("tessel.TypeMismatchError",
                                "A value of the wrong type (error 13); also a TypeError.", PyExc_TypeError);
  gArgumentType = makeClass("tessel.ArgumentError",
                            "Arguments that do not fit the member: a named argument it does not have (448), a "
                            "required one left out (449), too many (450). Also a TypeError.",
                            PyExc_TypeError);
  gParameterType = makeClass("tessel.ParameterError",
                             "An invalid parameter value (errors 5, 6, 9, 11, 380, ...); also a ValueError.",
                             PyExc_ValueError);
  gNoSuchMemberType = makeClass("tessel.NoSuchMemberError",
                                "The object has no such member (error 438); also an AttributeError.",
                                PyExc_AttributeError);
  // They live as long as the process; the module holds references of its own.
  m.attr("Error") = py::reinterpret_borrow<py::object>(gErrorType);
  m.attr("TypeMismatchError") = py::reinterpret_borrow<py::object>(gTypeMismatchType);
  m.attr("ArgumentError") = py::reinterpret_borrow<py::object>(gArgumentType);
  m.attr("ParameterError") = py::reinterpret_borrow<py::object>(gParameterType);
  m.attr("NoSuchMemberError") = py::reinterpret_borrow<py::object>(gNoSuchMemberType);
}

}  // namespace tessel::python
