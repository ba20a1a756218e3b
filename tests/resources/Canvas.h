// A white 32-bit ARGB bitmap with a graphics on it, for tests that draw with the flat API itself
// and read the pixels back.
#pragma once

#include <tessel/core/mdl_GDIPlus.h>

#include <gtest/gtest.h>

namespace tessel {

class Canvas {
 public:
  Canvas(int w, int h) {
    namespace gp = mdl_GDIPlus;
    gp::GpBitmap* b = nullptr;
    EXPECT_EQ(gp::GdipCreateBitmapFromScan0(w, h, 0, gp::PixelFormat32bppARGB, nullptr, &b), enm_Draw_Status::OK);
    bitmap_.reset(b);
    gp::GpGraphics* g = nullptr;
    gp::GdipGetImageGraphicsContext(b, &g);
    graphics_.reset(g);
    gp::GdipGraphicsClear(g, 0xFFFFFFFF);
  }
  mdl_GDIPlus::GpGraphics* graphics() const { return graphics_.get(); }
  // The first read ends the drawing.
  mdl_GDIPlus::ARGB pixel(int x, int y) {
    graphics_.reset();
    return peek(x, y);
  }
  // A read that leaves the graphics open, for what others drew on the bitmap and ended themselves.
  mdl_GDIPlus::ARGB peek(int x, int y) const {
    mdl_GDIPlus::ARGB c = 0;
    mdl_GDIPlus::GdipBitmapGetPixel(static_cast<mdl_GDIPlus::GpBitmap*>(bitmap_.get()), x, y, &c);
    return c;
  }

 private:
  mdl_GDIPlus::ImageHandle bitmap_;
  mdl_GDIPlus::GraphicsHandle graphics_;
};

}  // namespace tessel
