// The extension module tessel._tessel: the module's own types, the classes and enumerations
// of the type library, and the raw late-bound call. The package tessel/__init__.py lays it out.
#include "host.h"

#include <tessel/core/mdl_GDIPlus.h>

#include <tessel/core/Text.h>

namespace tessel::python {
namespace {

// A str argument that names something in the type library; 0 for a text that can name
// nothing (see nameOf), -1 with a TypeError for anything but a str.
int nameArgument(PyObject* o, const char* what, std::string_view& out) {
  if (!PyUnicode_Check(o)) {
    PyErr_Format(PyExc_TypeError, "%s must be a str, not '%.200s'", what, Py_TYPE(o)->tp_name);
    return -1;
  }
  return nameOf(o, out);
}

bool kindFromName(PyObject* o, InvokeKind& kind) {
  std::string_view k;
  const int valid = nameArgument(o, "kind", k);
  if (valid < 0) return false;
  if (valid) {
    for (auto [name, value] : {std::pair{"get", InvokeKind::Get}, {"let", InvokeKind::Let}, {"set", InvokeKind::Set},
                               {"method", InvokeKind::Method}})
      if (equalsIgnoreCase(k, name)) {
        kind = value;
        return true;
      }
  }
  PyErr_Format(PyExc_ValueError, "kind must be \"get\", \"let\", \"set\" or \"method\", not %R", o);
  return false;
}

// invoke(obj, name, kind, /, *args, **named): the three leading parameters are positional only,
// so that every keyword (obj=, name=, kind= included) is a named argument of the member.
PyObject* invoke(PyObject*, PyObject* const* args, Py_ssize_t nargsf, PyObject* kwnames) {
  const Py_ssize_t nargs = PyVectorcall_NARGS(nargsf);
  if (nargs < 3) {
    PyErr_Format(PyExc_TypeError,
                 "invoke() takes the object, the member's name and the kind first, then the member's arguments "
                 "(%zd positional argument%s given)",
                 nargs, nargs == 1 ? "" : "s");
    return nullptr;
  }
  std::string_view name;
  const int valid = nameArgument(args[1], "the member name", name);
  if (valid < 0) return nullptr;
  InvokeKind kind;
  if (!kindFromName(args[2], kind)) return nullptr;
  Object* target = nativeOf(args[0]);
  const MemberInfo* member = nullptr;
  if (target) {
    if (name.empty() && valid) member = target->classInfo().defaultMember();
    else if (valid) member = target->classInfo().find(name);
  }
  if (!member) {
    // What a late-bound call reports: Nothing (91), no object (424), no such member (438).
    return guarded([&]() -> PyObject* {
      Variant v;
      if (!target && !toVariant(args[0], v)) return nullptr;
      if (!target) raise(args[0] == Py_None ? rt::ObjectNotSet : 424);
      if (!valid) RaiseCallError(rt::NoSuchMember, *target, "", "kein gültiger Name");
      RaiseCallError(rt::NoSuchMember, *target, name, name.empty() ? "kein Standardmember" : name);
    });
  }
  return callMember(target, member, kind, args + 3, static_cast<size_t>(nargs - 3), kwnames, nullptr);
}

PyMethodDef moduleFunctions[] = {
    {"invoke", reinterpret_cast<PyCFunction>(reinterpret_cast<void*>(invoke)), METH_FASTCALL | METH_KEYWORDS,
     "invoke($module, obj, name, kind, /, *args, **named)\n--\n\n"
     "The raw late-bound call: kind is \"get\", \"let\", \"set\" or \"method\"; for let and set the assigned "
     "value is the last positional argument. An empty name is the default member. Every keyword is a named "
     "argument of the member. Unknown members raise tessel.NoSuchMemberError (438)."},
    {nullptr, nullptr, 0, nullptr},
};

py::object classObject(const ClassInfo& ci) {
  ClassCache* c = cacheFor(ci);
  if (!c) throw py::error_already_set();
  return py::reinterpret_borrow<py::object>(reinterpret_cast<PyObject*>(c->type));
}

py::str text(const std::string& s) {
  PyObject* o = fromUtf8(s);
  if (!o) throw py::error_already_set();
  return py::reinterpret_steal<py::str>(o);
}

// The type library as plain data, for tools that describe it (the type stub, the docs).
py::dict describeParam(const ParamInfo& p, size_t i) {
  py::dict d;
  d["name"] = text(p.name.empty() ? "arg" + std::to_string(i + 1) : p.name);
  d["type"] = text(p.typeName);
  d["optional"] = p.optional || p.hasDefault;
  d["byref"] = p.byRef;
  if (p.hasDefault) d["default"] = steal(fromVariant(p.defaultValue));
  return d;
}

py::object describeAccessor(const Accessor& a) {
  if (!a) return py::none();
  py::list params;
  for (size_t i = 0; i < a.params.size(); ++i) params.append(describeParam(a.params[i], i));
  py::dict d;
  d["params"] = params;
  d["result"] = text(a.resultType);
  return d;
}

py::dict describeClassData(const ClassInfo& ci) {
  py::dict d;
  d["name"] = text(ci.name());
  d["description"] = text(ci.description());
  d["creatable"] = ci.creatable();
  d["global"] = ci.isGlobal();
  d["default"] = ci.defaultMember() ? py::object(text(ci.defaultMember()->name)) : py::none();
  py::list values;
  for (auto& v : ci.valueMembers()) values.append(text(v));
  d["values"] = values;
  d["display"] = text(ci.displayMember());
  d["count"] = text(ci.countMember());
  d["item"] = text(ci.itemMember());
  py::list members;
  for (auto& m : ci.members()) {
    py::dict md;
    md["name"] = text(m.name);
    md["description"] = text(m.description);
    md["method"] = describeAccessor(m.method);
    md["get"] = describeAccessor(m.get);
    md["let"] = describeAccessor(m.let);
    md["set"] = describeAccessor(m.set);
    members.append(md);
  }
  d["members"] = members;
  py::list events;
  for (auto& e : ci.events()) {
    py::dict ed;
    ed["name"] = text(e.name);
    ed["description"] = text(e.description);
    py::list params;
    for (size_t i = 0; i < e.params.size(); ++i) params.append(describeParam(e.params[i], i));
    ed["params"] = params;
    events.append(ed);
  }
  d["events"] = events;
  return d;
}

}  // namespace
}  // namespace tessel::python

using namespace tessel;
using namespace tessel::python;

PYBIND11_MODULE(_tessel, m) {
  m.doc() = "The native part of the tessel package; import tessel instead.";
  initValueTypes(m);
  initErrors(m);
  initMemberTypes(m);
  initObjectTypes(m);
  initEvents(m);

  m.def(
      "native_handles",
      [] {
        py::dict d;
        for (auto& [kind, count] : mdl_GDIPlus::LiveHandles()) d[kind] = count;
        return d;
      },
      "How many native objects of each kind the library owns right now, by kind: what a test\n"
      "watches to see that nothing leaks.");
  m.def(
      "classes",
      [] {
        py::dict d;
        for (const ClassInfo* ci : TypeLib::classes()) d[text(ci->name())] = classObject(*ci);
        return d;
      },
      "Every class of the type library by name.");
  m.def(
      "find_class",
      [](py::handle name) -> py::object {
        std::string_view n;
        const int valid = nameArgument(name.ptr(), "the class name", n);
        if (valid < 0) throw py::error_already_set();
        const ClassInfo* ci = valid ? TypeLib::findClass(n) : nullptr;
        return ci ? classObject(*ci) : py::none();
      },
      py::arg("name"), "The class of that name (any case), or None.");
  m.def(
      "global_instance",
      [](py::handle name) -> py::object {
        std::string_view n;
        const int valid = nameArgument(name.ptr(), "the name", n);
        if (valid < 0) throw py::error_already_set();
        const ClassInfo* ci = valid ? TypeLib::findClass(n) : nullptr;
        if (!ci || !ci->isGlobal() || ci->name() != n) return py::none();
        return steal(guarded([&]() -> PyObject* { return wrapObject(ci->instance()); }));
      },
      py::arg("name"), "The calling thread's instance of a global object or module, or None.");
  m.def(
      "enums",
      [] {
        py::list l;
        for (auto& e : TypeLib::enums()) {
          py::list members;
          for (auto& [name, value] : e.members) members.append(py::make_tuple(text(name), value));
          l.append(py::make_tuple(text(e.name), members, text(e.description)));
        }
        return l;
      },
      "Every enumeration of the type library: (name, [(member, value), ...], description).");
  m.def(
      "describe",
      [](py::handle cls) {
        for (const ClassInfo* ci : TypeLib::classes())
          if (classObject(*ci).ptr() == cls.ptr()) return describeClassData(*ci);
        throw py::type_error("describe() takes a class of the type library");
      },
      py::arg("cls"),
      "A class of the type library as plain data: name, description, creatable, global, default, values,\n"
      "display, count, item, members (name, description and the method / get / let / set accessors with\n"
      "their params and result type) and events (name, description, params). An accessor a member lacks\n"
      "is None; a param is a dict of name, type, optional, byref and, where registered, default.");
  if (PyModule_AddFunctions(m.ptr(), moduleFunctions) < 0) throw py::error_already_set();
}
