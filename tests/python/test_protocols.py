"""Python's protocols as the type library's entries ask for them: repr, tuple forms, collections,
`with` and DELETE, copy and CLONE, truth of members, dir()."""
import copy
import pickle

import pytest

import tessel


def test_repr_shows_the_display_member_or_identity(rect, probe):
    colors = tessel.DRAW.COLOR
    assert repr(colors("orange")) == "<tessel.cls_DrawColor #FFA500>"
    rect.MOVE(1, 2, 3, 4)
    assert repr(rect) == "<tessel.cls_DrawRect (1,2)-(3,5)>" == str(rect)
    assert repr(probe).startswith("<tessel.cls_PyProbe object at 0x")
    assert repr(tessel.DRAW).startswith("<tessel.cls_DrawTool object at 0x")


def test_tuple_forms_iterate_as_values_and_equality_stays_identity(rect):
    rect.MOVE(1, 2, 30, 40)
    x, y, w, h = rect
    assert (x, y, w, h) == (1, 2, 30, 40)
    r, g, b, a = tuple(tessel.DRAW.COLOR("#102030"))
    assert (r, g, b, a) == (0x10, 0x20, 0x30, 255)
    assert list(tessel.DRAW.POINT.POINT(5, 6)) == [5, 6]
    twin = tessel.DRAW.RECT(1, 2, 30, 40)
    assert tuple(twin) == tuple(rect) and twin != rect and rect == rect
    assert len({rect, twin, rect}) == 2  # hashable by identity
    with pytest.raises(TypeError):
        len(rect)  # a tuple form is no collection


def test_collections_have_len_and_iterate_their_items():
    flags = tessel.cls_DrawFlags()
    assert len(flags) == 0 and not flags and list(flags) == []
    for key in ("a", "b", "c"):
        flags.SETFLAG(key, key.upper())
    assert len(flags) == 3 and flags and list(flags) == ["a", "b", "c"]
    for key in flags:  # iteration reads the items at its start
        flags.REMOVE(key)
    assert len(flags) == 0
    for other in (tessel.DRAW, tessel.cls_PyProbe()):
        with pytest.raises(TypeError):
            iter(other)
        with pytest.raises(TypeError):
            len(other)


def test_with_calls_delete_at_the_end():
    with tessel.cls_PyProbe() as p:
        p.ITEM["k"] = 1
        assert not p.RELEASED
    assert p.RELEASED and p.ITEM["k"] is tessel.Empty

    q = tessel.cls_PyProbe()
    with pytest.raises(KeyError):
        with q:
            raise KeyError("inside")  # the block's exception goes on, DELETE still runs
    assert q.RELEASED
    with pytest.raises(ValueError):  # DELETE's own failure (5) reaches the script
        with q:
            pass
    with pytest.raises(TypeError):
        with tessel.cls_DrawRect():  # no DELETE: no context manager
            pass


def test_copy_uses_clone(rect):
    rect.MOVE(1, 2, 3, 4)
    twin = copy.copy(rect)
    assert type(twin) is tessel.cls_DrawRect and twin is not rect and tuple(twin) == (1, 2, 3, 4)
    twin.X = 9
    assert rect.X == 1
    black = tessel.DRAW.COLOR.BLACK
    assert copy.copy(black).HTML() == "#000000"
    with pytest.raises(TypeError, match="cannot be pickled or copied"):
        copy.copy(tessel.DRAW)  # no CLONE
    with pytest.raises(TypeError, match="CLONE"):
        pickle.dumps(rect)


def test_members_refuse_truth_testing(rect):
    ready = tessel.DRAW.READY
    with pytest.raises(TypeError, match=r"call it, READY\(\)"):
        if ready:
            pass
    with pytest.raises(TypeError):
        not rect.MOVE
    with pytest.raises(TypeError):
        bool(rect.connect)
    assert rect and tessel.cls_DrawRect.MOVE  # objects, and a class's own members, are true


def test_dir_lists_members_and_connect(probe):
    assert set(dir(probe)) == set(tessel.cls_PyProbe.members) | {"connect"}
    assert dir(tessel.cls_DrawFlags()) == sorted(tessel.cls_DrawFlags.members)  # no events: no connect
