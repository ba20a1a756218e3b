#include <tessel/host/PictureBox.h>

#include <tessel/color/cls_DrawToolColor.h>
#include <tessel/core/Checked.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstring>

namespace tessel {

namespace gp = mdl_GDIPlus;

namespace {

constexpr int32_t kMaxSide = 32767;  // the largest surface the rasteriser makes
constexpr int32_t kFirstSide = 100;

int64_t newWindowHandle() noexcept {
  static std::atomic<int64_t> last{0};
  return last.fetch_add(1, std::memory_order_relaxed) + 1;
}

// Pixels a unit of a scale mode, at 96 pixels an inch; 0 for a number that is no mode here (0,
// a user scale, included: the box has none of its own).
double pixelsPer(int32_t mode, bool vertical) {
  switch (mode) {
    case 1: return 96.0 / 1440;              // twips
    case 2: return 96.0 / 72;                // points
    case 3: return 1;                        // pixels
    case 4: return vertical ? 16 : 8;        // characters: 120 twips wide, 240 high
    case 5: return 96;                       // inches
    case 6: return 96 / 25.4;                // millimetres
    case 7: return 96 / 2.54;                // centimetres
    case 8: return 96 / 2540.0;              // himetric
    default: return 0;
  }
}


// Copies the overlap of two premultiplied bitmaps, top left on top left, byte for byte: alpha as
// it is, where drawing one on the other would blend.
void copyOverlap(gp::GpBitmap* from, gp::GpBitmap* to) {
  gp::BitmapData src{}, dst{};
  if (!gp::Succeeded(gp::GdipBitmapLockBits(from, nullptr, gp::ImageLockModeRead, gp::PixelFormat32bppPARGB, &src)))
    raise(rt::OutOfMemory);
  if (!gp::Succeeded(gp::GdipBitmapLockBits(to, nullptr, gp::ImageLockModeRead | gp::ImageLockModeWrite,
                                            gp::PixelFormat32bppPARGB, &dst))) {
    gp::GdipBitmapUnlockBits(from, &src);
    raise(rt::OutOfMemory);
  }
  const size_t bytes = std::min(src.Width, dst.Width) * size_t{4};
  for (uint32_t y = 0; y < std::min(src.Height, dst.Height); ++y)
    std::memcpy(static_cast<uint8_t*>(dst.Scan0) + ptrdiff_t{dst.Stride} * y,
                static_cast<const uint8_t*>(src.Scan0) + ptrdiff_t{src.Stride} * y, bytes);
  gp::GdipBitmapUnlockBits(to, &dst);
  gp::GdipBitmapUnlockBits(from, &src);
}

}  // namespace

// Clamped first, so that any finite size is taken.
int32_t windowSide(double pixels) {
  return static_cast<int32_t>(roundHalfEven(std::clamp(checkedFinite(pixels), 1.0, double(kMaxSide))));
}

PictureBox::PictureBox() : hwnd_(newWindowHandle()) {
  trap("Class_Initialize", [&] { hRebuild(kFirstSide, kFirstSide); });
}

PictureBox::~PictureBox() { gp::UnregisterHDC(dc_.get()); }

void PictureBox::hRebuild(int32_t width, int32_t height) {
  gp::GpBitmap* made = nullptr;
  if (!gp::Succeeded(gp::GdipCreateBitmapFromScan0(width, height, 0, gp::PixelFormat32bppPARGB, nullptr, &made)))
    raise(rt::OutOfMemory);
  gp::ImageHandle fresh(made);
  gp::GpGraphics* g = nullptr;
  if (!gp::Succeeded(gp::GdipGetImageGraphicsContext(made, &g))) raise(rt::OutOfMemory);
  gp::GraphicsHandle dc(g);
  gp::Check(gp::GdipGraphicsClear(g, backColor_));
  if (bitmap_) copyOverlap(bitmap(), made);
  gp::RegisterHDC(g);
  // Withdrawn before it is freed, and freed before its bitmap.
  gp::UnregisterHDC(dc_.get());
  dc_ = std::move(dc);
  bitmap_ = std::move(fresh);
  width_ = width;
  height_ = height;
}

void PictureBox::hResize(int32_t width, int32_t height) {
  if (width == width_ && height == height_) return;
  hRebuild(width, height);
  Resize.raise();
}

int64_t PictureBox::hDC(Get) const { return reinterpret_cast<intptr_t>(dc_.get()); }
int64_t PictureBox::hwnd(Get) const { return hwnd_; }
int32_t PictureBox::Left(Get) const { return left_; }
void PictureBox::Left(Let, int32_t RHS) { left_ = RHS; }
int32_t PictureBox::Top(Get) const { return top_; }
void PictureBox::Top(Let, int32_t RHS) { top_ = RHS; }
int32_t PictureBox::Width(Get) const { return width_; }
void PictureBox::Width(Let, int32_t RHS) { hResize(windowSide(RHS), height_); }
int32_t PictureBox::Height(Get) const { return height_; }
void PictureBox::Height(Let, int32_t RHS) { hResize(width_, windowSide(RHS)); }

int16_t PictureBox::ScaleMode(Get) const { return scaleMode_; }
void PictureBox::ScaleMode(Let, int16_t RHS) {
  if (pixelsPer(RHS, false) == 0) raise(rt::InvalidCall);
  scaleMode_ = RHS;
}

float PictureBox::ScaleWidth(Get) const { return narrowToSingle(width_ / pixelsPer(scaleMode_, false)); }
float PictureBox::ScaleHeight(Get) const { return narrowToSingle(height_ / pixelsPer(scaleMode_, true)); }

float PictureBox::hScale(float value, int16_t from, const Variant& to, bool vertical) const {
  const double source = pixelsPer(from, vertical);
  const double target = pixelsPer(to.isMissing() ? scaleMode_ : to.toInteger(), vertical);
  if (source == 0 || target == 0) raise(rt::InvalidCall);
  return checkedSingle(checkedFinite(value) * source / target);
}

float PictureBox::ScaleX(Call, float pWidth, int16_t pFromScale, const Variant& pToScale) const {
  return hScale(pWidth, pFromScale, pToScale, false);
}
float PictureBox::ScaleY(Call, float pHeight, int16_t pFromScale, const Variant& pToScale) const {
  return hScale(pHeight, pFromScale, pToScale, true);
}

bool PictureBox::AutoRedraw(Get) const { return autoRedraw_; }
void PictureBox::AutoRedraw(Let, bool RHS) { autoRedraw_ = RHS; }

Variant PictureBox::BackColor(Get) const { return Variant(static_cast<int32_t>(backColor_)); }
void PictureBox::BackColor(Let, const Variant& RHS) { backColor_ = ColorArgb(RHS); }

void PictureBox::Move(Call, float pLeft, float pTop, const Variant& pWidth, const Variant& pHeight) {
  const int32_t left = Variant(pLeft).toLong(), top = Variant(pTop).toLong();
  const int32_t width = pWidth.isMissing() ? width_ : windowSide(pWidth.toDouble());
  const int32_t height = pHeight.isMissing() ? height_ : windowSide(pHeight.toDouble());
  const bool resized = width != width_ || height != height_;
  if (resized) hRebuild(width, height);
  left_ = left;
  top_ = top;
  if (resized) Resize.raise();  // with the box in place
}

void PictureBox::Cls(Call) { gp::Check(gp::GdipGraphicsClear(dc_.get(), backColor_)); }

void PictureBox::Refresh(Call) {
  if (view_) view_->repaint();
}

Ref<Picture> PictureBox::Image(Get) const { return Picture::copyOf(bitmap()); }

int32_t PictureBox::PIXEL(Get, int32_t pX, int32_t pY) const {
  if (pX < 0 || pY < 0 || pX >= width_ || pY >= height_) raise(rt::InvalidCall);
  gp::ARGB argb = 0;
  gp::Check(gp::GdipBitmapGetPixel(bitmap(), pX, pY, &argb));
  return static_cast<int32_t>(argb);
}

}  // namespace tessel
