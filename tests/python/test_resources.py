"""Drawing resources from a script: the factories as the root's properties, a colour's cached
brush and pens through Python's bracket form, images and their pixels, the image cache, and
handle accounting across a script's objects."""
import pytest

import tessel

DRAW = tessel.DRAW


@pytest.fixture(autouse=True)
def started():
    DRAW.INIT()


def test_colour_hands_out_cached_protected_resources_that_go_with_it():
    before = tessel.native_handles()
    red = DRAW.COLOR("#C00000")
    assert red.BRUSH is red.BRUSH and red.BRUSH.PROTECTED
    assert red.PEN[2] is red.PEN[2]
    assert red.PEN[3, 9].DASHSTYLE == tessel.ID_Draw_PenDash_Custom
    old = red.BRUSH
    red.R = 1
    assert red.BRUSH is not old
    del red, old
    assert tessel.native_handles() == before


def test_brush_factory_and_images_from_loose_arguments():
    before = tessel.native_handles()
    assert DRAW.BRUSH().HANDLE == 0 and DRAW.BRUSH("").HANDLE == 0
    assert DRAW.BRUSH("#FF8000").HANDLE != 0
    tile = DRAW.Image("(2,2)")
    tile.PIXEL[1, 0] = DRAW.COLOR("#0000FF").ATOM
    assert tile.PIXEL[1, 0] == DRAW.COLOR("#0000FF").ATOM and tile.PIXEL[0, 0] == 0
    assert DRAW.BRUSH.texture(tile, tessel.ID_Draw_Warp_Clamp).HANDLE != 0
    with pytest.raises(tessel.Error) as raised:
        tile.PIXEL[2, 0]
    assert raised.value.source == "cls_DrawImage.PIXEL.GET"
    del tile
    assert tessel.native_handles() == before


def test_shared_resources_read_before_the_platform_starts_are_made_once_it_has():
    from conftest import run_python
    done = run_python(
        "import tessel\n"
        "D = tessel.DRAW\n"
        "right, red = D.TEXTFORMAT.ALIGNRIGHT, D.COLOR('#FF0000')\n"
        "assert right.HANDLE == 0 and red.BRUSH.HANDLE == 0\n"
        "D.INIT()\n"
        "right = D.TEXTFORMAT.ALIGNRIGHT\n"
        "assert right.HANDLE != 0 and right.ALIGN == 2 and right.PROTECTED\n"
        "assert red.BRUSH.HANDLE != 0 and red.BRUSH is red.BRUSH and red.PEN[2].HANDLE != 0\n")
    assert done.returncode == 0, done.stderr


def test_image_cache_by_name_and_its_names_as_a_list():
    cache = DRAW.RESOURCES
    cache.ADD("Ok", "(2,2)")
    cache.ADD("cancel", 3)
    assert cache("OK") is cache.ITEM("ok") and cache("cancel").WIDTH == 3
    assert list(cache.NAMES) == ["Ok", "cancel"] and len(cache.NAMES) == 2
    DRAW.RESOURCES = None  # a new, empty cache on the next read
    assert DRAW.RESOURCES.count == 0
