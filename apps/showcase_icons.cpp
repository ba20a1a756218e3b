// The showcase's icons picture: every icon of the root's set at 48 pixels with its name, on the
// paper in the showcase's ink and on a dark strip in white, and three at other sizes and strokes.
// Written next to the main picture.
#include <tessel/tessel.h>

#include "Sheet.h"

#include <string>

using namespace tessel;
using showcase::box;
using showcase::Sheet;

const char16_t* const kIconNames[] = {u"close",     u"minimize",  u"maximize",   u"restore", u"check",   u"cross",
                                      u"plus",      u"minus",     u"arrowup",    u"arrowdown", u"arrowleft",
                                      u"arrowright", u"menu",     u"search",     u"info",    u"warning", u"error"};

// The row of icons that the surface picture ends with: each `side` pixels, `gap` apart.
void drawIconRow(const Ref<cls_DrawGraphics>& g, int x, int y, int side, int gap, const char16_t* colour) {
  for (const char16_t* name : kIconNames) {
    mdl_Global::DRAW()->ICON(g, name, box(x, y, side, side), Variant(colour));
    x += side + gap;
  }
}

bool drawIcons(const std::string& file) {
  Ref<cls_DrawTool> draw = mdl_Global::DRAW();
  constexpr int kColumns = 9, kCell = 96, kSide = 48;
  Sheet sheet(kColumns * kCell + 40, 500);
  if (!sheet.ok()) return false;
  const Ref<cls_DrawGraphics>& g = sheet.surface();
  sheet.label(u"ICON: the built-in set at 48 pixels", 20, 12);
  int i = 0;
  for (const char16_t* name : kIconNames) {
    const int x = 20 + (i % kColumns) * kCell, y = 44 + (i / kColumns) * 92;
    draw->ICON(g, name, box(x + (kCell - kSide) / 2, y, kSide, kSide), Variant(u"#16425B"));
    const Variant centred = Variant(draw->TEXTFORMAT()->AUTO(Variant(int32_t(5))));  // centre, top
    g->TEXT(name, box(x, y + kSide + 6, kCell, 20), Variant(u"Arial,9pt"), Variant(u"#16425B"), Variant::missing(),
            centred);
    ++i;
  }
  // On a dark strip in white, and at other sizes and strokes.
  g->RECTANGLE(box(0, 240, kColumns * kCell + 40, 120), Variant(u"#16425B"), Variant(u"none"));
  drawIconRow(g, 24, 260, 32, 17, u"#F4F1EA");
  drawIconRow(g, 26, 316, 24, 26, u"#F4A259");
  sheet.label(u"Sizes 16 to 96; the flags STROKE, COLOR, WIDTH and HEIGHT", 20, 372, 700);
  int x = 20;
  for (int side : {16, 24, 32, 48, 64, 96}) {
    draw->ICON(g, u"search", box(x, 494 - side, side, side), Variant(u"#2F6690"));
    x += side + 14;
  }
  for (float stroke : {1.0f, 2.5f, 5.0f}) {
    auto flags = make<cls_DrawFlags>();
    flags->SETFLAG(u"STROKE", stroke)->SETFLAG(u"COLOR", Variant(u"#BC4B51"));
    draw->ICON(g, u"check", box(x, 438, 56, 56), Variant::missing(), flags);
    x += 66;
  }
  auto wide = make<cls_DrawFlags>();
  wide->SETFLAG(u"WIDTH", int32_t(140))->SETFLAG(u"HEIGHT", int32_t(48));
  draw->ICON(g, u"arrowright", box(x, 442, 140, 48), Variant(u"#16425B"), wide);
  return sheet.save(file);
}
