"""Drawing on a surface from Python: shapes with loose and object arguments, keyword arguments
for what is left out, text and its measurement, projection, and an image drawn faded."""
import pytest

import tessel

D = tessel.DRAW


@pytest.fixture
def box():
    """A picture box of 80 × 60 pixels with a surface bound to it, cleared white."""
    D.INIT()
    b = tessel.PictureBox()
    b.ScaleMode = 3
    b.Move(0, 0, 80, 60)
    b.BackColor = "white"
    b.Cls()
    g = tessel.cls_DrawGraphics()
    g.CONNECT(b)
    yield b, g
    g.RELEASE()


def argb(b, x, y):
    return b.PIXEL(x, y) & 0xFFFFFFFF


def test_shapes_take_objects_and_loose_colours(box):
    b, g = box
    g.RECTANGLE(D.RECT(10, 10, 20, 20), "#FF0000", D.PEN("#0000FF"))
    assert argb(b, 20, 20) == 0xFFFF0000
    assert argb(b, 10, 20) == 0xFF0000FF
    g.ELLIPSE(D.RECT(40, 10, 30, 30), pPen=D.PEN.NONE())  # the default white brush, no outline
    assert argb(b, 55, 25) == 0xFFFFFFFF
    g.FILL("#00FF00")
    assert argb(b, 0, 0) == 0xFF00FF00 and argb(b, 79, 59) == 0xFF00FF00


def test_a_failing_argument_raises_under_the_operation(box):
    _, g = box
    with pytest.raises(tessel.Error) as raised:
        g.CLEAR("#FF0000")  # a loose colour is a point, which has no ATOM
    assert "cls_DrawGraphics.CLEAR" in str(raised.value)


def test_text_draws_measures_and_turns(box):
    b, g = box
    g.TEXT("Tessel", D.RECT(0, 0, 80, 30), pBrush="#000000")
    dark = sum(argb(b, x, y) != 0xFFFFFFFF for x in range(80) for y in range(30))
    assert dark > 20
    m = g.TEXTMEASURE("Tessel", D.RECT(0, 0, 80, 30))
    assert 10 < m.W < 80 and 5 < m.H <= 30
    assert g.TEXT2UNICODE("A") == "A\x00"
    g.TEXT("Turned", D.RECT(0, 30, 80, 30), pBrush="#000000", pAngle=45)
    p = g.PROJECT(D.POINT(3, 4))
    assert (p.X, p.Y) == (3, 4)  # the rotation is undone


def test_numbers_beyond_single_fail_and_leave_the_surface_drawing(box):
    b, g = box
    img = D.Image.CREATE(1, 4, "#FF0000")  # 6e38 wide over 1 pixel: beyond single
    for bad in (lambda: g.TEXT("x", (0, 0, 50, 50), pAngle=1e300),
                lambda: g.SCALING((3e38, 1), 1000),
                lambda: g.OFFSET((3e38, 0), 10),
                lambda: g.PIE((0, 0, 10, 10), 0, 1e300),
                lambda: g.IMAGEWARP(img, (-3e38, 0), (3e38, 0), (0, 5))):
        with pytest.raises(tessel.Error) as raised:
            bad()
        assert raised.value.number & 0xFFFF == 6  # overflow
    g.RESETPROJECTION()
    g.RECTANGLE((10, 10, 20, 20), "#0000FF", "none")
    assert argb(b, 15, 15) == 0xFF0000FF


def test_projection_moves_what_is_drawn(box):
    b, g = box
    g.OFFSET(D.POINT(40, 0))
    g.RECTANGLE(D.RECT(0, 0, 10, 10), "#FF0000", D.PEN.NONE())
    assert argb(b, 45, 5) == 0xFFFF0000 and argb(b, 5, 5) == 0xFFFFFFFF
    p = g.PROJECT(D.POINT(45, 5))
    assert (p.X, p.Y) == (5, 5)
    g.RESETPROJECTION()
    g.RENDERWINDOW(D.RECT(0, 0, 10, 10))
    g.RENDERWINDOW(D.RECT(20, 20, 10, 10))
    assert g.REDRAWAREA.INFO() == "(0,0)-(29,29)"


def test_images_fit_and_fade(box):
    b, g = box
    red = D.Image.CREATE(10, 5, "#FF0000")
    g.IMAGEFIT(red, D.RECT(0, 0, 40, 40))
    assert argb(b, 20, 20) == 0xFFFF0000 and argb(b, 20, 5) == 0xFFFFFFFF
    g.Image(red, 50, 50, 0.5)
    faded = argb(b, 55, 52)
    assert faded >> 16 & 0xFF == 0xFF and abs((faded >> 8 & 0xFF) - 128) <= 3


def test_tuples_and_lists_cross_as_arrays(probe):
    assert probe.ECHO((1, "two", (3.5,), [])) == (1, "two", (3.5,), ())
    assert probe.KIND([1, 2]) == "Variant()"
    with pytest.raises(TypeError):
        probe.ECHO((1, object()))


def test_rectangles_and_points_from_texts_tuples_and_lists(box):
    b, g = box
    g.ELLIPSE((10, 10, 50, 30), "#FF0000", "none")
    assert argb(b, 35, 25) == 0xFFFF0000
    g.RECTANGLE("(60, 40, 15, 15)", "none", "#0000FF")  # outline only
    assert argb(b, 60, 45) == 0xFF0000FF and argb(b, 67, 47) == 0xFFFFFFFF
    assert D.RECT(0, 0, 100, 100).HITTEST((70, 50))
    assert not D.RECT(0, 0, 100, 100).HITTEST([170, 50])
    assert D.POINT("(3,4)").Y == 4
    assert D.RECT([1, 2, 3, 4]).INFO() == "(1,2)-(3,5)"
    with pytest.raises(tessel.Error):
        D.RECT((1, 2, 3, 4, 5))
    with pytest.raises(TypeError):
        D.RECT("1,2,3,4")  # only a bracketed list is read whole


def test_none_is_the_empty_pen_and_brush():
    for text in ("none", "None", "NONE"):
        assert D.PEN(text).HANDLE == 0 and D.BRUSH(text).HANDLE == 0


def test_icons_by_name_with_flags(box):
    b, g = box
    assert D.ICON(g, "Arrow-Right", (10, 10, 40, 40), "#0000FF")
    assert any(argb(b, x, 30) == 0xFF0000FF for x in range(10, 50))
    assert not D.ICON(g, "teapot", (10, 10, 40, 40))
    flags = tessel.cls_DrawFlags()
    flags.SETFLAG("COLOR", "#FF0000")
    assert D.ICON(g, "error", D.RECT(50, 10, 24, 24), pFlags=flags)
    assert argb(b, 55, 22) == 0xFFFF0000  # the disc, left of the cut-out cross
