// Resampling a bitmap's pixels to another size. libgdiplus draws images through cairo's default
// filter whatever interpolation mode is set, and lets the borders fade into the transparent
// outside, so an image's RESIZE does its own resampling here.
#pragma once

#include <cstdint>

namespace tessel {

// A grid of premultiplied 32-bit pixels (BGRA bytes), rows `stride` bytes apart.
struct PixelRows {
  uint8_t* data;
  int32_t width;
  int32_t height;
  int32_t stride;
};

// Bicubic (Catmull-Rom) resampling from one grid into another of any size, separable, with the
// kernel widened by the scale factor when shrinking so that every source pixel counts (no
// aliasing), and the edge pixels repeated beyond the borders (no fading). Results stay valid
// premultiplied pixels: each channel within 0 and the pixel's alpha.
void ResampleBicubic(const PixelRows& from, const PixelRows& to);

}  // namespace tessel
