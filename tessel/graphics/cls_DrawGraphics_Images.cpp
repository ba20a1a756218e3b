// The surface's image drawing (cls_DrawGraphics.members): at the image's own size, fitted into
// a rectangle, a part stretched, or warped onto a parallelogram.
//
// Every operation comes down to one: a part of the image onto a parallelogram in world
// coordinates. At its own size it is drawn as it is; any other way through a world transform of
// its own, put before the projection and taken away again, since libgdiplus draws images onto
// points without the projection. The projection therefore applies to all of them alike.
// Images are drawn through the platform's bilinear filter whatever `interpolation` says
// (libgdiplus does not read the mode for images).
#include <tessel/graphics/cls_DrawGraphics.h>

#include <tessel/core/Checked.h>
#include <tessel/geometry/cls_DrawToolPoint.h>
#include <tessel/graphics/SurfaceArgs.h>
#include <tessel/images/cls_DrawImage.h>

#include <algorithm>
#include <cmath>

namespace tessel {

namespace gp = mdl_GDIPlus;
using namespace surface;

namespace {

gp::GpRectF wholeImage(gp::GpImage* image) {
  uint32_t w = 0, h = 0;
  gp::GdipGetImageWidth(image, &w);
  gp::GdipGetImageHeight(image, &h);
  return {0, 0, static_cast<float>(w), static_cast<float>(h)};
}

// The corners of an upright rectangle, as hImage takes them.
struct Corners {
  Affine::Point at[3];
};
Corners cornersOf(float x, float y, float w, float h) { return {{{x, y}, {x + w, y}, {x, y + h}}}; }

}  // namespace

void cls_DrawGraphics::hImage(const Variant& pImage, const gp::GpRectF* source, const Affine::Point (&to)[3],
                              const Variant& pImageAttributes) {
  const Ref<Object> image = imageArg(pImage);
  const Ref<Object> attributes = attributesArg(pImageAttributes);
  gp::GpImage* native = imageOf(image.get());
  gp::GpImageAttributes* nativeAttributes = attributesOf(attributes.get());
  if (!READY() || !native) return;
  const gp::GpRectF part = source ? *source : wholeImage(native);
  if (part.Width <= 0 || part.Height <= 0) return;

  // Every number the platform gets is a finite single (6 otherwise): an infinite one would leave
  // the native graphics unable to draw again.
  gp::GpGraphics* g = graphics_.get();
  const Affine::Point &a = to[0], &b = to[1], &c = to[2];
  if (a.y == b.y && a.x == c.x && b.x - a.x == part.Width && c.y - a.y == part.Height) {
    // At its own size and upright: drawn as it is.
    gp::Check(gp::GdipDrawImageRectRect(g, native, checkedSingle(a.x), checkedSingle(a.y), part.Width, part.Height,
                                        part.X, part.Y, part.Width, part.Height, gp::UnitPixel, nativeAttributes,
                                        nullptr, nullptr));
    return;
  }
  // Scaled, stretched or warped: libgdiplus scales an image only when both of its sides change
  // size, and fades its outermost pixels. So the part is drawn from a copy with repeated edges,
  // at its own size, under a transform of its own that maps it onto the parallelogram.
  const gp::GpRectF whole = wholeImage(native);
  const float left = std::max(0.0f, std::floor(part.X)), top = std::max(0.0f, std::floor(part.Y));
  const float right = std::min(whole.Width, std::ceil(part.X + part.Width));
  const float bottom = std::min(whole.Height, std::ceil(part.Y + part.Height));
  if (right <= left || bottom <= top) return;
  const gp::GpRect area{static_cast<int32_t>(left), static_cast<int32_t>(top), static_cast<int32_t>(right - left),
                        static_cast<int32_t>(bottom - top)};
  gp::GpImage* padded = hPadded(static_cast<cls_DrawImage&>(*image), area);
  if (!padded) return;

  gp::GpMatrix* made = nullptr;
  gp::Check(gp::GdipCreateMatrix(&made));
  gp::MatrixHandle saved(made);
  gp::Check(gp::GdipGetWorldTransform(g, saved.get()));
  const double w = part.Width, h = part.Height;
  // The warp goes before the projection. The product is set as a whole: libgdiplus multiplying
  // it in itself would move a clip along with the drawing.
  const Affine warp{(b.x - a.x) / w, (b.y - a.y) / w, (c.x - a.x) / h, (c.y - a.y) / h, a.x, a.y};
  float e[6] = {1, 0, 0, 1, 0, 0};
  gp::GdipGetMatrixElements(saved.get(), e);
  const Affine both{warp.m11 * e[0] + warp.m12 * e[2],          warp.m11 * e[1] + warp.m12 * e[3],
                    warp.m21 * e[0] + warp.m22 * e[2],          warp.m21 * e[1] + warp.m22 * e[3],
                    warp.dx * e[0] + warp.dy * e[2] + e[4], warp.dx * e[1] + warp.dy * e[3] + e[5]};
  gp::Check(gp::GdipCreateMatrix2(checkedSingle(both.m11), checkedSingle(both.m12), checkedSingle(both.m21),
                                  checkedSingle(both.m22), checkedSingle(both.dx), checkedSingle(both.dy), &made));
  gp::MatrixHandle combined(made);
  gp::Check(gp::GdipSetWorldTransform(g, combined.get()));
  const gp::GpStatus drawn =
      gp::GdipDrawImageRectRect(g, padded, 0, 0, part.Width, part.Height, part.X - left + 1, part.Y - top + 1,
                                part.Width, part.Height, gp::UnitPixel, nativeAttributes, nullptr, nullptr);
  gp::GdipSetWorldTransform(g, saved.get());
  gp::Check(drawn);
}

// The last padded copy is kept: a picture drawn scaled on every repaint is copied once.
gp::GpImage* cls_DrawGraphics::hPadded(const cls_DrawImage& image, const gp::GpRect& area) {
  const PaddedKey key{image.bitmap(), image.bitmapStamp(), area.X, area.Y, area.Width, area.Height};
  if (!padded_ || !(paddedKey_ == key)) {
    padded_ = gp::PaddedCopy(image.bitmap(), area);
    paddedKey_ = key;
  }
  return padded_.get();
}

void cls_DrawGraphics::Image(Call, const Variant& pImage, float pX, float pY, const Variant& pImageAttributes) {
  // The size is the image's, known only once it is made: hImage measures the whole image when
  // no part is given, so the corners are placed after the conversion.
  const Ref<Object> image = imageArg(pImage);
  gp::GpImage* native = imageOf(image.get());
  const gp::GpRectF whole = native ? wholeImage(native) : gp::GpRectF{};
  hImage(Variant(image), &whole, cornersOf(pX, pY, whole.Width, whole.Height).at, pImageAttributes);
}

void cls_DrawGraphics::IMAGEADV(Call, const Variant& pImage, const Variant& pDestRect, const Variant& pSourceRect,
                                const Variant& pImageAttributes) {
  const Box to = boxOf(rectArg(pDestRect).get());
  const gp::GpRectF part = boxOf(rectArg(pSourceRect).get()).rectF();
  hImage(pImage, &part, cornersOf(to.x, to.y, to.w, to.h).at, pImageAttributes);
}

void cls_DrawGraphics::IMAGEFIT(Call, const Variant& pImage, const Variant& pRect, bool pKeepAspectRatio,
                                enm_TextAlign pAlign, const Variant& pImageAttributes) {
  const Ref<Object> image = imageArg(pImage);
  gp::GpImage* native = imageOf(image.get());
  const gp::GpRectF whole = native ? wholeImage(native) : gp::GpRectF{};
  hFit(Variant(image), pRect, whole, pKeepAspectRatio, pAlign, pImageAttributes);
}

void cls_DrawGraphics::IMAGEFITADV(Call, const Variant& pImage, const Variant& pRect, const Variant& pSourceRect,
                                   bool pKeepAspectRatio, enm_TextAlign pAlign, const Variant& pImageAttributes) {
  const gp::GpRectF part = boxOf(rectArg(pSourceRect).get()).rectF();
  hFit(pImage, pRect, part, pKeepAspectRatio, pAlign, pImageAttributes);
}

// The part as large as fits into the rectangle, keeping its proportions and placed by the
// alignment (its row and place as a text format reads them), or else filling it.
void cls_DrawGraphics::hFit(const Variant& pImage, const Variant& pRect, const gp::GpRectF& part,
                            bool pKeepAspectRatio, enm_TextAlign pAlign, const Variant& pImageAttributes) {
  Box to = boxOf(rectArg(pRect).get());
  if (pKeepAspectRatio && part.Width > 0 && part.Height > 0) {
    const float scale = std::min(to.w / part.Width, to.h / part.Height);
    const float w = part.Width * scale, h = part.Height * scale;
    const auto a = static_cast<int32_t>(pAlign);
    const int place = a >= 0 && a <= 11 ? a % 4 : 1, row = a >= 0 && a <= 11 ? a / 4 : 0;
    // Place: left (and block), centre, right; row: middle, top, bottom.
    const float across = place == 1 ? 0.5f : place == 2 ? 1.0f : 0.0f;
    const float down = row == 0 ? 0.5f : row == 2 ? 1.0f : 0.0f;
    to = {to.x + (to.w - w) * across, to.y + (to.h - h) * down, w, h};
  }
  hImage(pImage, &part, cornersOf(to.x, to.y, to.w, to.h).at, pImageAttributes);
}

void cls_DrawGraphics::IMAGEWARP(Call, const Variant& pImage, const Variant& pPoint1, const Variant& pPoint2,
                                 const Variant& pPoint3, const Variant& pImageAttributes) {
  Affine::Point to[3];
  const Variant* points[3] = {&pPoint1, &pPoint2, &pPoint3};
  for (int i = 0; i < 3; ++i) PointCoordinates(*points[i], to[i].x, to[i].y);
  hImage(pImage, nullptr, to, pImageAttributes);
}

}  // namespace tessel
