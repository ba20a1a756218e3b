// The drawing surface (cls_DrawGraphics.members): one native graphics on the bound target, and
// the default resources that drawing uses when an argument is left out.
//
// Rules, written once:
// - A surface counts as a user of the platform while it lives: the root's INIT when it is made,
//   DEINIT when it goes.
// - CONNECT, CONNECTDC, DEVICE set and an image's GRAPHICS bind a target; READY opens the native
//   graphics there when needed (LOCKIT) and RELEASE frees it. Dropping a surface runs no RELEASE,
//   but its handle still frees a graphics left open.
// - A binding reads everything it needs from the target before it changes the surface, so one
//   that fails (a host without hDC, Nothing) leaves the surface as it was. The host itself may
//   have changed already: CONNECT switches its AutoRedraw and ScaleMode before it reads hDC again.
// - Native statuses are no errors: a graphics the platform cannot make leaves the surface closed.
// - A surface holds its target by reference. An image keeps only a plain pointer to the surface
//   its GRAPHICS handed out, which the surface clears whenever it leaves that image.
#pragma once

#include <tessel/core/Root.h>
#include <tessel/core/TypeLib.h>
#include <tessel/core/cls_DrawFlags.h>  // CONNECT's and CONNECTDC's default argument
#include <tessel/core/mdl_GDIPlus.h>
#include <tessel/graphics/cls_DrawGraphics.members.h>

#include <cstdint>
#include <string>
#include <unordered_map>

namespace tessel {

class cls_DrawImage;

// An affine map x' = m11 x + m21 y + dx, y' = m12 x + m22 y + dy, as the platform's matrices
// hold it; the identity when made empty.
struct Affine {
  struct Point {
    double x, y;
  };
  double m11 = 1, m12 = 0, m21 = 0, m22 = 1, dx = 0, dy = 0;
  Point map(Point p) const;
  Affine inverse() const;  // the identity for a map that collapses the plane
};

class cls_DrawGraphics final : public ObjectOf<cls_DrawGraphics> {
  TESSEL_MEMBERS(cls_DrawGraphics)

 public:
  cls_DrawGraphics();
  ~cls_DrawGraphics() override;

  // The native graphics for drawing code, valid after READY answered True; null while closed.
  mdl_GDIPlus::GpGraphics* graphics() const noexcept { return graphics_.get(); }

  // How the open graphics maps world coordinates to device pixels: its world transform and the
  // page unit's scale; the identity while closed.
  Affine worldToDevice() const;

  // While a hold lasts, a surface on an image keeps the native graphics it has open from one
  // drawing call to the next, instead of opening a new one on every call: a control tree holds
  // its surface while it draws, so that the shifts and the clip it sets last as on a window.
  // Holds nest; the first one opens a fresh graphics, as any call on an image does.
  class Hold {
   public:
    explicit Hold(cls_DrawGraphics& g) : g_(g) {
      if (g_.holds_ == 0) g_.READY();
      ++g_.holds_;
    }
    ~Hold() { --g_.holds_; }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

   private:
    cls_DrawGraphics& g_;
  };

  // Takes the size of the bound image again, after the image was given a new bitmap (CREATE,
  // LOAD); does nothing unless an image is bound.
  void followImageSize();

 private:
  // READY for the property reads, which open the native graphics as drawing does.
  bool hReady() const { return const_cast<cls_DrawGraphics*>(this)->READY(); }
  // An omitted pen or brush is the surface's default.
  Variant hPenOrDefault(const Variant& pPen) const;
  Variant hBrushOrDefault(const Variant& pBrush) const;
  // A loose path argument, handed to a new path's default member.
  static Ref<Object> hPathArg(const Variant& pPath);

  // TEXT and TEXTDIRECT, with the text as the platform gets it: `length` UTF-16 units.
  void hText(const std::u16string& text, int length, const Variant& pRect, const Variant& pFont,
             const Variant& pBrush, const Variant& pPen, const Variant& pTextFormat, double pAngle,
             bool pPenBehindBrush);
  // Draws the part `source` of the image (its pixels) onto the parallelogram whose top left,
  // top right and bottom left corners `to` gives, in world coordinates.
  void hImage(const Variant& pImage, const mdl_GDIPlus::GpRectF* source, const Affine::Point (&to)[3],
              const Variant& pImageAttributes);
  mdl_GDIPlus::GpImage* hPadded(const cls_DrawImage& image, const mdl_GDIPlus::GpRect& area);
  void hFit(const Variant& pImage, const Variant& pRect, const mdl_GDIPlus::GpRectF& part, bool pKeepAspectRatio,
            enm_TextAlign pAlign, const Variant& pImageAttributes);
  static Ref<Object> hProjected(const Variant& pPointOrRect, const Affine& map);

  // Whether a target is bound: a device object, or else a non-zero device context.
  bool hConnected() const noexcept { return device_ || hdc_ != 0; }
  // Every change of the device passes here, so that an image never points to a surface that left it.
  void hBind(Ref<Object> device);
  void hLeaveImage() noexcept;
  // Whether the open graphics was made on a device context whose registration has ended since.
  bool hDCWithdrawn() const noexcept {
    return graphics_ && lockedDC_ != 0 && mdl_GDIPlus::HDCStamp(lockedDC_) != lockedDCStamp_;
  }

  PlatformUser user_;
  Ref<cls_DrawColor> color1_, color2_;
  Ref<cls_DrawBrush> brush_;
  Ref<cls_DrawPen> pen_;
  Ref<cls_DrawTextFormat> textFormat_;
  int32_t width_ = 0, height_ = 0;  // of an image or a bare device context
  bool isImage_ = false;
  Ref<Object> device_;
  int64_t hwnd_ = 0;
  int64_t hdc_ = 0;
  int64_t lockedDC_ = 0;  // the device context the open graphics was made for; 0 when none
  uint64_t lockedDCStamp_ = 0;  // and the registration it was made under
  uint64_t checkedChanges_ = ~uint64_t(0);  // the device-context changes READY last looked at
  int32_t holds_ = 0;                       // Hold
  // The image the open graphics draws on, kept alive while it is open, and the stamp of the
  // bitmap it was made on.
  Ref<cls_DrawImage> lockedImage_;
  uint64_t lockedStamp_ = 0;
  // TEXTMEASURE's answers, forgotten when a new target is bound and when too many pile up.
  struct MeasureKey {
    std::u16string text;
    uint64_t font, format;
    enm_TextAlign align;
    mdl_GDIPlus::GpRectF layout;
    bool operator==(const MeasureKey& o) const;
  };
  struct MeasureKeyHash {
    size_t operator()(const MeasureKey& k) const noexcept;
  };
  static constexpr size_t kMeasuredKept = 512;
  std::unordered_map<MeasureKey, mdl_GDIPlus::GpRectF, MeasureKeyHash> measured_;
  // The copy with repeated edges that scaled image drawing last made, and what it was made of.
  struct PaddedKey {
    const void* bitmap;
    uint64_t stamp;
    int32_t x, y, w, h;
    bool operator==(const PaddedKey&) const = default;
  };
  PaddedKey paddedKey_{};
  mdl_GDIPlus::ImageHandle padded_;
  // Last: an open graphics goes before the image it draws on.
  mdl_GDIPlus::GraphicsHandle graphics_;
};

}  // namespace tessel
