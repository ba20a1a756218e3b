"""An image's pixels shared in place (numpy, PIL, memoryview) and shown as PNG in notebooks."""
import numpy
import pytest
from PIL import Image

import tessel

DRAW = tessel.DRAW


def test_numpy_sees_and_changes_the_pixels_in_place_while_the_image_is_pinned():
    DRAW.INIT()
    img = DRAW.Image.CREATE(3, 2, "#FF8000")
    a = numpy.asarray(img)
    assert a.shape == (2, 3, 4) and a.dtype == numpy.uint8 and a.flags.writeable
    assert list(a[1, 2]) == [0, 0x80, 0xFF, 0xFF]  # BGRA
    a[0, 1] = [255, 0, 0, 255]
    assert img.PIXEL[1, 0] & 0xFFFFFFFF == 0xFF0000FF
    img.PIXEL[2, 0] = -1
    assert list(a[0, 2]) == [255, 255, 255, 255]
    with pytest.raises(tessel.Error) as e:
        img.RESIZE(6, 6)  # the array still points at the bitmap
    assert e.value.number & 0xFFFF == 10 and e.value.source == "cls_DrawImage.RESIZE"
    del a
    assert img.RESIZE(6, 6).WIDTH == 6


def test_pil_and_memoryview_read_the_same_bytes():
    img = DRAW.Image.CREATE(4, 3, "#336699")
    img.PIXEL[0, 0] = 0x80FF0000 - (1 << 32)  # half-transparent red, kept premultiplied
    picture = Image.frombuffer("RGBA", (4, 3), img, "raw", "BGRa", 0, 1)
    assert picture.getpixel((3, 2)) == (0x33, 0x66, 0x99, 255)
    assert picture.getpixel((0, 0)) == (255, 0, 0, 128)
    with memoryview(img) as view:
        assert view.shape == (3, 4, 4) and view.format == "B" and view.tobytes()[:4] == b"\x00\x00\x80\x80"
    with pytest.raises(BufferError):
        memoryview(DRAW.RECT.RECT(0, 0, 1, 1))
    with pytest.raises(BufferError):
        memoryview(DRAW.Image.CREATE(1, 1).DELETE())


def test_images_show_themselves_as_png():
    png = DRAW.Image.CREATE(5, 5, "#FFFFFF")._repr_png_()
    assert png.startswith(b"\x89PNG\r\n\x1a\n")
    assert Image.open(__import__("io").BytesIO(png)).size == (5, 5)
    assert DRAW.RECT.RECT(1, 2, 3, 4)._repr_png_() is None
    assert tessel.cls_DrawImage()._repr_png_() is None
