"""Fonts from Python: descriptions through the factory's default member, and native objects
that go with the font."""
import gc

import pytest

import tessel


def test_a_description_makes_a_font_and_dropping_it_frees_it():
    tessel.DRAW.INIT()
    before = tessel.native_handles()
    font = tessel.DRAW.FONT("'Times New Roman',10pt,bold,italic")
    assert (font.FONTNAME, font.SIZE, font.STYLE()) == ("Times New Roman", 10, tessel.ID_DrawFontStyle_BoldItalic)
    assert font.FAMILY != 0 and tessel.DRAW.FONT(font) is font
    font.SIZE = 12
    assert font.SIZE == 12 and font.STYLE() == tessel.ID_DrawFontStyle_BoldItalic
    del font
    gc.collect()
    assert tessel.native_handles() == before


def test_bad_descriptions_give_empty_fonts_and_bad_sizes_raise():
    tessel.DRAW.INIT()
    empty = tessel.DRAW.FONT("Arial,#FF0000")  # reported through ERRORSET, no failure of the call
    assert (empty.HANDLE, empty.SIZE, empty.FAMILY, empty.FONTNAME) == (0, 0, 0, "")
    assert tessel.DRAW.FONT().HANDLE == 0 and tessel.DRAW.FONT(12).HANDLE == 0
    with pytest.raises(tessel.Error) as raised:
        tessel.DRAW.FONT("Arial,1e39pt")
    assert raised.value.source == "cls_DrawToolFont.AUTO"
    assert raised.value.number == 0x80040006 - 2**32
