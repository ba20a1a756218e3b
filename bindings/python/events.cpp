// Errors, events and the seams of the host program (message box, ending the program).
//
// Python callbacks run inside library calls (an event raised by a property let, a dialog asked
// by the error path). Their exceptions cannot travel through the library's own frames, so the
// callback's exception is kept per thread and raised by the enclosing call once the library
// has returned. SystemExit and KeyboardInterrupt unwind the library at once, as the
// termination does.
#include "host.h"

#include <tessel/core/MessageBox.h>
#include <tessel/core/Text.h>

#include <cstdio>
#include <new>

namespace tessel::python {

PyObject* gErrorType = nullptr;

namespace {

struct ThreadState {
  int depth = 0;                 // library calls under way on this thread
  PyObject* pending[3] = {};     // type, value, traceback of a callback's exception
};
thread_local ThreadState tState;

// The seams' Python handlers (process-wide, as the library's seams are).
PyObject* gMessageBox = nullptr;
PyObject* gTerminate = nullptr;

class Gil {
 public:
  Gil() : s_(PyGILState_Ensure()) {}
  ~Gil() { PyGILState_Release(s_); }

 private:
  PyGILState_STATE s_;
};

void fetchNormalized(PyObject*& t, PyObject*& v, PyObject*& tb) {
  PyErr_Fetch(&t, &v, &tb);
  if (!t) return;
  PyErr_NormalizeException(&t, &v, &tb);
  if (tb && v) PyException_SetTraceback(v, tb);
}

}  // namespace

// ---- errors ---------------------------------------------------------------------------------

void raiseError(const Error& e) {
  PyObject* description = fromUtf8(e.description());
  PyObject* source = fromUtf8(e.source());
  PyObject* number = PyLong_FromLong(e.number());
  PyObject* message = nullptr;
  PyObject* inst = nullptr;
  if (description && source && number) {
    // Object errors read best in hexadecimal (0x8004000D), the runtime's own in decimal (438).
    char num[16];
    if (e.number() < 0) std::snprintf(num, sizeof num, "0x%08X", static_cast<unsigned>(e.number()));
    else std::snprintf(num, sizeof num, "%d", static_cast<int>(e.number()));
    message = e.source().empty() ? PyUnicode_FromFormat("%U (error %s)", description, num)
                                 : PyUnicode_FromFormat("%U: %U (error %s)", source, description, num);
  }
  if (message) inst = PyObject_CallOneArg(gErrorType, message);
  if (inst && PyObject_SetAttrString(inst, "number", number) == 0 &&
      PyObject_SetAttrString(inst, "source", source) == 0 &&
      PyObject_SetAttrString(inst, "description", description) == 0) {
    PyErr_SetObject(gErrorType, inst);
  }
  Py_XDECREF(inst);
  Py_XDECREF(message);
  Py_XDECREF(number);
  Py_XDECREF(source);
  Py_XDECREF(description);
}

CallScope::CallScope() {
  for (int i = 0; i < 3; ++i) {
    saved_[i] = tState.pending[i];
    tState.pending[i] = nullptr;
  }
  ++tState.depth;
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

// ---- connections ----------------------------------------------------------------------------

namespace {

PyTypeObject* gConnectionType = nullptr;

struct ConnectionObject {
  PyObject_HEAD
  Connection* conn;     // owns the handler; null once disconnected
  PyObject* callback;   // the handler calls it through a borrowed pointer: drop conn first
  PyObject* label;      // "cls_DrawRect.MOVED"
};

void disconnectNow(ConnectionObject* c) {
  delete std::exchange(c->conn, nullptr);
  Py_CLEAR(c->callback);
}

int connectionTraverse(PyObject* o, visitproc visit, void* arg) {
  Py_VISIT(Py_TYPE(o));
  Py_VISIT(reinterpret_cast<ConnectionObject*>(o)->callback);
  return 0;
}
int connectionClear(PyObject* o) {
  disconnectNow(reinterpret_cast<ConnectionObject*>(o));
  return 0;
}
void connectionDealloc(PyObject* o) {
  PyTypeObject* type = Py_TYPE(o);
  PyObject_GC_UnTrack(o);
  auto* c = reinterpret_cast<ConnectionObject*>(o);
  disconnectNow(c);
  Py_CLEAR(c->label);
  PyObject_GC_Del(o);
  Py_DECREF(type);
}
PyObject* connectionDisconnect(PyObject* o, PyObject*) {
  disconnectNow(reinterpret_cast<ConnectionObject*>(o));
  Py_RETURN_NONE;
}
PyObject* connectionEnter(PyObject* o, PyObject*) {
  Py_INCREF(o);
  return o;
}
PyObject* connectionExit(PyObject* o, PyObject*) {
  disconnectNow(reinterpret_cast<ConnectionObject*>(o));
  Py_RETURN_FALSE;
}
PyObject* connectionConnected(PyObject* o, void*) {
  return PyBool_FromLong(reinterpret_cast<ConnectionObject*>(o)->conn != nullptr);
}
PyObject* connectionRepr(PyObject* o) {
  auto* c = reinterpret_cast<ConnectionObject*>(o);
  return PyUnicode_FromFormat("<tessel.Connection %U (%s)>", c->label, c->conn ? "connected" : "disconnected");
}

PyMethodDef connectionMethods[] = {
    {"disconnect", connectionDisconnect, METH_NOARGS, "Stops the callback from being called; idempotent."},
    {"__enter__", connectionEnter, METH_NOARGS, nullptr},
    {"__exit__", connectionExit, METH_VARARGS, "Disconnects at the end of a with block."},
    {nullptr, nullptr, 0, nullptr},
};
PyGetSetDef connectionGetSet[] = {
    {"connected", connectionConnected, nullptr, "False once disconnected.", nullptr},
    {nullptr, nullptr, nullptr, nullptr, nullptr},
};
PyType_Slot connectionSlots[] = {
    {Py_tp_dealloc, reinterpret_cast<void*>(connectionDealloc)},
    {Py_tp_traverse, reinterpret_cast<void*>(connectionTraverse)},
    {Py_tp_clear, reinterpret_cast<void*>(connectionClear)},
    {Py_tp_repr, reinterpret_cast<void*>(connectionRepr)},
    {Py_tp_methods, connectionMethods},
    {Py_tp_getset, connectionGetSet},
    {Py_tp_doc, const_cast<char*>(
                    "A listener of one event, made by obj.connect(event, callback). It owns the callback: the "
                    "object holds its listeners weakly, so the callback stays connected exactly as long as this "
                    "connection lives and is not disconnected.")},
    {0, nullptr},
};
PyType_Spec connectionSpec = {"tessel.Connection", sizeof(ConnectionObject), 0,
                              Py_TPFLAGS_DEFAULT | Py_TPFLAGS_HAVE_GC, connectionSlots};

// Calls the Python callback with the event's arguments; ByRef ones go in cells, and what the
// callback leaves in a cell goes back to the raiser.
void callHandler(PyObject* callback, const EventInfo* event, std::span<Variant> args) {
  Gil gil;
  const size_t n = args.size();
  PyObject* cb = callback;
  Py_INCREF(cb);  // the callback may disconnect itself
  PyObject* tuple = PyTuple_New(static_cast<Py_ssize_t>(n));
  bool ok = tuple != nullptr;
  for (size_t i = 0; ok && i < n; ++i) {
    const bool byRef = i < event->params.size() && event->params[i].byRef;
    PyObject* v = fromVariant(args[i]);
    if (v && byRef) {
      PyObject* cell = newByRef(v);
      Py_DECREF(v);
      v = cell;
    }
    if (!v) ok = false;
    else PyTuple_SET_ITEM(tuple, i, v);
  }
  PyObject* result = ok ? PyObject_Call(cb, tuple, nullptr) : nullptr;
  if (result) {
    Py_DECREF(result);
    for (size_t i = 0; i < n; ++i) {
      if (!(i < event->params.size() && event->params[i].byRef)) continue;
      Variant v;
      PyObject* cell = PyTuple_GET_ITEM(tuple, i);
      if (toVariant(reinterpret_cast<ByRefObject*>(cell)->value, v)) args[i] = std::move(v);
      else ok = false;  // the argument stays as it was; the TypeError reaches the script
      if (!ok) break;
    }
  }
  Py_XDECREF(tuple);
  Py_DECREF(cb);
  if (!result || !ok) stashCallbackError("tessel event handler");
}

}  // namespace

PyObject* connectEvent(PyObject* source, PyObject* event, PyObject* callback) {
  Object* obj = nativeOf(source);
  if (!obj) {
    PyErr_SetString(PyExc_TypeError, "connect() needs a tessel object");
    return nullptr;
  }
  if (!PyUnicode_Check(event)) {
    PyErr_SetString(PyExc_TypeError, "the event name must be a str");
    return nullptr;
  }
  if (!PyCallable_Check(callback)) {
    PyErr_Format(PyExc_TypeError, "the callback must be callable, not '%.200s'", Py_TYPE(callback)->tp_name);
    return nullptr;
  }
  const char* name = PyUnicode_AsUTF8(event);
  if (!name) return nullptr;
  return guarded([&]() -> PyObject* {
    const EventInfo* info = obj->classInfo().findEvent(name);
    if (!info) raise(rt::NoSuchMember);
    auto* c = PyObject_GC_New(ConnectionObject, gConnectionType);
    if (!c) return nullptr;
    c->conn = nullptr;
    c->callback = callback;
    Py_INCREF(callback);
    c->label = fromUtf8(obj->classInfo().name() + "." + info->name);
    PyObject_GC_Track(c);
    PyObject* result = reinterpret_cast<PyObject*>(c);
    if (!c->label) {
      Py_DECREF(result);
      return nullptr;
    }
    try {
      c->conn = new Connection(info->connect(*obj, [callback, info](std::span<Variant> args) {
        callHandler(callback, info, args);
      }));
    } catch (...) {
      Py_DECREF(result);
      throw;
    }
    return result;
  });
}

// ---- seams ----------------------------------------------------------------------------------

namespace {

const char* buttonsName(MsgButtons b) {
  switch (b) {
    case MsgButtons::AbortRetryIgnore: return "AbortRetryIgnore";
    case MsgButtons::YesNo: return "YesNo";
    default: return "OK";
  }
}

// The answer that lets the program end when the answerer itself failed: the failure then
// reaches the script instead of a retry loop.
MsgResult endingAnswer(MsgButtons b) {
  switch (b) {
    case MsgButtons::AbortRetryIgnore: return MsgResult::Abort;
    case MsgButtons::YesNo: return MsgResult::Yes;
    default: return MsgResult::OK;
  }
}

bool offered(MsgButtons b, MsgResult r) {
  switch (b) {
    case MsgButtons::AbortRetryIgnore: return r == MsgResult::Abort || r == MsgResult::Retry || r == MsgResult::Ignore;
    case MsgButtons::YesNo: return r == MsgResult::Yes || r == MsgResult::No;
    default: return r == MsgResult::OK;
  }
}

MsgResult askPython(const MsgBoxRequest& r) {
  Gil gil;
  PyObject* h = gMessageBox;
  if (!h) return endingAnswer(r.buttons);
  Py_INCREF(h);
  PyObject* answer = PyObject_CallFunction(h, "NNssi", fromUtf8(r.prompt), fromUtf8(r.title), buttonsName(r.buttons),
                                           r.icon == MsgIcon::Critical ? "Critical" : "", r.defaultButton);
  Py_DECREF(h);
  MsgResult result = endingAnswer(r.buttons);
  if (answer) {
    const char* name = PyUnicode_Check(answer) ? PyUnicode_AsUTF8(answer) : nullptr;
    MsgResult pressed = name ? buttonFromName(name) : MsgResult::Cancel;
    if (name && offered(r.buttons, pressed)) result = pressed;
    else if (!PyErr_Occurred())
      PyErr_Format(PyExc_ValueError, "the message box answer must name one of its buttons (%s), not %R",
                   buttonsName(r.buttons), answer);
    Py_DECREF(answer);
  }
  if (PyErr_Occurred()) stashCallbackError("tessel message box handler");
  return result;
}

// Ending the program from Python: the script's handler first (if any), then the library
// throws Terminated, which the call turns into SystemExit(1). The process is never cut off
// under the interpreter's feet, so buffered output and finally blocks are not lost.
void terminatePython() {
  Gil gil;
  PyObject* h = gTerminate;
  if (!h) return;
  Py_INCREF(h);
  PyObject* r = PyObject_CallNoArgs(h);
  Py_DECREF(h);
  if (r) Py_DECREF(r);
  else stashCallbackError("tessel terminate handler");
}

void setHandler(PyObject*& slot, py::object handler) {
  if (!handler.is_none() && !PyCallable_Check(handler.ptr())) throw py::type_error("the handler must be callable or None");
  PyObject* old = slot;
  slot = handler.is_none() ? nullptr : handler.inc_ref().ptr();
  Py_XDECREF(old);
}

}  // namespace

void initErrors(py::module_& m) {
  PyObject* dict = Py_BuildValue("{s:i,s:s,s:s}", "number", 0, "source", "", "description", "");
  if (!dict) throw py::error_already_set();
  gErrorType = PyErr_NewExceptionWithDoc(
      "tessel.Error",
      "A run-time error raised by Tessel.\n\n"
      "number: the error number as a client sees it (an int, e.g. -2147217311 for 0x80040FA1)\n"
      "source: where it was raised, \"module.procedure\" (\"cls_DrawRect.MOVECENTER\")\n"
      "description: the library's text for it",
      PyExc_Exception, dict);
  Py_DECREF(dict);
  if (!gErrorType) throw py::error_already_set();
  m.attr("Error") = py::reinterpret_borrow<py::object>(gErrorType);
}

void initEvents(py::module_& m) {
  PyObject* type = PyType_FromSpec(&connectionSpec);
  if (!type) throw py::error_already_set();
  gConnectionType = reinterpret_cast<PyTypeObject*>(type);
  m.attr("Connection") = py::reinterpret_borrow<py::object>(type);

  // The library's own way to end the program (_exit) would cut the interpreter off without
  // flushing; from Python the program ends by SystemExit instead.
  setTerminateHandler(terminatePython);

  m.def(
      "set_message_box",
      [](py::object handler) {
        setHandler(gMessageBox, handler);
        if (gMessageBox) setMessageBoxHandler(askPython);
        else setMessageBoxHandler(nullptr);
      },
      py::arg("handler"),
      "Installs the answerer of every dialog of the library: handler(prompt, title, buttons, icon, default)\n"
      "returns the name of the pressed button. buttons is \"OK\", \"AbortRetryIgnore\" or \"YesNo\"; icon\n"
      "\"\" or \"Critical\"; default the 1-based number of the default button; the names are \"OK\",\n"
      "\"Abort\", \"Retry\", \"Ignore\", \"Yes\" and \"No\". None restores the built-in service (a GTK dialog\n"
      "when a display is there, else the text on standard error and the default button).");
  m.def(
      "set_terminate",
      [](py::object handler) { setHandler(gTerminate, handler); },
      py::arg("handler"),
      "Installs a handler (no arguments) that runs when the library ends the program at once.\n"
      "Afterwards the call under way raises SystemExit(1), or the handler's own exception if it\n"
      "raised one. None restores the built-in behaviour (SystemExit(1) alone).");
  // Before the interpreter goes away: no library seam may call into it any more.
  py::module_::import("atexit").attr("register")(py::cpp_function([] {
    setMessageBoxHandler(nullptr);
    setTerminateHandler(nullptr);
    Py_CLEAR(gMessageBox);
    Py_CLEAR(gTerminate);
  }));
}

}  // namespace tessel::python
