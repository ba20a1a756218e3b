// The extension module tessel._tessel: the types of the host, the classes and enumerations
// of the type library, and the raw late-bound call. The package tessel/__init__.py lays it out.
#include "host.h"

#include <tessel/core/Text.h>

#include <unordered_map>

namespace tessel::python {
namespace {

// A class of the type library as a Python callable: calling it makes a new object (New).
struct ClassHandle {
  const ClassInfo* ci;
};

std::string describeClass(const ClassInfo& ci) {
  std::string s = ci.name() + (ci.isGlobal()        ? ": a global object of Tessel (one per thread).\n"
                               : ci.creatable()     ? ": a class of Tessel; calling it makes a new object.\n"
                                                    : ": a class of Tessel; its objects come from the library.\n");
  s += "\nMembers:\n";
  for (auto& m : ci.members()) {
    std::string d = describeMember(ci, m);
    for (size_t start = 0; start < d.size();) {
      size_t end = d.find('\n', start);
      if (end == std::string::npos || end == start) break;
      s += "  " + d.substr(start, end - start) + "\n";
      start = end + 1;
    }
  }
  if (!ci.events().empty()) {
    s += "\nEvents (obj.connect(name, callback)):";
    for (auto& e : ci.events()) s += " " + e.name;
    s += "\n";
  }
  return s;
}

py::object classObject(const ClassInfo& ci) {
  static std::unordered_map<const ClassInfo*, PyObject*> made;  // one Python object per class
  auto it = made.find(&ci);
  if (it != made.end()) return py::reinterpret_borrow<py::object>(it->second);
  py::object o = py::cast(ClassHandle{&ci});
  made.emplace(&ci, o.inc_ref().ptr());
  return o;
}

InvokeKind kindFromName(const std::string& k) {
  if (equalsIgnoreCase(k, "get")) return InvokeKind::Get;
  if (equalsIgnoreCase(k, "let")) return InvokeKind::Let;
  if (equalsIgnoreCase(k, "set")) return InvokeKind::Set;
  if (equalsIgnoreCase(k, "method")) return InvokeKind::Method;
  throw py::value_error("kind must be \"get\", \"let\", \"set\" or \"method\", not \"" + k + "\"");
}

}  // namespace
}  // namespace tessel::python

using namespace tessel;
using namespace tessel::python;

PYBIND11_MODULE(_tessel, m) {
  m.doc() = "The native part of the tessel package; import tessel instead.";
  initValueTypes(m);
  initErrors(m);
  initObjectTypes(m);
  initEvents(m);

  py::class_<ClassHandle> classType(m, "Class", "A class of Tessel's type library.");
  classType
      .def("__call__",
           [](const ClassHandle& c) {
             return steal(guarded([&]() -> PyObject* { return wrapObject(c.ci->create()); }));
           })
      .def("__instancecheck__",
           [](const ClassHandle& c, py::handle o) {
             Object* obj = nativeOf(o.ptr());
             return obj && &obj->classInfo() == c.ci;
           })
      // A descriptor's __get__, so that help() shows the class like a routine, with its members.
      .def("__get__", [](py::object self, py::handle, py::handle) { return self; })
      .def("__repr__", [](const ClassHandle& c) { return "<tessel class " + c.ci->name() + ">"; })
      .def_property_readonly("__doc__", [](const ClassHandle& c) { return steal(fromUtf8(describeClass(*c.ci))); })
      .def_property_readonly("__signature__",
                             [](const ClassHandle&) {
                               return py::module_::import("inspect").attr("Signature")(py::list());
                             })
      .def_property_readonly("creatable", [](const ClassHandle& c) { return c.ci->creatable(); },
                             "Whether calling the class makes a new object.")
      .def_property_readonly("is_global", [](const ClassHandle& c) { return c.ci->isGlobal(); },
                             "Whether the class is a global object (one per thread).")
      .def_property_readonly("members",
                             [](const ClassHandle& c) {
                               py::list l;
                               for (auto& mem : c.ci->members()) l.append(steal(fromUtf8(mem.name)));
                               return l;
                             },
                             "The member names in interface order.")
      .def_property_readonly("events", [](const ClassHandle& c) {
        py::list l;
        for (auto& e : c.ci->events()) l.append(steal(fromUtf8(e.name)));
        return l;
      }, "The event names.");

  {
    // A type's own __name__ cannot be replaced by assignment; the instances' name goes straight
    // into the type's dict (pydoc reads it to title the class).
    py::object name = py::module_::import("builtins").attr("property")(
        py::cpp_function([](const ClassHandle& c) { return c.ci->name(); }));
    auto* t = reinterpret_cast<PyTypeObject*>(classType.ptr());
    if (PyDict_SetItemString(t->tp_dict, "__name__", name.ptr()) < 0 ||
        PyDict_SetItemString(t->tp_dict, "__qualname__", name.ptr()) < 0)
      throw py::error_already_set();
    PyType_Modified(t);
  }

  m.def(
      "classes",
      [] {
        py::dict d;
        for (const ClassInfo* ci : TypeLib::classes()) d[py::str(ci->name())] = classObject(*ci);
        return d;
      },
      "Every class of the type library by name.");
  m.def(
      "find_class",
      [](const std::string& name) -> py::object {
        const ClassInfo* ci = TypeLib::findClass(name);
        return ci ? classObject(*ci) : py::none();
      },
      py::arg("name"), "The class of that name (any case), or None.");
  m.def(
      "global_instance",
      [](const std::string& name) -> py::object {
        const ClassInfo* ci = TypeLib::findClass(name);
        if (!ci || !ci->isGlobal() || ci->name() != name) return py::none();
        return steal(guarded([&]() -> PyObject* { return wrapObject(ci->instance()); }));
      },
      py::arg("name"), "The calling thread's instance of a global object or module, or None.");
  m.def(
      "enums",
      [] {
        py::list l;
        for (auto& e : TypeLib::enums()) {
          py::list members;
          for (auto& [name, value] : e.members) members.append(py::make_tuple(steal(fromUtf8(name)), value));
          l.append(py::make_tuple(steal(fromUtf8(e.name)), members));
        }
        return l;
      },
      "Every enumeration of the type library: (name, [(member, value), ...]).");
  m.def(
      "invoke",
      [](py::handle obj, const std::string& name, const std::string& kind, py::args args, py::kwargs named) {
        const InvokeKind k = kindFromName(kind);
        return steal(guarded([&]() -> PyObject* {
          Variant target;
          if (!toVariant(obj.ptr(), target)) return nullptr;
          if (!target.isObject()) raise(424);
          if (target.isNothing()) raise(rt::ObjectNotSet);
          const MemberInfo* member =
              name.empty() ? target.obj()->classInfo().defaultMember() : target.obj()->classInfo().find(name);
          if (!member) raise(rt::NoSuchMember);
          return callMemberDict(target.obj(), member, k, &PyTuple_GET_ITEM(args.ptr(), 0),
                                static_cast<size_t>(PyTuple_GET_SIZE(args.ptr())), named.ptr(), nullptr);
        }));
      },
      py::arg("obj"), py::arg("name"), py::arg("kind"),
      "invoke(obj, name, kind, *args, **named)\n\nThe raw late-bound call: kind is \"get\", \"let\", \"set\" or "
      "\"method\"; for let and set the assigned value is the last positional argument. An empty name is the "
      "default member. Unknown members raise tessel.Error 438.");
}
