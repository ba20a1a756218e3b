// The surface's lifecycle and its binding to a target (cls_DrawGraphics.members).
#include <tessel/graphics/cls_DrawGraphics.h>

#include <tessel/color/cls_DrawColor.h>
#include <tessel/core/mdl_Basalt.h>
#include <tessel/geometry/cls_DrawToolRect.h>
#include <tessel/images/cls_DrawImage.h>
#include <tessel/resources/cls_DrawBrush.h>
#include <tessel/resources/cls_DrawFont.h>
#include <tessel/resources/cls_DrawPen.h>
#include <tessel/resources/cls_DrawTextFormat.h>

namespace tessel {

namespace gp = mdl_GDIPlus;

namespace {

constexpr int16_t kPixels = 3;  // a host's ScaleMode in pixels
constexpr int16_t kDefaultSide = 100;

int64_t readHandle(Object* host, std::string_view name) { return Invoke(host, name, InvokeKind::Get).toLongLong(); }

// The default font for a device context: "Arial" 10 at the device's resolution.
void fontFor(cls_DrawFont& font, int64_t hdc) { font.FROMHDC(hdc, u"Arial", 10, 300, false); }

}  // namespace

cls_DrawGraphics::cls_DrawGraphics() {
  trap("Class_Initialize", [&] {
    color1_ = make<cls_DrawColor>();
    color1_->RGB(255, 255, 255, -1);
    color2_ = make<cls_DrawColor>();
    color2_->RGB(0, 0, 0, 255);
    brush_ = make<cls_DrawBrush>();
    brush_->SOLID(Variant(color1_));
    pen_ = make<cls_DrawPen>();
    pen_->SOLID(Variant(color2_), 1);
    // The format object stays even when the platform could not make its native format yet.
    textFormat_ = make<cls_DrawTextFormat>();
    textFormat_->DIRECT(enm_TextAlign::ID_TextAlign_CenterMiddle);
  });
}

// No RELEASE here (intended): the handle frees a graphics left open, outside the error path.
cls_DrawGraphics::~cls_DrawGraphics() { hLeaveImage(); }

void cls_DrawGraphics::hLeaveImage() noexcept {
  if (auto* image = dynamic_cast<cls_DrawImage*>(device_.get()); image && image->boundGraphics() == this)
    image->boundGraphics(nullptr);
}

void cls_DrawGraphics::hBind(Ref<Object> device) {
  if (device != device_) hLeaveImage();
  device_ = std::move(device);
  measured_.clear();
}

// Whole pixels, rounded half to even (an image's size is whole already).
void cls_DrawGraphics::followImageSize() {
  auto* image = isImage_ ? dynamic_cast<cls_DrawImage*>(device_.get()) : nullptr;
  if (!image) return;
  width_ = Variant(image->WIDTH()).toLong();
  height_ = Variant(image->HEIGHT()).toLong();
}

Ref<cls_DrawColor> cls_DrawGraphics::COLOR1(Get) const { return color1_; }
void cls_DrawGraphics::COLOR1(Set, Ref<cls_DrawColor> RHS) { color1_ = std::move(RHS); }
Ref<cls_DrawColor> cls_DrawGraphics::COLOR2(Get) const { return color2_; }
void cls_DrawGraphics::COLOR2(Set, Ref<cls_DrawColor> RHS) { color2_ = std::move(RHS); }
Ref<cls_DrawBrush> cls_DrawGraphics::BRUSH(Get) const { return brush_; }
void cls_DrawGraphics::BRUSH(Set, Ref<cls_DrawBrush> RHS) { brush_ = std::move(RHS); }
Ref<cls_DrawPen> cls_DrawGraphics::PEN(Get) const { return pen_; }
void cls_DrawGraphics::PEN(Set, Ref<cls_DrawPen> RHS) { pen_ = std::move(RHS); }
Ref<cls_DrawTextFormat> cls_DrawGraphics::TEXTFORMAT(Get) const { return textFormat_; }
void cls_DrawGraphics::TEXTFORMAT(Set, Ref<cls_DrawTextFormat> RHS) { textFormat_ = std::move(RHS); }

void cls_DrawGraphics::RELEASE(Call) {
  if (!graphics_) return;
  graphics_.reset();  // the status of the delete passes Execute
  lockedDC_ = 0;
  lockedImage_ = nullptr;
}

void cls_DrawGraphics::LOCKIT(Call) {
  if (!hConnected()) return;
  gp::GpGraphics* made = nullptr;
  if (isImage_) {
    // A new graphics on every call (intended), so its transform and clip start afresh; the one
    // it replaces is freed. It is made on whatever bitmap the image holds now.
    Ref<cls_DrawImage> image = refCast<cls_DrawImage>(device_);
    if (!gp::Succeeded(gp::GdipGetImageGraphicsContext(image ? image->bitmap() : nullptr, &made))) made = nullptr;
    graphics_.reset(made);
    lockedImage_ = made ? image : nullptr;
    lockedStamp_ = made ? image->bitmapStamp() : 0;
    return;
  }
  // A host that made a new backing bitmap (a resize) has withdrawn the device context the surface
  // holds: take the one it has now. One that stays live is kept, even when the host hands out
  // another (CONNECT's order, intended).
  if (device_ && gp::HDCStamp(hdc_) == 0) hdc_ = readHandle(device_.get(), "hDC");
  // A graphics made on an image or for another device context is not this target's.
  if (lockedImage_ || (lockedDC_ != 0 && lockedDC_ != hdc_) || hDCWithdrawn()) RELEASE();
  lockedDC_ = hdc_;
  if (graphics_) return;
  if (gp::Succeeded(gp::CreateFromHDC(hdc_, &made))) {
    graphics_.reset(made);
    lockedDCStamp_ = gp::HDCStamp(hdc_);
  }
}

bool cls_DrawGraphics::READY(Call) {
  if (!rootReady()) return false;
  // Drawing asks this before every call: a graphics open on the same device context, while no
  // device context has come or gone since the last look, needs no more checking.
  const uint64_t changes = gp::HDCChanges();
  if (graphics_ && !isImage_ && !lockedImage_ && lockedDC_ == hdc_ && changes == checkedChanges_) return true;
  checkedChanges_ = changes;
  // Held, an image keeps the graphics open on its present bitmap.
  if (holds_ > 0 && graphics_ && isImage_ && lockedImage_ && lockedImage_.get() == device_.get() &&
      lockedImage_->bitmapStamp() == lockedStamp_)
    return true;
  // A graphics on an image that has had its bitmap replaced or freed since would draw on freed
  // memory. Bound to the image, LOCKIT replaces it anyway; after DISCONNECT, which does not
  // release, this closes it.
  if (lockedImage_ && lockedImage_->bitmapStamp() != lockedStamp_) RELEASE();
  // The same for a device context that its owner has withdrawn since, with the bitmap under it.
  if (hDCWithdrawn()) RELEASE();
  LOCKIT();
  return static_cast<bool>(graphics_);
}

Ref<Object> cls_DrawGraphics::DEVICE(Get) const { return device_; }

void cls_DrawGraphics::DEVICE(Set, Ref<Object> RHS) {
  RELEASE();
  // hDC and hwnd are read before the object is looked at (intended): Nothing fails here with 91,
  // an image, which has no hDC, with 438.
  Object* host = RHS.get();
  const int64_t dc = readHandle(host, "hDC");
  const int64_t wnd = readHandle(host, "hwnd");
  const float w = Invoke(host, "ScaleWidth", InvokeKind::Get).toSingle();
  const float h = Invoke(host, "ScaleHeight", InvokeKind::Get).toSingle();
  hBind(std::move(RHS));
  hdc_ = dc;
  hwnd_ = wnd;
  isImage_ = false;
  AREA()->MOVE(0, 0, w, h);
  fontFor(*FONT(), dc);
  LOCKIT();
}

bool cls_DrawGraphics::CONNECT(Call, Ref<Object> pConnect, Ref<cls_DrawFlags> pFlags) {
  if (refCast<cls_DrawImage>(pConnect)) {
    hBind(std::move(pConnect));
    isImage_ = true;
    followImageSize();
    FONT()->DIRECT(u"Arial", 10, enm_DrawFontStyle::ID_DrawFontStyle_Regular);
  } else {
    Object* host = pConnect.get();
    const int64_t dc = readHandle(host, "hDC");
    const int64_t wnd = readHandle(host, "hwnd");
    Invoke(host, "AutoRedraw", InvokeKind::Let, {Variant(true)});
    Invoke(host, "ScaleMode", InvokeKind::Let, {Variant(kPixels)});
    // The font is made for the persistent bitmap's device context, while the surface keeps the
    // one read before AutoRedraw was switched on (intended).
    const int64_t persistent = readHandle(host, "hDC");
    hBind(std::move(pConnect));
    hdc_ = dc;
    hwnd_ = wnd;
    isImage_ = false;
    fontFor(*FONT(), persistent);
  }
  LOCKIT();
  return false;  // callers ignore it (intended)
}

void cls_DrawGraphics::DISCONNECT(Call) {
  // Neither releases nor forgets that the target was an image (intended): callers RELEASE first.
  hBind(nullptr);
  hdc_ = 0;
  hwnd_ = 0;
}

bool cls_DrawGraphics::CONNECTDC(Call, int64_t pHWND, int64_t pDC, Ref<cls_DrawFlags> pFlags) {
  const Ref<cls_DrawFlags> flags = pFlags ? pFlags : make<cls_DrawFlags>();
  const int32_t w = flags->FLAG(u"WIDTH", Variant(kDefaultSide)).toLong();
  const int32_t h = flags->FLAG(u"HEIGHT", Variant(kDefaultSide)).toLong();
  hBind(nullptr);
  hdc_ = pDC;
  hwnd_ = pHWND;
  isImage_ = false;
  width_ = w;
  height_ = h;
  fontFor(*FONT(), pDC);
  LOCKIT();
  return false;  // as CONNECT (intended)
}

Ref<cls_DrawRect> cls_DrawGraphics::RECT(Call) {
  int32_t w = width_, h = height_;
  if (!isImage_ && device_) {
    // A host window answers in its own scale; it converts to pixels itself.
    Object* host = device_.get();
    const Variant mode = Invoke(host, "ScaleMode", InvokeKind::Get);
    const Variant pixels(kPixels);
    w = Invoke(host, "ScaleX", InvokeKind::Method, {Invoke(host, "ScaleWidth", InvokeKind::Get), mode, pixels}).toLong();
    h = Invoke(host, "ScaleY", InvokeKind::Method, {Invoke(host, "ScaleHeight", InvokeKind::Get), mode, pixels}).toLong();
  }
  return rootFactory<cls_DrawToolRect>()->AUTO(Variant(int32_t(0)), 0, w, h);
}

enm_Draw_Unit cls_DrawGraphics::UNIT(Get) const {
  int unit = 0;
  (void)gp::Succeeded(gp::GdipGetPageUnit(graphics_.get(), &unit));
  return static_cast<enm_Draw_Unit>(unit);
}

void cls_DrawGraphics::UNIT(Let, enm_Draw_Unit RHS) {
  // libgdiplus would also take its own cairo unit (7); the platform's range ends at Millimeter.
  const auto unit = static_cast<int32_t>(RHS);
  const bool known = unit >= 0 && unit <= static_cast<int32_t>(enm_Draw_Unit::ID_Draw_UnitMillimeter);
  (void)gp::Succeeded(known ? gp::GdipSetPageUnit(graphics_.get(), unit) : gp::GpStatus::InvalidParameter);
}

}  // namespace tessel
