// The showcase's resources picture: brushes, pens and paths made by the factories and drawn on a
// sheet's surface. Written next to the main picture.
#include <tessel/tessel.h>

#include "Sheet.h"

#include <cstdio>
#include <string>

using namespace tessel;
using showcase::box;
using showcase::Sheet;

namespace {

Variant pt(double x, double y) { return Variant(mdl_Global::DRAW()->POINT()->POINT(x, y)); }

}  // namespace

bool drawResources(const std::string& file) {
  Ref<cls_DrawTool> draw = mdl_Global::DRAW();
  auto colours = draw->COLOR();
  auto brushes = draw->BRUSH();
  Sheet sheet(520, 330);
  if (!sheet.ok()) return false;

  // Brushes: solid, two gradients, a tiled checker and a flipped tile.
  const int top = 20, side = 80;
  sheet.fill(colours->AUTO(Variant(u"#2F6690"))->BRUSH(), 20, top, side, side);
  sheet.fill(brushes->GRADIENT(box(120, top, side, side), Variant(u"#16425B"), Variant(u"#D9DCD6"), 0), 120, top, side, side);
  sheet.fill(brushes->GRADIENT(box(220, top, side, side), Variant(u"#F4A259"), Variant(u"#BC4B51"), 90), 220, top, side, side);
  auto tile = draw->Image()->CREATE(10, 10, Variant(u"#FFFFFF"));
  for (int y = 0; y < 5; ++y)
    for (int x = 0; x < 5; ++x) {
      tile->PIXEL(x, y, colours->AUTO(Variant(u"#3A7CA5"))->ATOM());
      tile->PIXEL(x + 5, y + 5, colours->AUTO(Variant(u"#3A7CA5"))->ATOM());
    }
  sheet.fill(brushes->texture(Variant(tile)), 320, top, side, side);
  auto corner = draw->Image()->CREATE(12, 12, Variant(u"#F4F1EA"));
  for (int k = 0; k < 12; ++k) corner->PIXEL(k, 11 - k, colours->AUTO(Variant(u"#BC4B51"))->ATOM());
  sheet.fill(brushes->texture(Variant(corner), enm_Draw_Wrap::ID_Draw_Warp_TileFlipXY), 420, top, side, side);

  // Pens: a colour's cached pens in every dash style, and description texts.
  const char16_t* inks[] = {u"#16425B", u"#2F6690", u"#3A7CA5", u"#BC4B51", u"#F4A259"};
  for (int style = 0; style < 5; ++style) {
    const int y = 122 + style * 11;
    sheet.line(colours->AUTO(Variant(inks[style]))->PEN(3, static_cast<enm_Draw_PenDash>(style)), 20, y, 250, y);
  }
  sheet.line(draw->PEN()->AUTO(Variant(u"#2F6690,6px")), 285, 128, 500, 128);
  sheet.line(draw->PEN()->AUTO(Variant(u"#BC4B51A0,12px")), 285, 155, 500, 135);
  sheet.line(draw->PEN()->DASHED(Variant(u"#16425B"), enm_Draw_PenDash::ID_Draw_PenDash_DashDot, 2), 285, 160, 500, 160);

  // Paths: a rounded rectangle, a pie, a star, a wave, a ring and outlined text.
  auto dark = colours->AUTO(Variant(u"#16425B"));
  auto fill = colours->AUTO(Variant(u"#3A7CA5"))->BRUSH();
  auto warm = colours->AUTO(Variant(u"#F4A259"))->BRUSH();
  sheet.path(draw->PATH()->RECT(box(20, 190, 90, 60), 14), fill, dark->PEN(2));
  sheet.path(draw->PATH()->PIE(box(125, 190, 60, 60), -60, 300), warm, dark->PEN(2));
  sheet.path(draw->PATH()->POLYGON(Variant(u"(230,190),(241,213),(266,215),(247,231),(253,255),(230,242),(207,255),"
                                          u"(213,231),(194,215),(219,213)")),
             colours->AUTO(Variant(u"#BC4B51"))->BRUSH(), dark->PEN(1));
  auto wave = draw->PATH()->BEZIER(pt(280, 220), pt(310, 170), pt(340, 270), pt(370, 220));
  wave->BEZIER(pt(370, 220), pt(400, 170), pt(430, 270), pt(460, 220));
  sheet.path(wave, nullptr, colours->AUTO(Variant(u"#2F6690"))->PEN(4));
  sheet.path(draw->PATH()->ELLIPSE(box(470, 195, 40, 40))->ELLIPSE(box(482, 207, 16, 16)), warm, dark->PEN(1));
  auto words = draw->PATH()->TEXT(u"Tessel paths", Variant(u"Arial,40,bold"), box(20, 265, 480, 55),
                                  Variant(int32_t(enm_TextAlign::ID_TextAlign_CenterMiddle)));
  sheet.path(words, brushes->GRADIENT(box(20, 265, 480, 55), Variant(u"#2F6690"), Variant(u"#BC4B51"), 0),
             dark->PEN(1));
  if (!sheet.save(file)) return false;
  std::printf("drew %s\n", file.c_str());
  return true;
}
