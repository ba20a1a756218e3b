#!/usr/bin/env python3
"""Writes tessel/__init__.pyi, the type stub of the package, from the type library.

Run after the module is built, with the built package on PYTHONPATH (the build does):

    PYTHONPATH=build/python python3 make_stub.py build/python/tessel/__init__.pyi

Everything comes from what the module reports at run time (tessel._tessel.describe and the
package's own layout); nothing here knows a class of the library. Classes of global objects are
stubbed under a private name (_sys_Global), since the module's sys_Global is the instance.
"""
import keyword
import math
import os
import sys

# This script sits next to the package's sources, which have no native part: the built package
# on PYTHONPATH is the one to describe.
_here = os.path.dirname(os.path.abspath(__file__))
sys.path[:] = [p for p in sys.path if os.path.abspath(p or os.curdir) != _here]

import tessel  # noqa: E402
from tessel import _tessel  # noqa: E402

# Type-library type names as Python types, for results and for values passed in.
SIMPLE = {
    "Boolean": "bool",
    "Byte": "int",
    "Integer": "int",
    "Long": "int",
    "LongLong": "int",
    "Single": "float",
    "Double": "float",
    "String": "str",
    "Variant": "Any",
    "Object": "Optional[Object]",
    "": "None",
}

HEADER = '''\
# The type stub of the tessel package, generated from Tessel's type library by
# bindings/python/make_stub.py when the module is built. Edit the type library, not this file.
from typing import Any, Callable, Final, Generic, Iterator, Literal, Optional, TypeVar, Union, overload

_V = TypeVar("_V")

class _Indexed(Generic[_V]):
    """A property with parameters: read as obj.NAME[args] or obj.NAME(args), assigned as obj.NAME[args] = value."""
    def __getitem__(self, args: Any) -> _V: ...
    def __setitem__(self, args: Any, value: Any) -> None: ...
    def __call__(self, *args: Any, **named: Any) -> _V: ...

class Error(Exception):
    number: int
    source: str
    description: str

class TypeMismatchError(Error, TypeError): ...
class ArgumentError(Error, TypeError): ...
class ParameterError(Error, ValueError): ...
class NoSuchMemberError(Error, AttributeError): ...

class _Special:
    def __bool__(self) -> Literal[False]: ...

Empty: Final[_Special]
Null: Final[_Special]
Missing: Final[_Special]

class ByRef:
    value: Any
    def __init__(self, value: Any = ...) -> None: ...

class Connection:
    @property
    def connected(self) -> bool: ...
    def disconnect(self) -> None: ...
    def __enter__(self) -> Connection: ...
    def __exit__(self, *exc: object) -> Literal[False]: ...

class Member:
    def __call__(self, *args: Any, **kwargs: Any) -> Any: ...
    def __getitem__(self, key: Any) -> Any: ...
    def __setitem__(self, key: Any, value: Any) -> None: ...

class Property: ...

class Class(type):
    @property
    def creatable(self) -> bool: ...
    @property
    def is_global(self) -> bool: ...
    @property
    def members(self) -> list[str]: ...
    @property
    def events(self) -> list[str]: ...

class Object:
    @property
    def __tessel_class__(self) -> str: ...
    def _repr_png_(self) -> Optional[bytes]: ...

class Enumeration:
    __members__: dict[str, int]
    def __iter__(self) -> Iterator[tuple[str, int]]: ...
    def __len__(self) -> int: ...
    def __contains__(self, name: object) -> bool: ...
    def name_of(self, value: int) -> Optional[str]: ...

def invoke(obj: Object, name: str, kind: Literal["get", "let", "set", "method"], /, *args: Any, **named: Any) -> Any: ...
def native_handles() -> dict[str, int]: ...
def set_message_box(handler: Optional[Callable[[str, str, str, str, int], str]]) -> None: ...
def set_terminate(handler: Optional[Callable[[], object]]) -> None: ...
'''


def class_name(info):
    """The stub's name of a class: private for a global object, whose module name is its instance."""
    return "_" + info["name"] if info["global"] else info["name"]


class Writer:
    def __init__(self, infos):
        self.infos = infos
        self.names = {i["name"]: class_name(i) for i in infos}
        self.enums = {name for name, _, _ in _tessel.enums()}  # passed and returned as ints
        self.lines = []

    def emit(self, text=""):
        self.lines.append(text)

    def result(self, type_name):
        if type_name in SIMPLE:
            return SIMPLE[type_name]
        if type_name in self.enums:
            return "int"
        return self.names.get(type_name, "Object")

    def value(self, param):
        """A parameter's type: what it takes, a ByRef cell too where it is ByRef."""
        t = param["type"]
        if t in SIMPLE:
            py = SIMPLE[t]
        elif t in self.enums:
            py = "int"
        else:
            py = f"Optional[{self.names.get(t, 'Object')}]"  # Nothing is None
        return f"Union[{py}, ByRef]" if param["byref"] else py

    @staticmethod
    def default(param):
        d = param.get("default")
        if isinstance(d, (bool, int, str)) or (isinstance(d, float) and math.isfinite(d)):
            return repr(d)
        return "..."  # no default, or one a stub cannot spell (tessel.Missing)

    def params(self, params, skip_last=False):
        params = params[:-1] if skip_last else params
        out = ["self"]
        for p in params:
            name = p["name"] if p["name"].isidentifier() and not keyword.iskeyword(p["name"]) else None
            if name is None:
                return ["self", "*args: Any", "**kwargs: Any"]
            text = f"{name}: {self.value(p)}"
            if p["optional"]:
                text += f" = {self.default(p)}"
            out.append(text)
        return out

    def docstring(self, text, indent):
        if text:
            escaped = text.replace("\\", "\\\\").replace('"""', '\\"\\"\\"')
            self.emit(f'{indent}"""{escaped}"""')

    def function(self, name, params, result, doc, indent="    "):
        self.emit(f"{indent}def {name}({', '.join(params)}) -> {result}:")
        if doc:
            self.docstring(doc, indent + "    ")
        else:
            self.lines[-1] += " ..."

    def member(self, info, m):
        name = m["name"]
        if not name.isidentifier() or keyword.iskeyword(name):
            self.emit(f"    # {name}: no Python identifier; reach it with getattr() or tessel.invoke()")
            return
        doc = m["description"]
        get, assign = m["get"], m["let"] or m["set"]
        if m["method"]:
            self.function(name, self.params(m["method"]["params"]), self.result(m["method"]["result"]), doc)
            return
        if get and get["params"]:
            self.emit("    @property")
            self.function(name, ["self"], f"_Indexed[{self.result(get['result'])}]", doc)
            return
        # A property without parameters: read and assigned as an attribute.
        read = self.result(get["result"]) if get else self.value(assign["params"][-1])
        self.emit("    @property")
        self.function(name, ["self"], read, doc)
        if assign:
            kinds = [a["params"][-1] for a in (m["let"], m["set"]) if a]
            types = sorted({self.value(p) for p in kinds})
            value = types[0] if len(types) == 1 else f"Union[{', '.join(types)}]"
            self.emit(f"    @{name}.setter")
            self.emit(f"    def {name}(self, value: {value}) -> None: ...")

    def event_overloads(self, info):
        events = info["events"]
        if not events or any(m["name"] == "connect" for m in info["members"]):
            return
        for e in events:
            args = ", ".join(self.value(p) for p in e["params"])
            callback = f"Callable[[{args}], object]"
            if len(events) > 1:
                self.emit("    @overload")
            self.function("connect", ["self", f'event: Literal["{e["name"]}"]', f"callback: {callback}"],
                          "Connection", e["description"])

    def protocols(self, info, by_name):
        own = class_name(info)
        members = {m["name"].lower(): m for m in info["members"]}

        def result_of(name):
            m = members.get(name.lower())
            acc = m and (m["get"] or m["method"])
            return self.result(acc["result"]) if acc else "Any"

        if info["default"]:
            m = members[info["default"].lower()]
            acc = m["method"] or m["get"]
            self.function("__call__", self.params(acc["params"]), self.result(acc["result"]), "")
        if info["count"] and info["item"]:
            self.emit("    def __len__(self) -> int: ...")
            self.emit(f"    def __iter__(self) -> Iterator[{result_of(info['item'])}]: ...")
        elif info["values"]:
            types = sorted({result_of(v) for v in info["values"]})
            item = types[0] if len(types) == 1 else f"Union[{', '.join(types)}]"
            self.emit(f"    def __iter__(self) -> Iterator[{item}]: ...")
        if "delete" in members and members["delete"]["method"]:
            self.emit(f"    def __enter__(self) -> {own}: ...")
            self.emit("    def __exit__(self, *exc: object) -> Literal[False]: ...")
        if "clone" in members and members["clone"]["method"]:
            self.emit(f"    def __copy__(self) -> {own}: ...")

    def cls(self, info, by_name):
        self.emit()
        self.emit(f"class {class_name(info)}(Object, metaclass=Class):")
        self.docstring(info["description"], "    ")
        if info["creatable"]:
            self.emit("    def __init__(self) -> None: ...")
        for m in info["members"]:
            self.member(info, m)
        self.event_overloads(info)
        self.protocols(info, by_name)
        if self.lines[-1].startswith("class "):
            self.emit("    ...")

    def enumerations(self):
        for name, members, description in _tessel.enums():
            if not isinstance(getattr(tessel, name, None), tessel.Enumeration):
                continue
            self.emit()
            self.emit(f"class _{name}(Enumeration):")
            self.docstring(description, "    ")
            for member, value in members:
                if member.isidentifier() and not keyword.iskeyword(member):
                    self.emit(f"    {member}: Final = {value}")
            self.emit(f"{name}: _{name}")

    def globals(self):
        self.emit()
        for info in self.infos:
            if not info["global"]:
                continue
            self.emit(f"{info['name']}: {class_name(info)}")
            if info["name"] not in tessel._UNQUALIFIED:
                continue
            # Members of the unqualified global objects are module globals as well.
            for m in info["members"]:
                name = m["name"]
                if not name.isidentifier() or keyword.iskeyword(name):
                    continue
                acc = m["method"] or m["get"]
                if m["method"] or (acc and acc["params"]):
                    params = self.params(acc["params"])[1:]
                    self.function(name, params, self.result(acc["result"]), m["description"], indent="")
                elif acc:
                    self.emit(f"{name}: {self.result(acc['result'])}")
        constants = sorted(n for n, v in vars(tessel).items()
                           if n.startswith("ID_") and isinstance(v, int))
        for n in constants:
            self.emit(f"{n}: Final = {getattr(tessel, n)}")


def main(argv):
    if len(argv) != 2:
        print("usage: make_stub.py OUTPUT.pyi", file=sys.stderr)
        return 2
    infos = [_tessel.describe(c) for _, c in sorted(_tessel.classes().items())]
    w = Writer(infos)
    w.emit(HEADER.rstrip("\n"))
    by_name = {i["name"]: i for i in infos}
    for info in infos:
        w.cls(info, by_name)
    w.enumerations()
    w.globals()
    text = "\n".join(w.lines) + "\n"
    compile(text, argv[1], "exec")  # a stub that does not parse is never written
    with open(argv[1], "w", encoding="utf-8") as f:
        f.write(text)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
