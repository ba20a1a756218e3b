// The drawing scenes that the surface is measured on, done with the raw flat API: the baseline
// of bench_surface.cpp and of the Python bench (through _tessel_bench_direct), so both compare
// against the same work.
#pragma once

#include <tessel/tessel.h>

#include <vector>

namespace tessel::bench {

namespace gp = tessel::mdl_GDIPlus;

constexpr int kSceneWidth = 800, kSceneHeight = 600, kShapes = 20000, kSide = 20;
constexpr gp::ARGB kFill = 0xFF3A7CA5, kLine = 0xFF16425B;

// Where shape i of a scene goes: spread over the whole area, 20 × 20 inside it.
inline int shapeX(int i) { return (i * 37) % (kSceneWidth - kSide); }
inline int shapeY(int i) { return (i * 53) % (kSceneHeight - kSide); }

// A premultiplied bitmap of the scene's size with a graphics on it, as a picture box holds one.
struct RawTarget {
  RawTarget() {
    gp::GpBitmap* b = nullptr;
    gp::GdipCreateBitmapFromScan0(kSceneWidth, kSceneHeight, 0, gp::PixelFormat32bppPARGB, nullptr, &b);
    bitmap.reset(b);
    gp::GpGraphics* g = nullptr;
    gp::GdipGetImageGraphicsContext(b, &g);
    graphics.reset(g);
  }
  gp::ImageHandle bitmap;
  gp::GraphicsHandle graphics;
};

// A pen as the toolkit's pens are: round caps and joins.
inline gp::GpPen* rawPen() {
  gp::GpPen* pen = nullptr;
  gp::GdipCreatePen1(kLine, 1, gp::UnitPixel, &pen);
  gp::GdipSetPenLineCap197819(pen, gp::LineCapRound, gp::LineCapRound, gp::LineCapRound);
  gp::GdipSetPenLineJoin(pen, gp::LineJoinRound);
  return pen;
}

// S1 (and S4 antialiased): filled and outlined rectangles and ellipses with one brush and pen.
// S2 (`fresh`): a new brush and pen for every shape.
inline void rawShapes(gp::GpGraphics* g, bool fresh) {
  gp::GpSolidFill* fill = nullptr;
  gp::GpPen* line = nullptr;
  if (!fresh) {
    gp::GdipCreateSolidFill(kFill, &fill);
    line = rawPen();
  }
  gp::BrushHandle sharedBrush(fill);
  gp::PenHandle sharedPen(line);
  for (int i = 0; i < kShapes; ++i) {
    gp::BrushHandle brush;
    gp::PenHandle pen;
    if (fresh) {
      gp::GdipCreateSolidFill(kFill, &fill);
      line = rawPen();
      brush.reset(fill);
      pen.reset(line);
    }
    const int x = shapeX(i), y = shapeY(i);
    gp::GdipFillRectangleI(g, fill, x, y, kSide, kSide);
    gp::GdipDrawRectangleI(g, line, x, y, kSide, kSide);
    gp::GdipFillEllipse(g, fill, static_cast<float>(x), static_cast<float>(y), kSide, kSide);
    gp::GdipDrawEllipseI(g, line, x, y, kSide, kSide);
  }
}

// The scene's rectangles as objects, made once: what a caller that keeps its layout passes.
inline std::vector<tessel::Variant> sceneRects() {
  std::vector<tessel::Variant> rects;
  rects.reserve(kShapes);
  for (int i = 0; i < kShapes; ++i) {
    auto r = tessel::make<tessel::cls_DrawRect>();
    r->MOVE(static_cast<float>(shapeX(i)), static_cast<float>(shapeY(i)), kSide, kSide);
    rects.emplace_back(r);
  }
  return rects;
}

}  // namespace tessel::bench
