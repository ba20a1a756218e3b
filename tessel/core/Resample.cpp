#include <tessel/core/Resample.h>

#include <algorithm>
#include <cstddef>
#include <cmath>
#include <vector>

namespace tessel {

namespace {

// One pixel's four channels as a vector, so that the compiler works on them at once.
typedef float Pixel __attribute__((vector_size(16)));

// Catmull-Rom: sharp without ringing much, and it passes through the samples.
float cubic(float x) {
  x = std::fabs(x);
  if (x < 1) return (1.5f * x - 2.5f) * x * x + 1;
  if (x < 2) return ((-0.5f * x + 2.5f) * x - 4) * x + 2;
  return 0;
}

// For every pixel along one axis of the result, the source pixels it is made of and their
// weights (summing to 1), `taps` of each.
struct Axis {
  int32_t taps = 0;
  std::vector<int32_t> index;
  std::vector<float> weight;
};

Axis axis(int32_t in, int32_t out) {
  const double scale = static_cast<double>(in) / out;
  const double widen = std::max(1.0, scale);
  const double radius = 2 * widen;
  Axis a;
  a.taps = static_cast<int32_t>(std::ceil(2 * radius)) + 1;
  a.index.resize(static_cast<size_t>(out) * a.taps);
  a.weight.resize(a.index.size());
  for (int32_t i = 0; i < out; ++i) {
    const double centre = (i + 0.5) * scale - 0.5;
    const auto first = static_cast<int32_t>(std::floor(centre - radius)) + 1;
    float sum = 0;
    for (int32_t k = 0; k < a.taps; ++k) {
      const float w = cubic(static_cast<float>((first + k - centre) / widen));
      a.index[i * a.taps + k] = std::clamp(first + k, 0, in - 1);
      a.weight[i * a.taps + k] = w;
      sum += w;
    }
    for (int32_t k = 0; k < a.taps; ++k) a.weight[i * a.taps + k] /= sum;
  }
  return a;
}

}  // namespace

void ResampleBicubic(const PixelRows& from, const PixelRows& to) {
  const Axis across = axis(from.width, to.width);
  const Axis down = axis(from.height, to.height);

  // Across first, into floats: every source row at the result's width. A pixel's four channels
  // are one vector, so each tap is one multiply-add.
  std::vector<Pixel> source(static_cast<size_t>(from.width));
  std::vector<Pixel> wide(static_cast<size_t>(to.width) * from.height);
  for (int32_t y = 0; y < from.height; ++y) {
    const uint8_t* src = from.data + static_cast<std::ptrdiff_t>(y) * from.stride;
    for (int32_t x = 0; x < from.width; ++x)
      source[x] = Pixel{float(src[x * 4]), float(src[x * 4 + 1]), float(src[x * 4 + 2]), float(src[x * 4 + 3])};
    Pixel* dst = wide.data() + static_cast<size_t>(to.width) * y;
    for (int32_t x = 0; x < to.width; ++x) {
      const int32_t* index = &across.index[static_cast<size_t>(x) * across.taps];
      const float* weight = &across.weight[static_cast<size_t>(x) * across.taps];
      Pixel acc = {0, 0, 0, 0};
      for (int32_t k = 0; k < across.taps; ++k) acc += weight[k] * source[index[k]];
      dst[x] = acc;
    }
  }

  // Then down, one result row at a time, back to bytes.
  std::vector<Pixel> acc(static_cast<size_t>(to.width));
  for (int32_t y = 0; y < to.height; ++y) {
    std::fill(acc.begin(), acc.end(), Pixel{0, 0, 0, 0});
    for (int32_t k = 0; k < down.taps; ++k) {
      const float w = down.weight[static_cast<size_t>(y) * down.taps + k];
      const Pixel* row = wide.data() + static_cast<size_t>(to.width) * down.index[static_cast<size_t>(y) * down.taps + k];
      for (int32_t x = 0; x < to.width; ++x) acc[x] += w * row[x];
    }
    uint8_t* dst = to.data + static_cast<std::ptrdiff_t>(y) * to.stride;
    for (int32_t x = 0; x < to.width; ++x) {
      const Pixel& p = acc[x];
      // The kernel overshoots at hard edges: keep the pixel a valid premultiplied one.
      const float alpha = std::clamp(std::nearbyint(p[3]), 0.0f, 255.0f);
      for (int c = 0; c < 3; ++c) dst[x * 4 + c] = static_cast<uint8_t>(std::clamp(std::nearbyint(p[c]), 0.0f, alpha));
      dst[x * 4 + 3] = static_cast<uint8_t>(alpha);
    }
  }
}

}  // namespace tessel
