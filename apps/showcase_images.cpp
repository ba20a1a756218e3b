// The showcase's images picture: the resources picture loaded as an image, resized into a square
// with its aspect ratio kept and stretched to fill it, and saved as JPEG at two qualities whose
// files are loaded back and shown enlarged, with one pixel read from each. Written next to the
// main picture, with the two JPEG files.
#include <tessel/tessel.h>

#include "Sheet.h"

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>

using namespace tessel;
using showcase::box;
using showcase::Sheet;

namespace {

constexpr int kSquare = 240;  // the box both resized images are made for
constexpr int kFactor = 3;    // how far the JPEG parts are enlarged
struct Part {
  int x, y, w, h;
};
constexpr Part kPart{310, 15, 170, 80};  // the checker tile and the lattice: fine detail
constexpr int kPixelX = 332, kPixelY = 37;

// A part of the image enlarged, each pixel a square of `factor` pixels: the JPEG blocks stay as
// sharp as they are, where resampling would smooth them over.
Ref<cls_DrawImage> enlarged(const Ref<cls_DrawImage>& from, const Part& part, int factor) {
  auto to = mdl_Global::DRAW()->Image()->CREATE(part.w * factor, part.h * factor);
  ExportedBuffer source{}, target{};
  if (!from->exportBuffer(source)) return to;
  if (to->exportBuffer(target)) {
    for (int64_t y = 0; y < target.rows; ++y) {
      const auto* row = static_cast<const uint32_t*>(static_cast<const void*>(
          static_cast<const uint8_t*>(source.data) + (part.y + y / factor) * source.rowStride));
      auto* out = static_cast<uint32_t*>(static_cast<void*>(static_cast<uint8_t*>(target.data) + y * target.rowStride));
      for (int64_t x = 0; x < target.columns; ++x) out[x] = row[part.x + x / factor];
    }
    to->unexportBuffer();
  }
  from->unexportBuffer();
  return to;
}

std::string hex(int32_t pixel) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08X", static_cast<uint32_t>(pixel));
  return text;
}

}  // namespace

bool drawImages(const std::string& folder) {
  Ref<cls_DrawTool> draw = mdl_Global::DRAW();
  auto images = draw->Image();
  auto photo = images->LOAD(toUtf16(folder + "resources.png"));
  const int width = static_cast<int>(photo->WIDTH()), height = static_cast<int>(photo->HEIGHT());
  auto kept = photo->CLONE()->RESIZE(kSquare, kSquare, true);
  auto stretched = photo->CLONE()->RESIZE(kSquare, kSquare);

  struct Jpeg {
    int quality;
    uintmax_t bytes = 0;
    Ref<cls_DrawImage> image;
  } jpegs[] = {{90}, {15}};
  for (Jpeg& jpeg : jpegs) {
    const std::string file = folder + "images-q" + std::to_string(jpeg.quality) + ".jpg";
    if (!photo->SAVE(toUtf16(file), u"image/jpeg", jpeg.quality)) return false;
    jpeg.bytes = std::filesystem::file_size(file);
    jpeg.image = images->LOAD(toUtf16(file));
    std::printf("images: JPEG at quality %d is %ju bytes\n", jpeg.quality, jpeg.bytes);
  }
  const int32_t original = photo->PIXEL(kPixelX, kPixelY);
  std::printf("images: PIXEL(%d, %d) reads %s in the PNG, %s at JPEG quality 90, %s at quality 15\n", kPixelX,
              kPixelY, hex(original).c_str(), hex(jpegs[0].image->PIXEL(kPixelX, kPixelY)).c_str(),
              hex(jpegs[1].image->PIXEL(kPixelX, kPixelY)).c_str());

  Sheet sheet(1100, 700);
  if (!sheet.ok()) return false;
  auto ink = draw->COLOR()->AUTO(Variant(u"#16425B"));
  auto mark = draw->COLOR()->AUTO(Variant(u"#F4A259"));

  // The loaded picture, with the part that is enlarged below outlined.
  sheet.label(toUtf16("LOAD(\"resources.png\"): " + std::to_string(width) + " × " + std::to_string(height)), 20, 14);
  sheet.image(photo, 20, 40);
  sheet.path(draw->PATH()->RECT(box(19, 39, width + 2, height + 2)), nullptr, ink->PEN(1));
  sheet.path(draw->PATH()->RECT(box(20 + kPart.x - 1, 40 + kPart.y - 1, kPart.w + 2, kPart.h + 2)), nullptr,
             mark->PEN(2));

  // Both resized images, framed, in the square they were made for (dashed).
  const auto square = [&](int x, const Ref<cls_DrawImage>& image, const std::string& call) {
    const int w = static_cast<int>(image->WIDTH()), h = static_cast<int>(image->HEIGHT());
    sheet.label(toUtf16(call + ": " + std::to_string(w) + " × " + std::to_string(h)), x, 14, 260);
    const int left = x + (kSquare - w) / 2, top = 40 + (kSquare - h) / 2;
    sheet.image(image, left, top);
    sheet.path(draw->PATH()->RECT(box(x - 3, 37, kSquare + 6, kSquare + 6)), nullptr,
               ink->PEN(1, enm_Draw_PenDash::ID_Draw_PenDash_Dash));
    sheet.path(draw->PATH()->RECT(box(left - 1, top - 1, w + 2, h + 2)), nullptr, ink->PEN(1));
  };
  square(580, kept, "RESIZE(240, 240, True)");
  square(840, stretched, "RESIZE(240, 240)");

  // The JPEG files loaded back, the same part of each enlarged, and the pixel read from each.
  for (int k = 0; k < 2; ++k) {
    const Jpeg& jpeg = jpegs[k];
    const int x = 20 + k * 550, y = 424;
    sheet.label(toUtf16("JPEG, quality " + std::to_string(jpeg.quality) + ": " + std::to_string(jpeg.bytes) +
                     " bytes, loaded back (part, " + std::to_string(kFactor) + "×)"),
                x, y - 26, 520);
    sheet.image(enlarged(jpeg.image, kPart, kFactor), x, y);
    const int cx = x + (kPixelX - kPart.x) * kFactor + kFactor / 2, cy = y + (kPixelY - kPart.y) * kFactor + kFactor / 2;
    sheet.path(draw->PATH()->ELLIPSE(box(cx - 7, cy - 7, 14, 14)), nullptr, mark->PEN(2));
    sheet.label(toUtf16("PIXEL(" + std::to_string(kPixelX) + ", " + std::to_string(kPixelY) + ") = " +
                     hex(jpeg.image->PIXEL(kPixelX, kPixelY)) + "   (PNG " + hex(original) + ")"),
                x, y + kPart.h * kFactor + 8, 520);
  }
  const std::string file = folder + "images.png";
  if (!sheet.save(file)) return false;
  std::printf("drew %s\n", file.c_str());
  return true;
}
