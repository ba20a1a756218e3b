// The extension module tessel._tessel: the module's own types, the classes and enumerations
// of the type library, and the raw late-bound call. The package tessel/__init__.py lays it out.
#include "host.h"

#include <tessel/core/Text.h>

namespace tessel::python {
namespace {

InvokeKind kindFromName(const std::string& k) {
  if (equalsIgnoreCase(k, "get")) return InvokeKind::Get;
  if (equalsIgnoreCase(k, "let")) return InvokeKind::Let;
  if (equalsIgnoreCase(k, "set")) return InvokeKind::Set;
  if (equalsIgnoreCase(k, "method")) return InvokeKind::Method;
  throw py::value_error("kind must be \"get\", \"let\", \"set\" or \"method\", not \"" + k + "\"");
}

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
      "classes",
      [] {
        py::dict d;
        for (const ClassInfo* ci : TypeLib::classes()) d[text(ci->name())] = classObject(*ci);
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
      "default member. Unknown members raise tessel.NoSuchMemberError (438).");
}
