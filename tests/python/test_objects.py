"""The module's objects: the root object per thread, classes as callables, identity,
enumerations, global objects and modules, introspection."""
import copy
import inspect
import pickle
import pydoc
import threading
import weakref

import pytest

import tessel


def test_root_object_is_the_calling_threads():
    root = tessel.DRAW
    assert root is tessel.DRAW is tessel.sys_Global.DRAW is tessel.mdl_Global.DRAW
    assert isinstance(root, tessel.cls_DrawTool)
    seen = {}

    def worker():
        seen["root"] = tessel.DRAW
        seen["same"] = tessel.sys_Global.DRAW is tessel.DRAW
        seen["global"] = tessel.sys_Global

    t = threading.Thread(target=worker)
    t.start()
    t.join()
    assert seen["same"]
    assert isinstance(seen["root"], tessel.cls_DrawTool)
    assert seen["root"] is not root
    assert seen["global"] is not tessel.sys_Global


def test_creatable_classes_make_new_objects():
    a, b = tessel.cls_DrawRect(), tessel.cls_DrawRect()
    assert a is not b
    assert isinstance(a, tessel.cls_DrawRect) and isinstance(a, tessel.Object)
    assert not isinstance(a, tessel.cls_DrawPoint) and not isinstance(1, tessel.cls_DrawRect)
    assert tessel.cls_DrawRect.creatable and not tessel.cls_DrawTool.creatable
    with pytest.raises(tessel.Error) as e:
        tessel.cls_DrawTool()
    assert e.value.number == 429
    with pytest.raises(TypeError):
        tessel.cls_DrawRect(1)
    with pytest.raises(TypeError):
        tessel.Object()


def test_the_same_native_object_is_the_same_python_object(rect):
    assert rect.MOVE(1, 2) is rect  # operations that change an object return it
    assert rect.CLONE() is not rect
    assert tessel.DRAW.RECT is tessel.DRAW.RECT
    colors = tessel.DRAW.COLOR
    assert colors.BLACK is colors.BLACK

    # An object only the library holds comes back as the Python object Python still has.
    flags = tessel.cls_DrawFlags()
    point = tessel.cls_DrawPoint()
    flags.SETFLAG("p", point)
    assert flags("p") is point
    # While Python lets go, the library keeps the native object and its state.
    flags.SETFLAG("q", tessel.cls_DrawPoint())
    flags("q").X = 5
    assert flags("q").X == 5
    # Once neither holds it, it is gone.
    ref = weakref.ref(point)
    flags.REMOVE("p")
    del point
    assert ref() is None


def test_enumerations_are_constants_and_namespaces(rect):
    assert tessel.ID_UIRectCorner_XRightYBottom == 8
    assert tessel.enm_UIRectCorner.ID_UIRectCorner_XRightYBottom == 8
    assert tessel.enm_Draw_Status.OK == 0 and tessel.enm_Draw_Status.FileNotFound == 10
    assert tessel.enm_Draw_Status.name_of(10) == "FileNotFound"
    assert "ABORTED" in tessel.enm_Draw_Status and len(tessel.enm_Draw_Status) == 21
    assert not hasattr(tessel, "OK")  # only ID_ members are module constants
    corner = rect.CORNER(tessel.ID_UIRectCorner_XRightYBottom)
    assert (corner.X, corner.Y) == (9, 9)
    assert tessel.DRAW.ERRORINFO(tessel.enm_Draw_Status.FileNotFound) == "File Not Found."


def test_modules_and_classes_registered_later_are_objects_of_the_module():
    assert isinstance(tessel.mdl_Global, tessel.Object)
    assert tessel.mdl_Global.UNHEX("ff", 0) == 255
    assert tessel.mdl_Global.PARATYPETEXT(2) == "Coord"
    # cls_PyProbe was registered after `import tessel` (see conftest): it appears by itself.
    assert isinstance(tessel.cls_PyProbe, tessel.Class)
    assert {"DRAW", "sys_Global", "mdl_Global", "cls_DrawRect", "cls_PyProbe"} <= set(dir(tessel))
    with pytest.raises(AttributeError):
        tessel.cls_NoSuchClass


def test_dir_repr_and_help_come_from_the_type_library(rect):
    assert {"MOVECENTER", "X", "x2", "connect"} <= set(dir(rect))
    assert "connect" not in dir(tessel.cls_DrawFlags())  # no events to connect to
    assert repr(rect) == "<tessel.cls_DrawRect (0,0)-(9,9)>"  # its display member, INFO
    assert repr(rect.MOVE) == "<tessel member cls_DrawRect.MOVE>"

    text = pydoc.render_doc(rect.MOVE, renderer=pydoc.plaintext)
    assert "MOVE(pX, pY, pW=-1, pH=-1)" in text
    assert "[pW As Single = -1]" in text
    assert str(inspect.signature(tessel.cls_DrawFlags().FLAG)) == "(pKey, pDefault=tessel.Missing)"
    assert "ByRef pType As Long" in pydoc.render_doc(tessel.mdl_Global.PARADECODE, renderer=pydoc.plaintext)

    text = pydoc.render_doc(tessel.cls_DrawRect, renderer=pydoc.plaintext)
    assert "MOVECENTER(pPoint As Variant)" in text and "X As Single  [get, let]" in text
    assert "Events" in text and "MOVED" in text


def test_each_class_is_a_python_type_of_its_own(rect):
    cls = tessel.cls_DrawRect
    assert type(rect) is cls and type(rect).__name__ == "cls_DrawRect" and cls.__module__ == "tessel"
    assert issubclass(cls, tessel.Object) and type(cls) is tessel.Class
    assert not issubclass(cls, tessel.cls_DrawPoint)
    # The class's members work from the class too, given an object of it.
    assert cls.MOVE(rect, 2, 3) is rect and cls.X.__get__(rect) == 2
    cls.X.__set__(rect, 4)
    assert rect.X == 4
    with pytest.raises(TypeError):
        cls.MOVE(tessel.cls_DrawPoint(), 1, 2)
    with pytest.raises(TypeError):
        cls.X.__get__(tessel.cls_DrawPoint())
    # Objects come from the library: no subclasses, no construction past the class's own call.
    with pytest.raises(TypeError):
        type("MyRect", (cls,), {})
    with pytest.raises(TypeError):
        tessel.Object.__new__(type("Loose", (tessel.Object,), {}))
    assert type(tessel.sys_Global).is_global and not cls.is_global
    assert cls.members[:2] == ["WMIN", "WMAX"] and set(cls.events) == {"MOVED", "RESIZE"}


def test_help_shows_the_descriptions_and_parameters(probe):
    text = pydoc.render_doc(tessel.cls_PyProbe, renderer=pydoc.plaintext)
    assert "Test fixture of the Python host." in text  # the class's description
    assert "SUM(pA, pB=10, pC=tessel.Missing)" in text and "Adds three numbers." in text
    assert "How often FAIL ran its body." in text  # a property's, among the data descriptors
    assert "CHANGED(pKey As String, pValue As Variant)  An item was assigned." in text
    assert "DELETE runs at its end" in text
    assert pydoc.render_doc(probe.SUM, renderer=pydoc.plaintext).count("Adds three numbers.") == 1
    # Without descriptions the members are listed all the same.
    text = pydoc.render_doc(tessel.cls_DrawFlags, renderer=pydoc.plaintext)
    assert "SETFLAG(pKey, pValue)" in text and "count As Long  [get]" in text


def _poke(obj):
    """Every slot a script can reach on obj; each may raise, none may crash."""
    for op in (repr, str, dir, bool, hash, len, iter, copy.copy, pickle.dumps, lambda o: o(),
               lambda o: o[0], lambda o: o.__reduce_ex__(2), lambda o: o == o):
        try:
            op(obj)
        except Exception:
            pass
    for name in dir(type(obj)):
        try:
            getattr(obj, name)
        except Exception:
            pass


def test_the_modules_own_types_refuse_construction_and_cope_with_every_state(rect):
    conn = rect.connect("MOVED", print)
    samples = [rect, rect.MOVE, tessel.cls_DrawRect.MOVE, tessel.cls_DrawRect.X, tessel.DRAW.RECT.AUTO, conn,
               tessel.Empty, tessel.ByRef(), tessel.Error("x"), tessel.cls_DrawRect, tessel.enm_Draw_Status]
    types = {type(s) for s in samples}
    types |= {t for mod in (tessel, tessel._tessel) for t in vars(mod).values() if isinstance(t, type)}
    for t in sorted((t for t in types if t.__module__ == "tessel"), key=str):
        for make in (lambda: t(), lambda: t.__new__(t), lambda: object.__new__(t)):
            try:
                made = make()
            except (TypeError, tessel.Error):
                continue
            _poke(made)
    for made in (tessel.Member, tessel.Property, tessel.Connection, type(tessel.Empty), tessel.Object,
                 type(tessel.DRAW.RECT.AUTO)):
        with pytest.raises(TypeError):
            made()
    conn.disconnect()
    for s in samples:
        _poke(s)
    # Copies keep what they copy; objects whose state is the library's are not pickled.
    assert copy.copy(tessel.ByRef(5)).value == 5 and copy.copy(tessel.Empty) is tessel.Empty
    assert pickle.loads(pickle.dumps(tessel.Null)) is tessel.Null
    with pytest.raises(TypeError):
        pickle.dumps(rect.MOVE)


def test_native_handles_are_counted_by_kind():
    counts = tessel.native_handles()
    assert {"brush", "pen", "font", "image", "graphics", "path"} <= set(counts)
    assert all(isinstance(n, int) and n >= 0 for n in counts.values())
    assert tessel.native_handles() == counts  # reading them makes none
