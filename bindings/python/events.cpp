// Events and the seams of the host program (message box, ending the program).
//
// Connections. A native event source holds its listeners weakly: the Connection owns the
// handler. From Python, the source's Python object owns its connections (ObjectInstance::links),
// so a handler stays connected whether or not the script keeps the tessel.Connection, until
// conn.disconnect() or until the source is gone; and while it has connections the Python object
// keeps itself alive for as long as the library holds the native object (objects.cpp). A
// connection refers back to its source without a reference, so keeping a connection does not
// keep its source; the collector traverses source -> connections -> callbacks, so a handler
// that closes over its source makes a cycle the collector frees.
//
// Callbacks and the end of the interpreter. Event handlers and the seams are Python code that
// the library calls from inside its own frames. While the interpreter shuts down they are not
// called at all. A daemon thread that is inside one when shutdown begins is ended by the
// interpreter the next time it waits for the interpreter lock; it stops at the callback and
// sleeps until the process exits (ThreadEndGuard, host.h), giving back no lock it does not hold.
#include "host.h"

#include <tessel/core/MessageBox.h>
#include <tessel/core/Text.h>

#include <pthread.h>
#include <unistd.h>

#include <new>

namespace tessel::python {

namespace {

bool interpreterFinalizing() {
#if PY_VERSION_HEX >= 0x030D0000
  return Py_IsFinalizing();
#else
  return _Py_IsFinalizing();
#endif
}

struct Callback {
  const char* name;       // for an exception nobody can take (sys.unraisablehook)
  const char* recursion;  // for RecursionError's message
};
constexpr Callback kHandler{"tessel event handler", " in a tessel event handler"};
constexpr Callback kAnswerer{"tessel message box handler", " in a tessel message box handler"};
constexpr Callback kTerminator{"tessel terminate handler", " in a tessel terminate handler"};

// A callback's hold on the interpreter: the lock (taken only when the thread does not hold it
// already, and then released again) and a level of Python's recursion count. Ended by the
// interpreter, the thread gives back neither (the lock is not its own then): it sleeps. No try
// blocks here, so that the ending reaches the destructors before any handler.
class CallbackScope : public ThreadEndGuard {
 public:
  explicit CallbackScope(const Callback& where) {
    if (!PyGILState_Check()) {
      ensured_ = true;
      state_ = PyGILState_Ensure();
    }
    entered_ = Py_EnterRecursiveCall(where.recursion) == 0;
    if (!entered_) stashCallbackError(where.name);
  }
  ~CallbackScope() {
    if (ending()) sleepUntilExit();
    if (entered_) Py_LeaveRecursiveCall();
    if (ensured_) PyGILState_Release(state_);
  }
  bool entered() const { return entered_; }

 private:
  bool ensured_ = false;
  bool entered_ = false;
  PyGILState_STATE state_{};
};

// Runs `body`, which calls into Python, from the library. False when the interpreter is
// shutting down and `body` did not run. An exception of `body` (Terminated) goes on.
template <class F>
bool intoPython(const Callback& where, F&& body) {
  if (interpreterFinalizing()) return false;
  CallbackScope scope(where);
  if (scope.entered()) body();
  scope.passed();
  return true;
}

// ---- connections ----------------------------------------------------------------------------

PyTypeObject* gConnectionType = nullptr;

struct ConnectionObject {
  PyObject_HEAD
  Connection* conn;         // owns the handler; null once disconnected
  PyObject* callback;       // the handler calls it through a borrowed pointer: drop conn first
  ObjectInstance* source;   // no reference: the source owns this connection; null once off it
  PyObject* label;          // "cls_DrawRect.MOVED"
};

ConnectionObject* asConnection(PyObject* o) { return reinterpret_cast<ConnectionObject*>(o); }

// Takes the connection off its source's list; the last one lets the source go (which may
// free it, so nothing touches the source afterwards). The caller holds a reference to `c`.
void detach(ConnectionObject* c) {
  ObjectInstance* s = std::exchange(c->source, nullptr);
  if (!s || !s->links) return;
  PyObject* links = s->links;
  for (Py_ssize_t i = 0; i < PyList_GET_SIZE(links); ++i) {
    if (PyList_GET_ITEM(links, i) == reinterpret_cast<PyObject*>(c)) {
      PySequence_DelItem(links, i);
      break;
    }
  }
  if (PyList_GET_SIZE(links) == 0) {
    Py_CLEAR(s->links);
    PyObject* pin = std::exchange(s->pin, nullptr);
    Py_XDECREF(pin);
  }
}

void disconnectNow(ConnectionObject* c) {
  delete std::exchange(c->conn, nullptr);
  detach(c);
  Py_CLEAR(c->callback);
}

int connectionTraverse(PyObject* o, visitproc visit, void* arg) {
  Py_VISIT(Py_TYPE(o));
  Py_VISIT(asConnection(o)->callback);
  return 0;
}
int connectionClear(PyObject* o) {
  disconnectNow(asConnection(o));
  return 0;
}
void connectionDealloc(PyObject* o) {
  PyTypeObject* type = Py_TYPE(o);
  PyObject_GC_UnTrack(o);
  auto* c = asConnection(o);
  disconnectNow(c);  // a connection still on its source is owned by it, so none is here
  Py_CLEAR(c->label);
  PyObject_GC_Del(o);
  Py_DECREF(type);
}
PyObject* connectionDisconnect(PyObject* o, PyObject*) {
  disconnectNow(asConnection(o));
  Py_RETURN_NONE;
}
PyObject* connectionEnter(PyObject* o, PyObject*) {
  Py_INCREF(o);
  return o;
}
PyObject* connectionExit(PyObject* o, PyObject*) {
  disconnectNow(asConnection(o));
  Py_RETURN_FALSE;
}
PyObject* connectionConnected(PyObject* o, void*) { return PyBool_FromLong(asConnection(o)->conn != nullptr); }
PyObject* connectionRepr(PyObject* o) {
  auto* c = asConnection(o);
  return PyUnicode_FromFormat("<tessel.Connection %U (%s)>", c->label, c->conn ? "connected" : "disconnected");
}

PyMethodDef connectionMethods[] = {
    {"disconnect", connectionDisconnect, METH_NOARGS, "Stops the callback from being called; idempotent."},
    {"__enter__", connectionEnter, METH_NOARGS, nullptr},
    {"__exit__", connectionExit, METH_VARARGS, "Disconnects at the end of a with block."},
    {nullptr, nullptr, 0, nullptr},
};
PyGetSetDef connectionGetSet[] = {
    {"connected", connectionConnected, nullptr, "False once disconnected, or once the source is gone.", nullptr},
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
                    "A listener of one event, made by obj.connect(event, callback). The object keeps its "
                    "connections: the callback is called until disconnect() (or the end of a with block), or "
                    "until the object is gone, whether or not this connection is kept.")},
    {0, nullptr},
};
// Connections are made by connect() only.
PyType_Spec connectionSpec = {"tessel.Connection", sizeof(ConnectionObject), 0,
                              Py_TPFLAGS_DEFAULT | Py_TPFLAGS_HAVE_GC | Py_TPFLAGS_DISALLOW_INSTANTIATION,
                              connectionSlots};

// Calls the Python callback with the event's arguments; ByRef ones go in cells, and what the
// callback leaves in a cell goes back to the raiser.
void runHandler(PyObject* callback, const EventInfo* event, std::span<Variant> args) {
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
  if (!result || !ok) stashCallbackError(kHandler.name);
}

void callHandler(PyObject* callback, const EventInfo* event, std::span<Variant> args) {
  intoPython(kHandler, [&] { runHandler(callback, event, args); });
}

}  // namespace

// The thread is marked as exiting: every cancellation point (pause() is one) would start the
// unwinding again, unless cancellation is off.
void sleepUntilExit() {
  pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, nullptr);
  for (;;) pause();
}

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
  std::string_view name;
  const int valid = nameOf(event, name);
  if (valid < 0) return nullptr;
  return guarded([&]() -> PyObject* {
    const EventInfo* info = valid ? obj->classInfo().findEvent(name) : nullptr;
    if (!info) {
      if (!valid) RaiseCallError(rt::NoSuchMember, *obj, "", "kein gültiger Name");
      RaiseCallError(rt::NoSuchMember, *obj, name, "kein Ereignis " + std::string(name));
    }
    auto* s = asInstance(source);
    if (!s->links && !(s->links = PyList_New(0))) return nullptr;
    auto* c = PyObject_GC_New(ConnectionObject, gConnectionType);
    if (!c) return nullptr;
    c->conn = nullptr;
    c->source = nullptr;
    c->callback = callback;
    Py_INCREF(callback);
    c->label = fromUtf8(obj->classInfo().name() + "." + info->name);
    PyObject_GC_Track(c);
    PyObject* result = reinterpret_cast<PyObject*>(c);
    if (!c->label || PyList_Append(s->links, result) < 0) {
      Py_DECREF(result);
      return nullptr;
    }
    c->source = s;
    if (!s->pin && PyObject_GC_IsFinalized(source)) {
      // Its finalizer has run and will not run again: pin it now (objects.cpp).
      Py_INCREF(source);
      s->pin = source;
    }
    try {
      c->conn = new Connection(info->connect(*obj, [callback, info](std::span<Variant> args) {
        callHandler(callback, info, args);
      }));
    } catch (...) {
      disconnectNow(c);
      Py_DECREF(result);
      throw;
    }
    return result;
  });
}

void dropLinks(ObjectInstance* source) {
  PyObject* links = std::exchange(source->links, nullptr);
  if (!links) return;
  for (Py_ssize_t i = 0; i < PyList_GET_SIZE(links); ++i) {
    auto* c = asConnection(PyList_GET_ITEM(links, i));
    c->source = nullptr;
    disconnectNow(c);
  }
  Py_DECREF(links);
}

// ---- seams ----------------------------------------------------------------------------------

namespace {

// The seams' Python handlers (process-wide, as the library's seams are).
PyObject* gMessageBox = nullptr;
PyObject* gTerminate = nullptr;

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
  MsgResult result = endingAnswer(r.buttons);
  intoPython(kAnswerer, [&] {
    PyObject* h = gMessageBox;
    if (!h) return;
    Py_INCREF(h);
    PyObject* answer = PyObject_CallFunction(h, "NNssi", fromUtf8(r.prompt), fromUtf8(r.title), buttonsName(r.buttons),
                                             r.icon == MsgIcon::Critical ? "Critical" : "", r.defaultButton);
    Py_DECREF(h);
    if (answer) {
      // The whole text: "Ignore\0junk" names no button.
      std::string_view name;
      const int valid = PyUnicode_Check(answer) ? nameOf(answer, name) : 0;
      const MsgResult pressed = valid > 0 ? buttonFromName(name) : MsgResult::Cancel;
      if (valid > 0 && offered(r.buttons, pressed)) result = pressed;
      else if (!PyErr_Occurred())
        PyErr_Format(PyExc_ValueError, "the message box answer must name one of its buttons (%s), not %R",
                     buttonsName(r.buttons), answer);
      Py_DECREF(answer);
    }
    if (PyErr_Occurred()) stashCallbackError(kAnswerer.name);
  });
  return result;
}

// Ending the program from Python: the script's handler first (if any), then the library
// throws Terminated, which the call turns into SystemExit(1). The process is never cut off
// under the interpreter's feet, so buffered output and finally blocks are not lost.
void terminatePython() {
  intoPython(kTerminator, [] {
    PyObject* h = gTerminate;
    if (!h) return;
    Py_INCREF(h);
    PyObject* r = PyObject_CallNoArgs(h);
    Py_DECREF(h);
    if (r) Py_DECREF(r);
    else stashCallbackError(kTerminator.name);
  });
}

void setHandler(PyObject*& slot, py::object handler) {
  if (!handler.is_none() && !PyCallable_Check(handler.ptr())) throw py::type_error("the handler must be callable or None");
  PyObject* old = slot;
  slot = handler.is_none() ? nullptr : handler.inc_ref().ptr();
  Py_XDECREF(old);
}

}  // namespace


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
