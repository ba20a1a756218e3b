// What the showcase's pictures are drawn on: an off-screen picture box in the showcase's paper
// colour with a surface bound to it, antialiased, whose picture is saved as PNG.
#pragma once

#include <tessel/tessel.h>

#include <cstdint>
#include <string>

namespace showcase {

namespace gp = tessel::mdl_GDIPlus;
using tessel::Ref;
using tessel::Variant;

inline Variant box(int x, int y, int w, int h) {
  return Variant(tessel::mdl_Global::DRAW()->RECT()->RECT(Variant(x), y, w, h));
}

class Sheet {
 public:
  Sheet(int w, int h) : box_(tessel::make<tessel::PictureBox>()), g_(tessel::make<tessel::cls_DrawGraphics>()) {
    box_->Move(0, 0, Variant(w), Variant(h));
    box_->BackColor(Variant(u"#F4F1EA"));
    box_->Cls();
    g_->CONNECT(box_);
    g_->SMOOTHING(tessel::enm_Draw_SmoothingMode::ID_Draw_SmoothingAntiAlias);
  }
  bool ok() { return g_->READY(); }
  // The surface the sheet is drawn through; its state (projection, smoothing) lasts.
  const Ref<tessel::cls_DrawGraphics>& surface() const { return g_; }

  void fill(const Ref<tessel::cls_DrawBrush>& brush, float x, float y, float w, float h) {
    g_->RECTANGLE(rect(x, y, w, h), Variant(brush), noPen());
  }
  // A path rather than LINES, whose rectangle runs down and to the right only.
  void line(const Ref<tessel::cls_DrawPen>& pen, int x1, int y1, int x2, int y2) {
    auto segment = tessel::mdl_Global::DRAW()->PATH()->LINE(Variant(x1), Variant(y1), Variant(x2), Variant(y2));
    path(segment, nullptr, pen);
  }
  // Filled and outlined; either may be left out (null).
  void path(const Ref<tessel::cls_DrawPath>& path, const Ref<tessel::cls_DrawBrush>& brush,
            const Ref<tessel::cls_DrawPen>& pen) {
    g_->PATH(Variant(path), pen ? Variant(pen) : noPen(), brush ? Variant(brush) : noBrush());
  }
  // The image at its size in pixels, its top left corner at (x, y).
  void image(const Ref<tessel::cls_DrawImage>& image, int x, int y) { g_->Image(Variant(image), x, y); }
  // A line of text in the showcase's ink, from the top left of the box.
  void label(const std::u16string& text, int x, int y, int w = 500, int h = 20) {
    Ref<tessel::cls_DrawTool> draw = tessel::mdl_Global::DRAW();
    path(draw->PATH()->TEXT(text, Variant(u"Arial,14"), box(x, y, w, h)),
         draw->COLOR()->AUTO(Variant(u"#16425B"))->BRUSH(), nullptr);
  }
  bool save(const std::string& file) {
    Ref<tessel::cls_DrawImage> picture = tessel::mdl_Global::DRAW()->Image()->AUTO(Variant(box_->Image()));
    return picture->SAVE(tessel::toUtf16(file));
  }

 private:
  static Variant rect(float x, float y, float w, float h) {
    auto r = tessel::make<tessel::cls_DrawRect>();
    r->MOVE(x, y, w, h);
    return Variant(r);
  }
  static Variant noPen() { return Variant(tessel::mdl_Global::DRAW()->PEN()->NONE()); }
  static Variant noBrush() { return Variant(tessel::mdl_Global::DRAW()->BRUSH()->NONE()); }

  Ref<tessel::PictureBox> box_;
  Ref<tessel::cls_DrawGraphics> g_;
};

}  // namespace showcase
