// A photo-like test image for the image benchmarks (bench_images.cpp, and the Python peer in
// bindings/python/bench_direct.cpp): a sky gradient, a sun, hills, soft translucent discs and a
// little sensor noise. A flat or purely synthetic picture would let PNG compress it to nothing
// and the benchmark would measure less than a real file costs.
#pragma once

#include <tessel/tessel.h>

#include <cstdint>

namespace tessel::bench {

inline Ref<cls_DrawImage> photo(int32_t width, int32_t height) {
  namespace gp = tessel::mdl_GDIPlus;
  Ref<cls_DrawTool> draw = mdl_Global::DRAW();
  draw->INIT();
  auto image = draw->Image()->CREATE(width, height, Variant(u"#000000"));
  gp::GpGraphics* context = nullptr;
  gp::Check(gp::GdipGetImageGraphicsContext(image->bitmap(), &context));
  gp::GraphicsHandle g(context);
  gp::GdipSetSmoothingMode(g.get(), gp::SmoothingModeAntiAlias);
  auto brushes = draw->BRUSH();
  auto rect = [&](float x, float y, float w, float h) {
    return Variant(draw->RECT()->RECT(Variant(x), y, w, h));
  };
  auto gradient = [&](float x, float y, float w, float h, const char16_t* from, const char16_t* to, double angle) {
    return brushes->GRADIENT(rect(x, y, w, h), Variant(from), Variant(to), angle);
  };
  const float w = static_cast<float>(width), h = static_cast<float>(height);
  gp::GdipFillRectangle(g.get(), gradient(0, 0, w, h, u"#1B3A5C", u"#E8B77A", 90)->brush(), 0, 0, w, h);
  gp::GdipFillEllipse(g.get(), gradient(w * 0.62f, h * 0.18f, h * 0.3f, h * 0.3f, u"#FFF3C4", u"#F29E4C", 45)->brush(),
                      w * 0.62f, h * 0.18f, h * 0.3f, h * 0.3f);
  const char16_t* hills[][2] = {{u"#4F772D", u"#132A13"}, {u"#90A955", u"#31572C"}, {u"#31572C", u"#0B1D0B"}};
  for (int k = 0; k < 3; ++k) {
    const float x = w * (k * 0.4f - 0.3f), y = h * (0.55f + k * 0.1f);
    gp::GdipFillEllipse(g.get(), gradient(x, y, w * 0.9f, h * 0.8f, hills[k][0], hills[k][1], 80)->brush(), x, y,
                        w * 0.9f, h * 0.8f);
  }
  uint32_t seed = 12345;
  auto next = [&seed] { return seed = seed * 1664525u + 1013904223u; };
  auto colours = draw->COLOR();
  auto pick = [&](uint32_t low, uint32_t span) { return static_cast<int32_t>(low + next() % span); };
  for (int k = 0; k < 60; ++k) {
    const float d = static_cast<float>(pick(8, 90)), x = static_cast<float>(pick(0, width)),
                y = static_cast<float>(pick(0, height));
    const int32_t red = pick(200, 56), green = pick(150, 100), blue = pick(90, 120), alpha = pick(40, 60);
    gp::GdipFillEllipse(g.get(), colours->RGB(red, green, blue, alpha)->BRUSH()->brush(), x - d / 2, y - d / 2, d, d);
  }
  g.reset();
  // Noise of a few levels in every channel, written into the bitmap's opaque pixels in place.
  ExportedBuffer view{};
  if (image->exportBuffer(view)) {
    for (int64_t y = 0; y < view.rows; ++y) {
      uint8_t* p = static_cast<uint8_t*>(view.data) + y * view.rowStride;
      for (int64_t x = 0; x < view.columns * 4; ++x) {
        if (x % 4 == 3) continue;
        const int v = p[x] + static_cast<int>(next() >> 29) - 4;
        p[x] = static_cast<uint8_t>(v < 0 ? 0 : v > 255 ? 255 : v);
      }
    }
    image->unexportBuffer();
  }
  return image;
}

}  // namespace tessel::bench
