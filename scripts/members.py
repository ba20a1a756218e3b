#!/usr/bin/env python3
"""Turns the member tables (tessel/*/*.members) into code and reference pages.

A table is the one place where a class's members are written: name, kind, parameters with
defaults, result and a one-line description. From it this script writes, per table,

  <out>/tessel/<folder>/<stem>.members.h    enumerations, the TESSEL_MEMBERS_<class> block that a
                                           class body expands (public members, their private
                                           bodies, events), and module functions
  <out>/tessel/<folder>/<stem>.members.cpp  each public member as its trap around the body, and
                                           the registration with the type library
  <ref>/<stem>.md                          the reference page

and once for all tables <out>/tests/typed_calls.cpp, which calls every member the typed C++ way
for the type library's consistency test. Files whose text did not change are left untouched, so
a table edit rebuilds only what depends on it.

The table language, by example:

    enum enm_UIRectSide
        The sides of a rectangle, clockwise from the top.
      ID_UIRectSide_Top = 0
      ID_UIRectSide_Right = 1

    class cls_DrawRect creatable values=X,Y,W,H display=INFO
        A rectangle in Single units with inclusive right and bottom edges.
      field WMIN: Single
          Lower bound of the width, active while greater than 0.
      property X: Single get let
          Left edge; a change raises MOVED.
      method MOVE(pX: Single, pY: Single, [pW: Single = -1], [pH: Single = -1]) -> cls_DrawRect
          Moves and sizes the rectangle; a size of -1 keeps that dimension.
      method INFO() -> String const
          "(X,Y)-(x2,y2)" in automation's Single text form.
      event MOVED
          The position changed.

Entries start in column 0 (enum, class, module) or 2 (members, enumeration values); a line
indented further is the description of the entry above it. Parameters in brackets are optional;
`ByRef` before a name passes it by reference. Class flags: creatable, global, default=MEMBER,
values=A,B,..., display=MEMBER, collection=COUNT,ITEM. Member flags: const (a method that does not
change the object), steps (the body receives the Procedure and goes on statement by statement),
dialogs (a procedure that the event loop calls: its errors may show dialogs), lazy (an object
property with get and set whose value is made on first read: its bodies are generated too). A module's members
are functions in a namespace; a module may be spread over several tables (one per layer).

A class of a lower layer may be given members by a higher one, whose types it cannot name:

    extend cls_DrawColor
        The colour's cached drawing resources.
      property BRUSH: cls_DrawBrush get
          ...

The members are declared with the class (their types forward-declared), come after its own in
its interface order and its reference page, and are trapped and registered by the higher layer,
where their bodies live. The lower layer's code never includes the higher one's headers.
"""

import argparse
import os
import re
import sys
from dataclasses import dataclass, field as dfield

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from layers import RANK, may_use  # noqa: E402  (a table may name classes of its own or lower layers)

SCALARS = {
    "Boolean": "bool", "Byte": "uint8_t", "Integer": "int16_t", "Long": "int32_t",
    "LongLong": "int64_t", "Single": "float", "Double": "double",
}


class TableError(Exception):
    pass


@dataclass
class Param:
    name: str
    type: str
    optional: bool = False
    byref: bool = False
    default: str | None = None  # the table's literal


@dataclass
class Member:
    kind: str  # method, property, field, event
    name: str
    params: list
    type: str | None  # result (method), value type (property, field)
    access: list = dfield(default_factory=list)  # get, let, set (property)
    flags: set = dfield(default_factory=set)
    description: str = ""
    line: int = 0


@dataclass
class Entity:
    kind: str  # class, module, enum
    name: str
    flags: dict = dfield(default_factory=dict)
    description: str = ""
    members: list = dfield(default_factory=list)  # Member, or (name, value, description) for enums
    line: int = 0


@dataclass
class Table:
    path: str  # relative to the source root: tessel/geometry/cls_DrawRect.members
    folder: str
    stem: str
    entities: list


# ------------------------------------------------------------------------------------------------
# Parsing


def split_params(text):
    """Splits a parameter list at top-level commas (brackets and quotes nest)."""
    out, depth, cur, quote = [], 0, "", False
    for ch in text:
        if ch == '"':
            quote = not quote
        if not quote and ch == "[":
            depth += 1
        elif not quote and ch == "]":
            depth -= 1
        if ch == "," and depth == 0 and not quote:
            out.append(cur.strip())
            cur = ""
        else:
            cur += ch
    if cur.strip():
        out.append(cur.strip())
    return out


PARAM_RE = re.compile(r'^(ByRef\s+)?([A-Za-z_]\w*)\s*:\s*([A-Za-z_]\w*)\s*(?:=\s*(.+))?$')


def parse_param(text, where):
    optional = text.startswith("[")
    if optional:
        if not text.endswith("]"):
            raise TableError(f"{where}: unbalanced brackets in {text!r}")
        text = text[1:-1].strip()
    m = PARAM_RE.match(text)
    if not m:
        raise TableError(f"{where}: cannot read the parameter {text!r}")
    byref, name, typ, default = m.groups()
    if default is not None and not optional:
        raise TableError(f"{where}: {name} has a default but is not in brackets")
    return Param(name, typ, optional, bool(byref), default.strip() if default else None)


SIG_RE = re.compile(r'^([A-Za-z_]\w*)\s*(?:\((.*)\))?\s*(?:(?:->|:)\s*([A-Za-z_]\w*))?\s*(.*)$')


def parse_member(kind, rest, where):
    m = SIG_RE.match(rest)
    if not m:
        raise TableError(f"{where}: cannot read {rest!r}")
    name, params, typ, tail = m.groups()
    words = tail.split()
    member = Member(kind, name, [parse_param(p, where) for p in split_params(params or "")], typ)
    if kind == "property":
        member.access = [w for w in words if w in ("get", "let", "set")]
        member.flags = {w for w in words if w not in ("get", "let", "set")}
        if not member.access or not typ:
            raise TableError(f"{where}: property {name} needs a type and get, let or set")
        if "lazy" in member.flags and (sorted(member.access) != ["get", "set"] or member.params):
            raise TableError(f"{where}: a lazy property {name} is an object with get and set, no parameters")
    elif kind == "field":
        if "=" in tail:
            raise TableError(f"{where}: fields start at their type's zero")
        if not typ:
            raise TableError(f"{where}: field {name} needs a type")
    else:
        member.flags = set(words)
    unknown = member.flags - {"const", "steps", "dialogs", "lazy"}
    if unknown:
        raise TableError(f"{where}: unknown flags {sorted(unknown)}")
    return member


def parse_table(text, path):
    entities, current, last = [], None, None
    for no, raw in enumerate(text.splitlines(), 1):
        where = f"{path}:{no}"
        line = raw.rstrip()
        if not line.strip() or line.lstrip().startswith("#"):
            continue
        indent = len(line) - len(line.lstrip(" "))
        body = line.strip()
        if indent >= 4:
            if last is None:
                raise TableError(f"{where}: a description without an entry above it")
            if isinstance(last, list):  # an enumeration value
                last[2] = (last[2] + " " + body).strip()
            else:
                last.description = (last.description + " " + body).strip()
            continue
        if indent == 0:
            kind, _, rest = body.partition(" ")
            if kind not in ("class", "module", "enum", "extend"):
                raise TableError(f"{where}: expected class, module, enum or extend, found {kind!r}")
            words = rest.split()
            flags = {}
            for w in words[1:]:
                k, _, v = w.partition("=")
                if k not in ("creatable", "global", "default", "values", "display", "collection"):
                    raise TableError(f"{where}: unknown class flag {k!r}")
                flags[k] = v
            current = Entity(kind, words[0], flags, line=no)
            entities.append(current)
            last = current
            continue
        if indent != 2 or current is None:
            raise TableError(f"{where}: members are indented by two spaces under their class")
        if current.kind == "enum":
            m = re.match(r'^([A-Za-z_]\w*)\s*=\s*(-?\d+|&H[0-9A-Fa-f]+)$', body)
            if not m:
                raise TableError(f"{where}: expected NAME = VALUE")
            value = m.group(2)
            value = int(value[2:], 16) if value.startswith("&H") else int(value)
            last = [m.group(1), value, ""]
            current.members.append(last)
            continue
        kind, _, rest = body.partition(" ")
        if kind not in ("method", "property", "field", "event"):
            raise TableError(f"{where}: expected method, property, field or event, found {kind!r}")
        if current.kind in ("module", "extend") and kind in ("field", "event"):
            raise TableError(f"{where}: {current.kind} takes no {kind}s")
        last = parse_member(kind, rest.strip(), where)
        last.line = no
        if current.kind == "extend" and "lazy" in last.flags:
            raise TableError(f"{where}: an extension has no storage for a lazy property")
        current.members.append(last)
    for e in entities:
        if e.kind != "enum":
            for m in e.members:
                if not m.description:
                    raise TableError(f"{path}:{m.line}: {e.name}.{m.name} has no description")
        if not e.description:
            raise TableError(f"{path}:{e.line}: {e.name} has no description")
    return entities


# ------------------------------------------------------------------------------------------------
# Types


class World:
    """Every class and enumeration of every table, and where each lives."""

    def __init__(self, tables):
        self.classes, self.enums = {}, {}
        self.extensions = {}  # class name -> [(table, extend entity)], in table order
        for t in tables:
            for e in t.entities:
                if e.kind == "module":  # no type, and may be spread over several tables
                    continue
                if e.kind == "extend":
                    self.extensions.setdefault(e.name, []).append((t, e))
                    continue
                target = self.enums if e.kind == "enum" else self.classes
                if e.name in target:
                    raise TableError(f"{t.path}: {e.name} is defined twice")
                target[e.name] = t
        for name, parts in self.extensions.items():
            for t, e in parts:
                base = self.classes.get(name)
                if base is None:
                    raise TableError(f"{t.path}:{e.line}: extends unknown class {name}")
                if base.folder == t.folder or not may_use(t.folder, base.folder):
                    raise TableError(f"{t.path}:{e.line}: {t.folder} may only extend a class of a lower layer")

    def extension_members(self, name):
        """(table, member) for each member that higher layers add to class `name`."""
        return [(t, m) for t, e in self.extensions.get(name, []) for m in e.members]

    def check_type(self, typ, table, where):
        if typ in SCALARS or typ in ("String", "Variant", "Object"):
            return
        owner = self.classes.get(typ) or self.enums.get(typ)
        if owner is None:
            raise TableError(f"{where}: unknown type {typ}")
        if not may_use(table.folder, owner.folder):
            raise TableError(f"{where}: {table.folder} may not use {typ} of {owner.folder}")

    def is_class(self, typ):
        return typ in self.classes

    def is_enum(self, typ):
        return typ in self.enums


def cpp_value(world, typ):
    if typ in SCALARS:
        return SCALARS[typ]
    if typ == "String":
        return "std::u16string"
    if typ == "Variant":
        return "Variant"
    if typ == "Object":
        return "Ref<Object>"
    if world.is_enum(typ):
        return typ
    return f"Ref<{typ}>"


def cpp_param(world, p):
    base = cpp_value(world, p.type)
    if p.byref:
        return base + "&"
    if p.type in ("String", "Variant"):
        return f"const {base}&"
    return base


WHOLE_RANGES = {"Byte": (0, 255), "Integer": (-32768, 32767), "Long": (-2**31, 2**31 - 1),
                "LongLong": (-2**63, 2**63 - 1)}


def cpp_literal(world, p, where, owner=None):
    """The C++ expression of a parameter's default, the same for the typed and late-bound call.
    A literal the parameter's type cannot hold as it is (3.5 for a Long, 300 for a Byte, a
    number for a Boolean) is refused, so that both calls can only agree."""
    if p.default is None:
        return "Variant::missing()" if p.type == "Variant" else "{}"
    d, t = p.default, p.type
    wrong = TableError(f"{where}: {d!r} is no default for {p.name} of type {t}")
    quoted = d.startswith('"') and d.endswith('"') and len(d) >= 2
    whole = re.fullmatch(r'-?\d+', d)
    decimal = re.fullmatch(r'-?(\d+\.\d*|\d*\.\d+)(e-?\d+)?', d)
    if t in ("String", "Variant") and quoted:
        lit = f"std::u16string(u{d})"
        return lit if t == "String" else f"Variant({lit})"
    if t in ("Boolean", "Variant") and d in ("True", "False"):
        lit = "true" if d == "True" else "false"
        return lit if t == "Boolean" else f"Variant({lit})"
    if t == "Variant" and (whole or decimal):
        return f"Variant(int32_t({d}))" if whole else f"Variant({d})"
    if t in WHOLE_RANGES and whole:
        lo, hi = WHOLE_RANGES[t]
        if not lo <= int(d) <= hi:
            raise wrong
        return f"{cpp_value(world, t)}({d})"
    if t in ("Single", "Double") and (whole or decimal):
        return f"{cpp_value(world, t)}({d})"
    if world.is_enum(t):
        home = world.enums[t]
        values = next(e.members for e in home.entities if e.kind == "enum" and e.name == t)
        for name, value, _ in values:
            if name == d:
                # A header that only forward-declares the enumeration knows no names in it.
                return f"{t}::{d}" if owner in (None, home) else f"{t}({value})"
    raise wrong


def cpp_result(world, typ):
    return "void" if typ is None else cpp_value(world, typ)


# ------------------------------------------------------------------------------------------------
# The shapes of a member: each accessor as C++ sees it.


@dataclass
class Shape:
    kind: str  # Method, Get, Let, Set
    proc: str  # "MOVE", "X.GET"
    result: str
    params: list  # (cpp type, name, default expression or None)
    const: bool
    tag: str  # body tag: Call, Get, Let, Set, or Procedure&


def shapes(world, owner, m, where):
    params = []
    for p in m.params:
        world.check_type(p.type, owner, where)
        params.append((cpp_param(world, p), p.name, cpp_literal(world, p, where, owner) if p.optional else None))
    if m.type:
        world.check_type(m.type, owner, where)
    if m.kind == "method":
        tag = "Procedure&" if "steps" in m.flags else "Call"
        return [Shape("Method", m.name, cpp_result(world, m.type), params, "const" in m.flags, tag)]
    out = []
    value = cpp_value(world, m.type)
    plain = [(t, n, None) for t, n, _ in params]
    for acc in m.access:
        if acc == "get":
            out.append(Shape("Get", m.name + ".GET", value, params, True, "Get"))
        else:
            vtype = f"const {value}&" if m.type in ("String", "Variant") else value
            out.append(Shape(acc.capitalize(), m.name + "." + acc.upper(), "void",
                             plain + [(vtype, "RHS", None)], False, acc.capitalize()))
    return out


def body_params(s):
    tag = "Procedure& p" if s.tag == "Procedure&" else f"tl::{s.tag}"
    return ", ".join([tag] + [f"{t} {n}" for t, n, _ in s.params])


def decl_params(params, defaults):
    return ", ".join(f"{t} {n}" + (f" = {d}" if defaults and d is not None else "") for t, n, d in params)


def call_args(params):
    return ", ".join(n for _, n, _ in params)


# ------------------------------------------------------------------------------------------------
# Writers


def comment(text, indent):
    words, lines, cur = text.split(), [], ""
    for w in words:
        if len(cur) + len(w) + 1 > 96 - indent:
            lines.append(cur)
            cur = w
        else:
            cur = (cur + " " + w).strip()
    if cur:
        lines.append(cur)
    return [" " * indent + "/* " + l + " */" for l in lines]


def enum_code(e):
    lines = comment(e.description, 0)
    lines.append(f"enum class {e.name} : int32_t {{")
    for name, value, desc in e.members:
        lines.append(f"  {name} = {value},")
    lines.append("};")
    lines.append(f"template <>\nstruct EnumName<{e.name}> {{\n  static constexpr std::string_view value = \"{e.name}\";\n}};")
    return lines


def class_block(world, table, e):
    """The TESSEL_MEMBERS_<class> macro that a class body expands."""
    pub, priv = [], []
    pub.append(f"static constexpr std::string_view ClassName = \"{e.name}\";")
    pub.append("static const ClassInfo& typeInfo();")
    if "global" in e.flags:
        pub.append(f"/* The calling thread's instance. */")
        pub.append(f"static Ref<{e.name}> instance();")
    for home, m in [(table, m) for m in e.members] + world.extension_members(e.name):
        where = f"{home.path}:{m.line}"
        if m.kind == "field":
            world.check_type(m.type, table, where)
            pub += comment(m.description, 0)
            zero = "{}" if world.is_class(m.type) or m.type in ("String", "Variant", "Object") else "0"
            pub.append(f"{cpp_value(world, m.type)} {m.name}{{{zero}}};")
            continue
        if m.kind == "event":
            for p in m.params:
                world.check_type(p.type, table, where)
            args = ", ".join(cpp_value(world, p.type) + ("&" if p.byref else "") for p in m.params)
            pub += comment(m.description, 0)
            pub.append(f"Event<{args}> {m.name};")
            continue
        pub += comment(m.description, 0)
        for s in shapes(world, home, m, where):
            const = " const" if s.const else ""
            pub.append(f"{s.result} {m.name}({decl_params(s.params, True)}){const};")
            body = body_params(s)
            priv.append(f"{s.result} {m.name}({body}){const};")
        if "lazy" in m.flags:
            priv.append(f"mutable Ref<{m.type}> lazy_{m.name}_;")
    lines = [f"#define TESSEL_MEMBERS_{e.name} \\", " public: \\"]
    lines += ["  " + l + " \\" for l in pub]
    lines += [" private: \\"]
    lines += ["  " + l + " \\" for l in priv]
    lines[-1] = lines[-1][:-2]
    return lines


def module_decls(world, table, e):
    lines = comment(e.description, 0) + [f"namespace {e.name} {{"]
    for m in e.members:
        where = f"{table.path}:{m.line}"
        lines += comment(m.description, 0)
        for s in shapes(world, table, m, where):
            lines.append(f"{s.result} {m.name}({decl_params(s.params, True)});")
            body = body_params(s)
            lines.append(f"{s.result} {m.name}({body});")
    lines.append(f"}}  // namespace {e.name}")
    return lines


def referenced_types(world, table, extensions=False):
    types = set()
    for e in table.entities:
        if e.kind == "enum":
            continue
        members = list(e.members)
        if extensions and e.kind == "class":
            members += [m for _, m in world.extension_members(e.name)]
        for m in members:
            types.update(p.type for p in m.params)
            if m.type:
                types.add(m.type)
    return types


def header_path(table):
    return f"tessel/{table.folder}/{table.stem}.h"


def is_extension(table):
    return all(e.kind == "extend" for e in table.entities)


def extension_hook(table):
    """The function of an extending table that registers its members with the class."""
    return f"extendFrom_{table.folder}_{table.stem}"


def write_header(world, table):
    if is_extension(table):
        bases = sorted({header_path(world.classes[e.name]) for e in table.entities})
        return "\n".join([f"// Generated from {table.path}: its members are declared with the classes it",
                          "// extends, and defined and registered in this layer.", "#pragma once", ""]
                         + [f"#include <{h}>" for h in bases]) + "\n"
    own = {e.name for e in table.entities}
    lines = [f"// Generated from {table.path}: edit the table, not this file.",
             "#pragma once", "", "#include <tessel/core/TypeLib.h>", "", "#include <cstdint>",
             "#include <string>", "", "namespace tessel {", ""]
    used = referenced_types(world, table, extensions=True)
    forward = sorted(t for t in used - own if world.is_class(t))
    enums = sorted(t for t in used - own if world.is_enum(t))
    lines += [f"class {c};" for c in forward]
    for en in enums:
        lines.append(f"enum class {en} : int32_t;")
    if forward or enums:
        lines.append("")
    for e in table.entities:
        if e.kind == "enum":
            lines += enum_code(e) + [""]
    for e in table.entities:
        if e.kind == "class":
            lines += class_block(world, table, e) + [""]
            for xt, _ in world.extensions.get(e.name, []):
                lines += [f"// Registers the members that {xt.path} adds.", f"class {e.name};",
                          f"void {extension_hook(xt)}(ClassBuilder<{e.name}>& builder);", ""]
        elif e.kind == "module":
            lines += module_decls(world, table, e) + [""]
    lines.append("}  // namespace tessel")
    return "\n".join(lines) + "\n"


def wrapper(world, table, e, m, s, module):
    scope = f"{e.name}::"
    const = " const" if s.const and not module else ""
    proc = f"k{e.name}_{s.proc.replace('.', '_')}"
    head = f"{s.result} {scope}{m.name}({decl_params(s.params, False)}){const}"
    args = call_args(s.params)
    probe = f"MemberProbe::check({args});"
    ret = "" if s.result == "void" else "return "
    lines = [f"{head} {{"]
    # A member that may raise an event outlives the handlers that drop its object. Only handlers
    # can do that, so an object without any pays nothing for it.
    events = [x.name for x in e.members if x.kind == "event"]
    if not module and not s.const and events:
        idle = " && ".join(f"{name}.empty()" for name in events)
        lines.append(f"  KeepAlive alive({idle} ? nullptr : this);")
    if s.tag == "Procedure&":
        lines += [f"  Procedure p{{{proc}}};",
                  f"  p.step([&] {{ {probe} }});",
                  f"  {ret}{m.name}(p{', ' if args else ''}{args});"]
    else:
        lines += [f"  {ret}Trap({proc}, [&] {{",
                  f"    {probe}",
                  f"    return {m.name}(tl::{s.tag}{{}}{', ' if args else ''}{args});",
                  "  });"]
    return lines + ["}"]


def lazy_bodies(e, m):
    """A lazy property's value: made on first read, and again after Nothing was assigned."""
    slot = f"lazy_{m.name}_"
    return [f"Ref<{m.type}> {e.name}::{m.name}(tl::Get) const {{",
            f"  if (!{slot}) {slot} = make<{m.type}>();",
            f"  return {slot};",
            "}", "",
            f"void {e.name}::{m.name}(tl::Set, Ref<{m.type}> RHS) {{ {slot} = std::move(RHS); }}"]


def fn_pointer(world, e, m, s, module):
    """The public entry, picked out of its overloads (the body shares its name)."""
    params = ", ".join(t for t, _, _ in s.params)
    if module:
        return f"static_cast<{s.result} (*)({params})>(&{e.name}::{m.name})"
    const = " const" if s.const else ""
    return f"static_cast<{s.result} (C::*)({params}){const}>(&C::{m.name})"


def cpp_string(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


def late_default(world, p, where):
    """A default as late-bound callers see it: the literal in its own type (-1 a Long, 0.5 a
    Double), which the member converts to its parameter type as it does any argument."""
    if p.type == "Variant":
        return cpp_literal(world, p, where)
    if p.type == "String" or world.is_enum(p.type) or p.default in ("True", "False"):
        return f"Variant({cpp_literal(world, p, where)})"
    if re.fullmatch(r'-?\d+', p.default):
        return f"Variant(int32_t({p.default}))"
    return f"Variant(double({p.default}))"


def param_list(world, table, m, where):
    items = []
    for p in m.params:
        if not p.optional:
            items.append(cpp_string(p.name))
        elif p.default is None:
            items.append(f"opt({cpp_string(p.name)})")
        else:
            items.append(f"opt({cpp_string(p.name)}, {late_default(world, p, where)})")
    return "{" + ", ".join(items) + "}"


def registration(world, table, e, module):
    cls = f"{e.name}Module" if module else e.name
    lines = []
    if module:
        # Private to this file: a module spread over several tables has one such class per table,
        # and the type library merges their members into one class.
        lines += ["namespace {", "",
                  f"// The module as an object of the type library.",
                  f"class {cls} final : public ObjectOf<{cls}> {{",
                  " public:",
                  f"  static constexpr std::string_view ClassName = \"{e.name}\";",
                  "  static const ClassInfo& typeInfo();",
                  f"  static Ref<{cls}> instance() {{",
                  f"    thread_local Ref<{cls}> self = make<{cls}>();",
                  "    return self;",
                  "  }",
                  "  const ClassInfo& classInfo() const noexcept override { return *TypeLib::findClass(ClassName); }",
                  "};", ""]
    elif "global" in e.flags:
        lines += [f"Ref<{cls}> {cls}::instance() {{",
                  f"  thread_local Ref<{cls}> self = make<{cls}>();",
                  "  return self;",
                  "}", ""]
    lines.append(f"const ClassInfo& {cls}::typeInfo() {{")
    if not module:
        lines.append(f"  using C = {cls};")
    lines.append(f"  static const ClassInfo info = ClassBuilder<{cls}>()")
    lines.append(f"      .describe({cpp_string(e.description)})")
    if "creatable" in e.flags:
        lines.append("      .creatable()")
    if module or "global" in e.flags:
        lines.append(f"      .global(&{cls}::instance)")
    lines += member_registration(world, table, e, e.members, module)
    for xt, _ in world.extensions.get(e.name, []):
        lines.append(f"      .with(&{extension_hook(xt)})")
    if "values" in e.flags:
        vals = ", ".join(cpp_string(v) for v in e.flags["values"].split(","))
        lines.append(f"      .values({{{vals}}})")
    if "display" in e.flags:
        lines.append(f"      .display({cpp_string(e.flags['display'])})")
    if "collection" in e.flags:
        count, item = e.flags["collection"].split(",")
        lines.append(f"      .collection({cpp_string(count)}, {cpp_string(item)})")
    if "default" in e.flags:
        lines.append(f"      .defaultMember({cpp_string(e.flags['default'])})")
    lines[-1] += ";"
    lines += ["  return info;", "}", f"TESSEL_REGISTER_CLASS({cls})", ""]
    if module:
        lines += ["}  // namespace", ""]
    return lines


def member_registration(world, table, e, members, module):
    lines = []
    for m in members:
        where = f"{table.path}:{m.line}"
        if m.kind == "field":
            lines.append(f"      .field({cpp_string(m.name)}, &C::{m.name})")
        elif m.kind == "event":
            names = ", ".join(cpp_string(p.name) for p in m.params)
            lines.append(f"      .event({cpp_string(m.name)}, &C::{m.name}, {{{names}}})")
        else:
            for s in shapes(world, table, m, where):
                fn = fn_pointer(world, e, m, s, module)
                params = param_list(world, table, m, where)
                lines.append(f"      .{s.kind.lower()}({cpp_string(m.name)}, {fn},")
                lines.append(f"          {params})")
        lines.append(f"      .describe({cpp_string(m.name)}, {cpp_string(m.description)})")
    return lines


def extension_registration(world, table, x):
    """The hook that the extended class's registration calls, after its own members."""
    base = next(e for e in world.classes[x.name].entities if e.name == x.name)
    lines = comment(x.description, 0)
    lines += [f"void {extension_hook(table)}(ClassBuilder<{x.name}>& builder) {{",
              f"  using C = {x.name};", "  builder"]
    lines += member_registration(world, table, base, x.members, False)
    lines[-1] += ";"
    return lines + ["}", ""]


def enum_registration(e):
    vals = ", ".join(f"{{{cpp_string(n)}, {v}}}" for n, v, _ in e.members)
    return [f"static const EnumRegistrar enum_{e.name}(EnumInfo{{{cpp_string(e.name)}, {{{vals}}}, "
            f"{cpp_string(e.description)}}});", ""]


def includes_for(world, table):
    paths = set() if is_extension(table) else {header_path(table)}
    paths.update(header_path(world.classes[e.name]) for e in table.entities if e.kind == "extend")
    for t in referenced_types(world, table):
        if world.is_class(t):
            paths.add(header_path(world.classes[t]))
        elif world.is_enum(t):
            owner = world.enums[t]
            paths.add(f"tessel/{owner.folder}/{owner.stem}.members.h")
    return sorted(paths)


def write_source(world, table):
    lines = [f"// Generated from {table.path}: edit the table, not this file."]
    lines += [f"#include <{p}>" for p in includes_for(world, table)]
    lines += ["", "namespace tessel {", "", "namespace {", ""]
    for e in table.entities:
        if e.kind == "enum":
            continue
        for m in e.members:
            if m.kind in ("field", "event"):
                continue
            for s in shapes(world, table, m, f"{table.path}:{m.line}"):
                name = f"k{e.name}_{s.proc.replace('.', '_')}"  # an extension's under its class
                dialogs = ", true" if "dialogs" in m.flags else ""
                lines.append(f"constexpr ProcInfo {name}{{\"{e.name}\", \"{s.proc}\"{dialogs}}};")
    lines += ["", "}  // namespace", ""]
    for e in table.entities:
        if e.kind == "enum":
            lines += enum_registration(e)
            continue
        module = e.kind == "module"
        # An extension's members are its class's: their traps carry the class's name and see
        # its events.
        owner = next(c for c in world.classes[e.name].entities if c.name == e.name) if e.kind == "extend" else e
        for m in e.members:
            if m.kind in ("field", "event"):
                continue
            for s in shapes(world, table, m, f"{table.path}:{m.line}"):
                lines += wrapper(world, table, owner, m, s, module) + [""]
            if "lazy" in m.flags:
                lines += lazy_bodies(e, m) + [""]
        if e.kind == "extend":
            lines += extension_registration(world, table, e)
        else:
            lines += registration(world, table, e, module)
    lines.append("}  // namespace tessel")
    return "\n".join(lines) + "\n"


def write_typed_calls(world, tables):
    """Every member called as C++ code calls it: required arguments zero, optional ones left out."""
    lines = ["// Generated from the member tables: every member called the typed C++ way, for the",
             "// type library's consistency test.", "#include \"library/TypedCalls.h\"", ""]
    heads = {header_path(t) for t in tables if not is_extension(t)}
    lines += [f"#include <{h}>" for h in sorted(heads)]
    lines += ["", "namespace tessel::testing {", "", "const std::vector<TypedCall>& typedCalls() {",
              "  static const std::vector<TypedCall> calls = {"]
    for t in tables:
        for e in t.entities:
            if e.kind == "enum":
                continue
            module = e.kind == "module"
            cls = f"{e.name}"
            for m in e.members:
                if m.kind in ("field", "event"):
                    continue
                for s in shapes(world, t, m, ""):
                    decls, args = [], []
                    for i, (typ, name, d) in enumerate(s.params):
                        if d is not None:
                            break
                        base = typ.replace("const ", "").rstrip("&")
                        decls.append(f"{base} a{i}{{}};")
                        args.append(f"a{i}")
                    target = f"{e.name}::{m.name}" if module else f"static_cast<{cls}*>(o)->{m.name}"
                    body = " ".join(decls) + f" {target}({', '.join(args)});"
                    lines.append(f"      {{\"{e.name}\", \"{m.name}\", InvokeKind::{s.kind}, "
                                 f"[]([[maybe_unused]] Object* o) {{ {body.strip()} }}}},")
    lines += ["  };", "  return calls;", "}", "", "}  // namespace tessel::testing"]
    return "\n".join(lines) + "\n"


# ------------------------------------------------------------------------------------------------
# Reference pages


def md_param(p):
    s = ("ByRef " if p.byref else "") + f"{p.name}: {p.type}"
    if p.default is not None:
        s += f" = {p.default}"
    return f"[{s}]" if p.optional else s


def write_reference(world, table):
    lines = [f"<!-- Generated from {table.path}: edit the table, not this page. -->", ""]
    cell = lambda text: text.replace("|", "\\|")  # noqa: E731
    for e in sorted(table.entities, key=lambda e: e.kind == "enum"):
        if e.kind == "extend":  # listed on its class's page
            continue
        if e.kind == "enum":
            lines += [f"## {e.name}", "", e.description, "", "| member | value |", "|---|---|"]
            lines += [f"| `{n}` | {v} |" for n, v, _ in e.members]
            lines.append("")
            continue
        flags = [k for k in ("creatable", "global") if k in e.flags]
        lines += [f"# {e.name}" + (" (module)" if e.kind == "module" else ""), "", e.description, ""]
        if flags:
            lines += ["*" + ", ".join(flags) + "*" + (f"; default member `{e.flags['default']}`" if "default" in e.flags else ""), ""]
        elif "default" in e.flags:
            lines += [f"Default member `{e.flags['default']}`.", ""]
        lines += ["| member | kind | signature | description |", "|---|---|---|---|"]
        for m in e.members + [m for _, m in world.extension_members(e.name)]:
            params = ", ".join(md_param(p) for p in m.params)
            if m.kind == "method":
                sig = f"{m.name}({params})" + (f" → {m.type}" if m.type else "")
                kind = "method"
            elif m.kind == "property":
                sig = f"{m.name}" + (f"({params})" if params else "") + f": {m.type}"
                kind = " / ".join(m.access)
            elif m.kind == "field":
                sig, kind = f"{m.name}: {m.type}", "field"
            else:
                sig, kind = f"{m.name}({params})", "event"
            lines.append(f"| `{m.name}` | {kind} | `{cell(sig)}` | {cell(m.description)} |")
        lines.append("")
    return "\n".join(lines)


def write_index(tables):
    lines = ["<!-- Generated from the member tables: edit the tables, not this page. -->", "",
             "# Reference", "",
             "Every class, module and enumeration of the type library, by layer. Each page lists the",
             "members with their kind, parameters (optional ones in brackets, with their defaults),",
             "result and description, as `help()` in Python shows them.", ""]
    for folder in sorted({t.folder for t in tables}, key=lambda f: (RANK[f], f)):
        lines += [f"## {folder}", ""]
        for t in sorted((t for t in tables if t.folder == folder and not is_extension(t)), key=lambda t: t.stem):
            names = ", ".join(f"`{e.name}`" for e in t.entities)
            lines.append(f"- [{t.stem}]({t.stem}.md): {names}")
        lines.append("")
    return "\n".join(lines)


# ------------------------------------------------------------------------------------------------


def write_if_changed(path, text):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    try:
        with open(path, encoding="utf-8") as f:
            if f.read() == text:
                return
    except FileNotFoundError:
        pass
    with open(path, "w", encoding="utf-8") as f:
        f.write(text)


def load(root, rel):
    parts = rel.split("/")
    folder = parts[-2]
    stem = parts[-1][: -len(".members")]
    with open(os.path.join(root, rel), encoding="utf-8") as f:
        return Table(rel, folder, stem, parse_table(f.read(), rel))


def main(argv):
    ap = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    ap.add_argument("--root", required=True, help="the source root")
    ap.add_argument("--out", required=True, help="where generated code goes")
    ap.add_argument("--reference", help="where reference pages go")
    ap.add_argument("--typed-calls", help="where the typed-call list for the tests goes")
    ap.add_argument("tables", nargs="+", help="tables, relative to the source root")
    args = ap.parse_args(argv)
    try:
        tables = [load(args.root, t) for t in args.tables]
        for t in tables:
            if t.folder not in RANK:
                raise TableError(f"{t.path}: {t.folder} is not a layer of the library")
        world = World(tables)
        for t in tables:
            base = os.path.join(args.out, "tessel", t.folder, t.stem + ".members")
            write_if_changed(base + ".h", write_header(world, t))
            write_if_changed(base + ".cpp", write_source(world, t))
            if args.reference and not is_extension(t):
                write_if_changed(os.path.join(args.reference, t.stem + ".md"), write_reference(world, t))
        if args.reference:
            write_if_changed(os.path.join(args.reference, "index.md"), write_index(tables))
        if args.typed_calls:
            write_if_changed(args.typed_calls, write_typed_calls(world, tables))
    except TableError as e:
        print(f"error: {e}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
