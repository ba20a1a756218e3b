"""The type stub written at build time: it parses, and it names every class, member, event and
enumeration of the type library as built."""
import ast
import os
import subprocess
import sys
from pathlib import Path

import pytest

import tessel

PACKAGE = Path(tessel.__file__).resolve().parent
STUB = PACKAGE / "__init__.pyi"
# Registered by the tests after import: not part of the library the stub describes.
FIXTURES = {"cls_PyProbe"}


@pytest.fixture(scope="module")
def stub():
    tree = ast.parse(STUB.read_text(encoding="utf-8"))
    classes = {n.name: n for n in tree.body if isinstance(n, ast.ClassDef)}
    names = {t.id for n in tree.body if isinstance(n, ast.AnnAssign) for t in [n.target]}
    return tree, classes, names


def defs(cls):
    return {n.name: n for n in cls.body if isinstance(n, ast.FunctionDef)}


def test_the_stub_names_every_class_member_and_event(stub):
    _, classes, names = stub
    assert (PACKAGE / "py.typed").exists()
    for name, cls in tessel._tessel.classes().items():
        if name in FIXTURES:
            continue
        node = classes["_" + name if cls.is_global else name]
        members = defs(node)
        assert {m for m in cls.members if m.isidentifier()} <= set(members), name
        events = {c.value for c in ast.walk(node) if isinstance(c, ast.Constant) and isinstance(c.value, str)}
        assert set(cls.events) <= events, name
        if cls.is_global:
            assert name in names
    for name, members, _ in tessel._tessel.enums():
        fields = {t.target.id for t in classes["_" + name].body if isinstance(t, ast.AnnAssign)}
        assert {m for m, _ in members} == fields and name in names
    assert {"DRAW", "ID_UIRectCorner_XRightYBottom"} <= names


def test_the_stub_types_calls_properties_and_protocols(stub):
    _, classes, _ = stub
    rect = defs(classes["cls_DrawRect"])
    move = rect["MOVE"]
    assert [a.arg for a in move.args.args] == ["self", "pX", "pY", "pW", "pH"]
    assert [ast.unparse(a.annotation) for a in move.args.args[1:]] == ["float"] * 4
    assert [ast.unparse(d) for d in move.args.defaults] == ["-1", "-1"]  # the optional ones
    assert ast.unparse(move.returns) == "cls_DrawRect"
    assert ast.unparse(rect["INFO"].returns) == "str"
    assert ast.unparse(rect["__iter__"].returns) == "Iterator[float]" and "__copy__" in rect
    decorators = {ast.unparse(d) for n in classes["cls_DrawRect"].body if isinstance(n, ast.FunctionDef)
                  and n.name == "X" for d in n.decorator_list}
    assert decorators == {"property", "X.setter"}
    flags = defs(classes["cls_DrawFlags"])
    assert {"__len__", "__call__"} <= set(flags) and ast.unparse(flags["__iter__"].returns) == "Iterator[str]"
    assert ast.unparse(flags["FLAG"].args.defaults[0]) == "..."  # optional without a default
    paradecode = defs(classes["_mdl_Global"])["PARADECODE"]
    assert ast.unparse(paradecode.args.args[2].annotation) == "Union[int, ByRef]"


def test_the_built_stub_is_current():
    """Written again from the library as built, the stub is the same: it is never stale."""
    out = subprocess.run([sys.executable, str(Path(__file__).parents[2] / "bindings/python/make_stub.py"), "/dev/stdout"],
                         capture_output=True, text=True, timeout=120,
                         env=dict(os.environ, PYTHONPATH=str(PACKAGE.parent)))
    assert out.returncode == 0, out.stderr
    assert out.stdout == STUB.read_text(encoding="utf-8")
