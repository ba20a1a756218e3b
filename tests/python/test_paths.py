"""Paths from a script: chained figures, bounds as values, hit tests, and a malformed point list
that fails as a bad value and leaves the path as it was."""
import pytest

import tessel


def test_a_path_chains_and_answers_and_frees_its_native_path():
    tessel.DRAW.INIT()
    start = tessel.native_handles()["path"]
    path = tessel.DRAW.PATH().RECT(tessel.DRAW.RECT(0, 0, 20, 10), 4).POLYGON("(30,0), (40,10), (30,10)")
    assert isinstance(path, tessel.cls_DrawPath) and path.HANDLE != 0
    assert tuple(path.BOUNDS()) == (0, 0, 40, 10)
    assert path.HITTEST(10, 5) and not path.HITTEST(0, 0)  # a rounded corner
    assert path.HITTEST(tessel.DRAW.POINT(38, 9)) and not path.HITTEST(32, 1)
    with pytest.raises(ValueError) as info:
        path.LINES("(0,0),(1)")
    assert (info.value.number & 0xFFFF, info.value.source) == (5, "cls_DrawPath.LINES")
    assert tuple(path.BOUNDS()) == (0, 0, 40, 10)
    del path
    assert tessel.native_handles()["path"] == start
