"""The picture box from Python: sizing, clearing and reading it, a surface bound to it, and a
handler that changes a ByRef argument of its input events."""
import tessel


def test_a_picture_box_sized_cleared_and_bound_to_a_surface():
    box = tessel.PictureBox()
    sizes = []
    with box.connect("Resize", lambda: sizes.append((box.Width, box.Height))):
        box.Move(0, 0, 40, 30)
        box.Width = 40.0  # the same size: no Resize
    assert sizes == [(40, 30)]
    box.BackColor = "navy"
    box.Cls()
    assert box.PIXEL(39, 29) & 0xFFFFFFFF == 0xFF000080
    picture = box.Image
    assert (picture.Width, picture.Height) == (40, 30)

    g = tessel.cls_DrawGraphics()
    g.CONNECT(box)
    assert box.ScaleMode == 3 and box.AutoRedraw
    assert g.RECT().INFO() == "(0,0)-(39,29)" and g.READY()


def test_a_handler_changes_a_byref_argument(probe):
    box = tessel.PictureBox()
    seen = []

    def swallow(code, shift):
        seen.append((code.value, shift.value))
        code.value = 0

    with box.connect("KeyDown", swallow):
        assert probe.KEYDOWN(box, 65) == 0
    assert seen == [(65, 0)]
    assert probe.KEYDOWN(box, 65) == 65  # no handler any more
