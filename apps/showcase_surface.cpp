// The showcase's surface picture: shapes with gradients and dashed pens, rounded paths, plain,
// outlined and turned text, an image fitted, stretched and warped half transparent, and one small
// scene under three projections, and the icon set. Written next to the main picture; reads the resources picture.
#include <tessel/tessel.h>

#include "Sheet.h"

#include <string>

using namespace tessel;
using showcase::box;
using showcase::Sheet;

namespace {

Variant pt(double x, double y) { return Variant(mdl_Global::DRAW()->POINT()->POINT(x, y)); }
Variant text(const char16_t* t) { return Variant(t); }

// The shapes panel, its top left at (x, y).
void shapes(Sheet& sheet, const Ref<cls_DrawGraphics>& g, int x, int y) {
  Ref<cls_DrawTool> draw = mdl_Global::DRAW();
  auto brushes = draw->BRUSH();
  sheet.label(u"Shapes: gradients, dashed pens, rounded paths", x, y);
  const Variant ink = Variant(draw->PEN()->DASHED(text(u"#16425B"), enm_Draw_PenDash::ID_Draw_PenDash_Dash, 2));
  g->RECTANGLE(box(x, y + 30, 120, 80), Variant(brushes->GRADIENT(box(x, y + 30, 120, 80), text(u"#3A7CA5"),
                                                                      text(u"#D9DCD6"), 90)), ink);
  g->ELLIPSE(box(x + 140, y + 30, 120, 80),
             Variant(brushes->GRADIENT(box(x + 140, y + 30, 120, 80), text(u"#F4A259"), text(u"#BC4B51"), 45)),
             text(u"#16425B,3px"));
  g->PIE(box(x + 280, y + 25, 90, 90), -90, 250, text(u"#2F6690"), text(u"#F4F1EA,2px"));
  auto rounded = draw->PATH()->RECT(box(x, y + 130, 170, 70), 18);
  g->PATH(Variant(rounded), text(u"#16425B,2px"),
          Variant(brushes->GRADIENT(box(x, y + 130, 170, 70), text(u"#D9DCD6"), text(u"#2F6690"), 90)));
  auto ring = draw->PATH()->ELLIPSE(box(x + 190, y + 130, 70, 70))->ELLIPSE(box(x + 210, y + 150, 30, 30));
  g->PATH(Variant(ring), text(u"#BC4B51,2px"), text(u"#F4A259"));
  const Variant dots = Variant(draw->PEN()->DASHED(text(u"#BC4B51"), enm_Draw_PenDash::ID_Draw_PenDash_Dot, 3));
  for (int i = 0; i < 4; ++i) g->LINES(box(x + 280, y + 140 + i * 18, 90 - i * 20, 1), i % 2 ? dots : ink);
}

// The text panel.
void texts(Sheet& sheet, const Ref<cls_DrawGraphics>& g, int x, int y) {
  Ref<cls_DrawTool> draw = mdl_Global::DRAW();
  sheet.label(u"Text: plain, outlined, turned about the origin", x, y);
  const Variant left = Variant(draw->TEXTFORMAT()->AUTO(Variant(int32_t(4))));  // left, top
  g->TEXT(u"Plain text in Arial 16", box(x, y + 30, 300, 30), text(u"Arial,16pt"), text(u"#16425B"),
          Variant::missing(), left);
  g->TEXT(u"Outlined", box(x, y + 60, 300, 50), text(u"Arial,44,bold"), text(u"#F4A259"), text(u"#16425B,3px"),
          left);
  g->TEXT(u"Pen in front", box(x, y + 115, 300, 40), text(u"Arial,30,bold"), text(u"#D9DCD6"),
          text(u"#BC4B51,1px"), left, 0, false);
  // Turned text lands in its rectangle on the device, turned about the origin.
  const Variant frame = text(u"#D9DCD6,1px");
  const Variant hollow = Variant(draw->BRUSH()->NONE());
  g->RECTANGLE(box(x + 320, y + 30, 36, 200), hollow, frame);
  g->TEXT(u"turned -90°", box(x + 320, y + 30, 36, 200), text(u"Arial,14pt"), text(u"#2F6690"), Variant::missing(),
          Variant::missing(), -90);
  g->RECTANGLE(box(x + 366, y + 30, 36, 200), hollow, frame);
  g->TEXT(u"turned 90°", box(x + 366, y + 30, 36, 200), text(u"Arial,14pt"), text(u"#BC4B51"), text(u"#16425B,1px"),
          Variant::missing(), 90);
  g->TEXT(u"and 20°, outlined", box(x, y + 170, 300, 60), text(u"Arial,18pt,bold"), text(u"#F4A259"),
          text(u"#16425B,1px"), Variant::missing(), 20);
}

// The images panel: the resources picture fitted, stretched, and warped half transparent.
void images(Sheet& sheet, const Ref<cls_DrawGraphics>& g, const Ref<cls_DrawImage>& photo, int x, int y) {
  Ref<cls_DrawTool> draw = mdl_Global::DRAW();
  sheet.label(u"Images: fitted, stretched, warped with ALPHA 0.6", x, y);
  const Variant frame = text(u"#16425B,1px");
  const Variant hollow = Variant(draw->BRUSH()->NONE());
  g->IMAGEFIT(Variant(photo), box(x, y + 30, 120, 120));
  g->RECTANGLE(box(x, y + 30, 120, 120), hollow, frame);
  g->IMAGEFIT(Variant(photo), box(x + 140, y + 30, 120, 120), false);
  g->RECTANGLE(box(x + 140, y + 30, 120, 120), hollow, frame);
  // A checker under the warped image shows its transparency.
  for (int row = 0; row < 6; ++row)
    for (int col = 0; col < 8; ++col)
      if ((row + col) % 2) g->RECTANGLE(box(x + 280 + col * 20, y + 30 + row * 20, 20, 20), text(u"#D9DCD6"), text(u"none"));
  g->IMAGEWARP(Variant(photo), pt(x + 300, y + 45), pt(x + 430, y + 70), pt(x + 285, y + 135),
               Variant(draw->imageAttributes()->ALPHA(0.6f)));
}

// One small scene (a grid of squares and a disc, in world units) under three projections, and
// the device point where world (40, 40) lands in each, marked after the projection is reset.
void projections(Sheet& sheet, const Ref<cls_DrawGraphics>& g, int x, int y) {
  Ref<cls_DrawTool> draw = mdl_Global::DRAW();
  sheet.label(u"Projection: the same scene offset, scaled, flipped", x, y);
  auto scene = [&] {
    for (int row = 0; row < 4; ++row)
      for (int col = 0; col < 4; ++col)
        g->RECTANGLE(box(col * 20, row * 20, 18, 18), text((row + col) % 2 ? u"#3A7CA5" : u"#D9DCD6"),
                     text(u"none"));
    g->ELLIPSE(box(25, 25, 30, 30), text(u"#F4A259"), text(u"#16425B,2px"));
    g->PATH(Variant(draw->PATH()->POLYGON(text(u"(0,0),(30,0),(0,30)"))), text(u"none"), text(u"#BC4B51"));
  };
  struct View {
    double dx, dy, scale;
    int flip;
  };
  const View views[] = {{x + 10.0, y + 50.0, 1.0, 1}, {x + 120.0, y + 40.0, 1.5, 1}, {x + 300.0, y + 160.0, 1.25, -1}};
  for (const View& v : views) {
    g->SCALING(Variant(draw->POINT()->POINT(v.scale, v.scale * v.flip)));
    g->OFFSET(pt(v.dx, v.dy));
    scene();
    Ref<Object> mark = g->REPROJECT(pt(40, 40));
    g->RESETPROJECTION();
    const double mx = Invoke(mark.get(), "X", InvokeKind::Get).toDouble();
    const double my = Invoke(mark.get(), "Y", InvokeKind::Get).toDouble();
    g->LINES(box(static_cast<int>(mx) - 8, static_cast<int>(my), 17, 1), text(u"#BC4B51,2px"));
    g->LINES(box(static_cast<int>(mx), static_cast<int>(my) - 8, 1, 17), text(u"#BC4B51,2px"));
  }
}

}  // namespace

void drawIconRow(const Ref<cls_DrawGraphics>& g, int x, int y, int side, int gap, const char16_t* colour);

bool drawSurface(const std::string& folder) {
  Ref<cls_DrawTool> draw = mdl_Global::DRAW();
  Sheet sheet(920, 540);
  if (!sheet.ok()) return false;
  const Ref<cls_DrawGraphics>& g = sheet.surface();
  shapes(sheet, g, 20, 15);
  texts(sheet, g, 480, 15);
  images(sheet, g, draw->Image()->LOAD(toUtf16(folder + "resources.png")), 20, 290);
  projections(sheet, g, 480, 290);
  sheet.label(u"Icons: the root's ICON, paths that scale cleanly", 20, 470);
  drawIconRow(g, 20, 500, 28, 24, u"#16425B");
  return sheet.save(folder + "surface.png");
}
