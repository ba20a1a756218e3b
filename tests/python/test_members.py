"""Members by name: reading, assigning, calling, parameters, keyword arguments, the default
member, the raw invoke, values crossing over, and ByRef cells."""
import fractions
import sys

import pytest

import tessel


def test_members_are_found_in_any_case(rect):
    rect.x = 4
    rect.Y = 5
    rect.w = 10
    assert (rect.X, rect.y, rect.W, rect.h) == (4, 5, 10, 10)
    assert rect.info() == rect.INFO() == "(4,5)-(13,14)"


def test_reading_gives_a_value_or_a_bound_member(rect):
    assert isinstance(rect.X, float)
    ready = tessel.DRAW.READY
    assert isinstance(ready, tessel.Member)
    assert ready() is tessel.DRAW.READY()
    assert tessel.cls_DrawFlags().count == 0
    move = rect.MOVE
    del rect
    assert move(1, 2).X == 1  # a bound member keeps its object alive


def test_assignment_lets_values_and_sets_objects(rect):
    rect.X = "12"  # the library converts by its own rules
    assert rect.X == 12
    root = tessel.DRAW
    original = root.RECT
    mine = tessel.cls_DrawToolRect()
    try:
        root.RECT = mine
        assert root.RECT is mine
        root.RECT = None  # Nothing: the next read makes a fresh factory
        assert root.RECT is not mine and isinstance(root.RECT, tessel.cls_DrawToolRect)
    finally:
        root.RECT = original
    with pytest.raises(tessel.Error) as e:
        rect.MOVE = 1  # a method cannot be assigned
    assert e.value.number == 438
    with pytest.raises(TypeError):
        del rect.X
    with pytest.raises(AttributeError) as e:
        rect.NOSUCH
    assert "Did you mean" not in str(e.value)  # nothing is spelled like it
    with pytest.raises(AttributeError):
        rect.NOSUCH = 1
    assert not hasattr(rect, "NOSUCH")
    with pytest.raises(AttributeError, match="Did you mean: 'MOVEBY'"):
        rect.moveByy(1, 1)


def test_properties_with_parameters(probe):
    probe.ITEM["a"] = 1.5
    assert probe.ITEM("a") == probe.ITEM["a"] == 1.5
    other = tessel.cls_PyProbe()
    probe.ITEM["o"] = other  # an object is set
    assert probe.ITEM["o"] is other
    probe.MATRIX[1, 3] = 0.1
    assert probe.MATRIX(1, 3) == probe.MATRIX[1, 3] == 0.1
    assert probe.MATRIX[3, 1] == 0
    assert probe.MATRIX(pCol=3, pRow=1) == 0.1
    with pytest.raises(tessel.Error) as e:
        probe.MATRIX[4, 1] = 1
    assert e.value.source == "cls_PyProbe.MATRIX.LET"
    with pytest.raises(tessel.Error) as e:
        probe.MATRIX[1]
    assert e.value.number == 449  # the second parameter is not optional


def test_calling_the_object_calls_its_default_member(probe):
    r = tessel.DRAW.RECT("5", 6, 7, 8)
    assert isinstance(r, tessel.cls_DrawRect)
    assert (r.X, r.Y, r.W, r.H) == (5, 6, 7, 8)
    flags = tessel.cls_DrawFlags()
    flags.SETFLAG("w", 640)
    assert flags("w") == 640 and flags("h", 100) == 100 and flags(pDefault=3, pKey="x") == 3
    probe.ITEM["k"] = "v"
    assert probe("k") == "v"
    with pytest.raises(tessel.Error) as e:
        r()  # a rectangle has no default member
    assert e.value.number == 438


def test_keyword_and_omitted_arguments(rect, probe):
    rect.MOVE(1, 2, pH=30)  # pW keeps its default, -1: unchanged
    assert (rect.X, rect.Y, rect.W, rect.H) == (1, 2, 10, 30)
    rect.move(pY=7, px=3)
    assert (rect.X, rect.Y) == (3, 7)
    assert probe.SUM(1) == 11  # pB defaults to 10, pC to 0
    assert probe.SUM(1, tessel.Missing, 3) == 14
    assert probe.SUM(1, pC=5) == 16
    # The host's own errors: unknown or repeated name, missing argument, too many.
    for call, number in [
        (lambda: rect.MOVE(1, 2, pZ=3), 448),
        (lambda: rect.MOVE(1, 2, pX=3), 448),
        (lambda: rect.MOVE(pY=1), 449),
        (lambda: rect.MOVE(1, 2, 3, 4, 5), 450),
    ]:
        with pytest.raises(tessel.Error) as e:
            call()
        assert e.value.number == number
    assert (rect.X, rect.Y, rect.W, rect.H) == (3, 7, 10, 30)


def test_invoke_is_the_raw_late_bound_call(rect):
    tessel.invoke(rect, "x", "let", 5)
    assert tessel.invoke(rect, "X", "Get") == 5
    assert tessel.invoke(rect, "MOVE", "method", 1, 2, pW=3) is rect
    assert rect.W == 3
    made = tessel.invoke(tessel.DRAW.RECT, "", "method", 1, 2, 3, 4)  # the default member
    assert (made.X, made.W) == (1, 3)
    for target, name, number in [(rect, "NOSUCH", 438), (None, "X", 91), (5, "X", 424)]:
        with pytest.raises(tessel.Error) as e:
            tessel.invoke(target, name, "get")
        assert e.value.number == number
    with pytest.raises(ValueError):
        tessel.invoke(rect, "X", "fetch")


def test_invoke_keywords_are_the_members_own(probe):
    # The raw call's own three come first and by position only: every keyword is the member's.
    assert tessel.invoke(probe, "JOIN", "method", kind="c", name="b", obj="a") == "a/b/c"
    assert probe.JOIN("a", kind="c", name="b") == "a/b/c"
    with pytest.raises(tessel.ArgumentError) as e:
        tessel.invoke(probe, "SUM", "method", 1, name=2)
    assert e.value.number == 448
    for args, error in [((), "takes the object"), ((probe, 5, "get"), "must be a str"),
                        ((probe, "SUM", None), "must be a str"), ((probe, "SUM", "get\0"), "kind must be")]:
        with pytest.raises((TypeError, ValueError), match=error):
            tessel.invoke(*args)


def test_texts_keep_their_length_and_no_name_holds_nul_or_surrogates(rect, probe):
    for name in ("X\0junk", "X\0", "\ud800", "MOVE\udfff", ""):
        assert not hasattr(rect, name)
        with pytest.raises(tessel.NoSuchMemberError):
            getattr(rect, name)
        if name:
            with pytest.raises(tessel.NoSuchMemberError):
                tessel.invoke(rect, name, "get")
    for keyword in ("pW\0", "\ud800", ""):
        with pytest.raises(tessel.ArgumentError):
            rect.MOVE(1, 2, **{keyword: 3})
    probe.ITEM["k"] = 1
    assert probe.ECHO("a\0b\0") == "a\0b\0" and probe.ITEM["k\0"] is tessel.Empty
    assert tessel._tessel.find_class("cls_DrawRect\0") is None and tessel._tessel.find_class("\ud800") is None
    assert tessel._tessel.global_instance("sys_Global\0") is None


@pytest.mark.parametrize(
    "value, kind, back",
    [
        (True, "Boolean", True),
        (7, "Long", 7),
        (2**31 - 1, "Long", 2**31 - 1),
        (-(2**31), "Long", -(2**31)),
        (2**31, "LongLong", 2**31),  # outside 32 bits: 64-bit, as native handles are
        (-(2**63), "LongLong", -(2**63)),
        (2**63, "Double", 9223372036854775808.0),  # outside 64 bits: Double
        (1.5, "Double", 1.5),
        ("grüße 😀", "String", "grüße 😀"),  # outside the BMP: a surrogate pair on the way
        ("\ud800", "String", "\ud800"),  # a lone surrogate survives
        (None, "Nothing", None),
        (tessel.Null, "Null", tessel.Null),
        (tessel.Empty, "Empty", tessel.Empty),
        (fractions.Fraction(1, 4), "Double", 0.25),
    ],
)
def test_values_cross_as_variants(probe, value, kind, back):
    assert probe.KIND(value) == kind
    result = probe.ECHO(value)
    assert result == back and type(result) is type(back)


def test_special_values_and_objects(probe):
    assert probe.KIND() == probe.KIND(tessel.Missing) == "Error"  # omitted
    assert probe.ECHO() is tessel.Missing
    assert probe.ECHO(tessel.Empty) is tessel.Empty
    assert probe.KIND(probe) == "cls_PyProbe" and probe.ECHO(probe) is probe
    assert not tessel.Empty and not tessel.Null and repr(tessel.Null) == "tessel.Null"
    r = tessel.cls_DrawRect()
    r.X = 10.3  # a Single reads back as the shortest decimal that names it
    assert r.X == 10.3
    r.X = 0.1
    assert r.X == 0.1


def test_library_conversions_apply_after_the_crossing():
    colors = tessel.DRAW.COLOR
    c = colors("#102030")
    assert (c.R, c.G, c.B) == (0x10, 0x20, 0x30) and type(c.R) is int  # a Byte reads as int
    c.R = 254.5  # whole numbers round half to even
    assert c.R == 254
    with pytest.raises(tessel.Error) as e:
        c.R = 300
    assert (e.value.source, e.value.description) == ("cls_DrawColor.R.LET", "Ungültiger Parameter (6)")
    black = colors.BLACK
    black.R = 5  # a protected colour ignores changes silently
    assert black.R == 0 and black.PROTECTED is True
    assert isinstance(c.SYSCOLOR(tessel.ID_SysColor_Window), tessel.cls_DrawColor)


def test_values_without_a_variant_form_are_refused(rect):
    rect.X = 4
    for bad in ([1], {"a": 1}, b"x", object(), 1j):
        with pytest.raises(TypeError):
            rect.X = bad
        with pytest.raises(TypeError):
            rect.MOVE(bad, 1)
    with pytest.raises(OverflowError):
        rect.X = 10**400
    assert rect.X == 4


def test_byref_parameters_take_cells():
    kind = tessel.ByRef()
    values = [tessel.ByRef("keep") for _ in range(4)]
    tessel.mdl_Global.PARADECODE("(10,20)", kind, *values)
    assert kind.value == 2 and [v.value for v in values] == [10, 20, 0, 0]

    values = [tessel.ByRef("keep") for _ in range(4)]
    tessel.mdl_Global.PARADECODE("(1,2,3,4)", kind, *values)
    assert kind.value == -1 and [v.value for v in values] == ["keep"] * 4  # nothing assigned

    # Plain values go by value; so does a cell given for a parameter that is not ByRef.
    assert tessel.mdl_Global.PARADECODE("#FF0000", 0, 0, 0, 0, 0) is tessel.Empty
    cell = tessel.ByRef("ff")
    assert tessel.mdl_Global.UNHEX(cell, 0) == 255 and cell.value == "ff"
    assert repr(tessel.ByRef()) == "tessel.ByRef(tessel.Empty)"


def test_byref_cells_by_keyword_and_failed_conversions(probe):
    counter, cell = tessel.ByRef(4), tessel.ByRef()
    probe.BUMP(pCell=cell, pCounter=counter)
    assert (counter.value, cell.value) == (5, "bumped")
    counter = tessel.ByRef(2**40)  # no Long: the member fails and the cell keeps its value
    with pytest.raises(tessel.Error) as e:
        probe.BUMP(counter, cell)
    assert e.value.source == "cls_PyProbe.BUMP"
    assert counter.value == 2**40


def test_failed_calls_leak_nothing(rect, probe):
    point = tessel.cls_DrawPoint()
    native, python = probe.REFCOUNT(point), sys.getrefcount(point)
    for _ in range(50):
        with pytest.raises(tessel.Error):
            rect.MOVE(point, 1)  # a point has no value to give as a Single
        with pytest.raises(TypeError):
            rect.MOVE(point, [1])  # fails after the first argument was converted
        with pytest.raises(tessel.Error):
            probe.FAIL(5, pNoSuch=point)
    assert probe.REFCOUNT(point) == native
    assert sys.getrefcount(point) == python
