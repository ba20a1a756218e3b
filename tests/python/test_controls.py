"""The control tree from Python: a tree built, drawn on an image and driven through
EVENTHANDLER with points in any form, MOUSE events received, and bad input on the error path."""
import pytest

import tessel

K = tessel


def node(sort, text, x, y, w, h):
    n = tessel.cls_DrawControl()
    n.SORT, n.TEXT = sort, text
    n.BOX.MOVE(x, y, w, h)
    return n


@pytest.fixture
def desk():
    tessel.DRAW.INIT()
    d = node(K.ID_UIControl_Desktop, "", 0, 0, 320, 200)
    w = d.CHILDADD(node(K.ID_UIControl_Window, "Tools", 20, 20, 200, 150))
    w.CHILDADD(node(K.ID_UIControl_Button, "OK", 10, 10, 80, 28)).ID = "ok"
    return d


def test_a_tree_draws_and_a_press_reaches_the_button_it_shows(desk):
    image = tessel.DRAW.Image.CREATE(320, 200, "#FFFFFF")
    g = tessel.cls_DrawGraphics()
    g.CONNECT(image)
    desk.RENDER(g)
    ok = desk.CHILD(1).CHILD("ok")
    # The button's top left: 20 + 5 + 10 across, 20 + 30 + 10 down; its body is a light grey.
    top = image.PIXEL(40, 63) & 0xFFFFFF
    assert top != 0xFFFFFF and (top >> 16) == (top & 0xFF)

    seen = []
    ok.connect("MOUSE", lambda e, button, shift, p: seen.append((e, button, p.X, p.Y)))
    assert desk.EVENTHANDLER(K.ID_UIMouseEvent_Down, 1, 0, "(40,63)")
    assert ok.PRESSED and ok.FOCUS and desk.CHILD(1).FOCUS
    desk.EVENTHANDLER(K.ID_UIMouseEvent_Up, 1, 0, (40, 63))
    assert not ok.PRESSED
    assert seen == [(K.ID_UIMouseEvent_Down, 1, 15, 13), (K.ID_UIMouseEvent_Up, 1, 15, 13)]

    # The press asked for the button's box; RENDERWINDOW draws it and empties the area.
    assert g.REDRAWAREA.W > 0
    desk.RENDERWINDOW(g)
    assert g.REDRAWAREA.W == 0


def test_a_window_drags_by_its_title_strip(desk):
    w = desk.CHILD(1)
    desk.EVENTHANDLER(K.ID_UIMouseEvent_Down, 1, 0, tessel.DRAW.POINT(30, 30))
    desk.EVENTHANDLER(K.ID_UIMouseEvent_Move, 1, 0, tessel.DRAW.POINT(60.4, 45.6))
    desk.EVENTHANDLER(K.ID_UIMouseEvent_Up, 1, 0, tessel.DRAW.POINT(60, 46))
    assert (w.BOX.X, w.BOX.Y) == (50, 36)


def test_bad_input_fails_on_the_error_path_and_leaves_the_tree_alone(desk):
    with pytest.raises(tessel.Error):
        desk.EVENTHANDLER(K.ID_UIMouseEvent_Down, 0, 0, "(1,2")
    with pytest.raises(tessel.Error):
        desk.BEHAVIOUR(21)
    with pytest.raises(tessel.Error):
        desk.RENDER(None)
    w = desk.CHILD(1)
    w.BOX = None
    with pytest.raises(tessel.Error) as caught:
        desk.HITTEST("(5,5)") and w.HITTEST("(5,5)")
    assert "91" in str(caught.value) or "Objekt" in str(caught.value)
    assert desk.CHILDREN() == 1 and not w.FOCUS


def test_a_form_without_a_display_sizes_its_content_and_refuses_to_show():
    form = tessel.HostForm()
    if form.CANSHOW:
        pytest.skip("a display is there (the tests run without one)")
    assert form.AUTORENDER and form.Caption == "Tessel"
    form.Move(10, 20, 300, 200)
    assert (form.Width, form.Height) == (300, 200)
    assert (form.CONTENT.Width, form.CONTENT.Height) == (300, 200)
    with pytest.raises(tessel.Error):
        form.Show()
    assert not form.Visible
    form.RUN()        # no window open: returns at once
    form.DOEVENTS(5)  # nothing to handle without a display
