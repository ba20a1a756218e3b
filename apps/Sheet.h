// What the showcase's pictures are drawn on until the drawing surface comes: a bitmap in the
// showcase's paper colour with a graphics on it, drawn on through the flat API with the objects
// the factories make, and saved as PNG.
#pragma once

#include <tessel/tessel.h>

#include <cstdint>
#include <string>

namespace showcase {

namespace gp = tessel::mdl_GDIPlus;
using tessel::Ref;
using tessel::Variant;

template <class T>
T* native(int64_t handle) {
  return reinterpret_cast<T*>(static_cast<intptr_t>(handle));
}

inline Variant box(int x, int y, int w, int h) {
  return Variant(tessel::mdl_Global::DRAW()->RECT()->RECT(Variant(x), y, w, h));
}

class Sheet {
 public:
  Sheet(int w, int h) {
    gp::GpBitmap* b = nullptr;
    gp::GdipCreateBitmapFromScan0(w, h, 0, gp::PixelFormat32bppARGB, nullptr, &b);
    bitmap_.reset(b);
    gp::GpGraphics* g = nullptr;
    if (b) gp::GdipGetImageGraphicsContext(b, &g);
    graphics_.reset(g);
    if (g) {
      gp::GdipSetSmoothingMode(g, gp::SmoothingModeAntiAlias);
      gp::GdipGraphicsClear(g, 0xFFF4F1EA);
    }
  }
  bool ok() const { return graphics_.get() != nullptr; }
  void fill(const Ref<tessel::cls_DrawBrush>& brush, float x, float y, float w, float h) {
    gp::GdipFillRectangle(graphics_.get(), brush->brush(), x, y, w, h);
  }
  void line(const Ref<tessel::cls_DrawPen>& pen, int x1, int y1, int x2, int y2) {
    gp::GdipDrawLineI(graphics_.get(), native<gp::GpPen>(pen->HANDLE()), x1, y1, x2, y2);
  }
  void path(const Ref<tessel::cls_DrawPath>& path, const Ref<tessel::cls_DrawBrush>& brush,
            const Ref<tessel::cls_DrawPen>& pen) {
    if (brush) gp::GdipFillPath(graphics_.get(), brush->brush(), native<gp::GpPath>(path->HANDLE()));
    if (pen) gp::GdipDrawPath(graphics_.get(), native<gp::GpPen>(pen->HANDLE()), native<gp::GpPath>(path->HANDLE()));
  }
  // The image at its size in pixels, its top left corner at (x, y).
  void image(const Ref<tessel::cls_DrawImage>& image, int x, int y) {
    gp::GdipDrawImageI(graphics_.get(), image->bitmap(), x, y);
  }
  // A line of text in the showcase's ink, from the top left of the box.
  void label(const std::u16string& text, int x, int y, int w = 500, int h = 20) {
    Ref<tessel::cls_DrawTool> draw = tessel::mdl_Global::DRAW();
    path(draw->PATH()->TEXT(text, Variant(u"Arial,14"), box(x, y, w, h)),
         draw->COLOR()->AUTO(Variant(u"#16425B"))->BRUSH(), nullptr);
  }
  bool save(const std::string& file) {
    graphics_.reset();
    gp::GUID png;
    return gp::GetEncoderClsid(u"image/png", png) &&
           gp::Succeeded(gp::GdipSaveImageToFile(bitmap_.get(), tessel::toUtf16(file).c_str(), &png, nullptr));
  }

 private:
  gp::ImageHandle bitmap_;
  gp::GraphicsHandle graphics_;
};

}  // namespace showcase
