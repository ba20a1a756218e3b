// The platform's picture box (PictureBox.members): the window object that a surface binds to by
// name and that the host control holds as its inner picture box.
//
// One class, two homes. Off screen it is a backing bitmap only: what is drawn through its hDC
// stays in the bitmap, and input comes from C++ alone (deliver). Placed in a window, a view (the
// GTK widget) shows the same bitmap, asks for repaints through Refresh and delivers real input;
// nothing of the box changes for it.
//
// The bitmap is 32-bit premultiplied ARGB, like an image's. hDC is a graphics on it, registered
// as a device context for as long as it lives; a change of size replaces both, and the old device
// context is withdrawn before it is freed, so a surface bound to the box lets go of it.
#pragma once

#include <tessel/core/Root.h>
#include <tessel/core/TypeLib.h>
#include <tessel/core/mdl_GDIPlus.h>
#include <tessel/host/DataObject.h>
#include <tessel/host/PictureBox.members.h>
#include <tessel/images/Picture.h>

#include <cstdint>
#include <utility>

namespace tessel {

// A side of a window in whole pixels, clamped to 1 to 32767 (the largest surface the rasteriser
// makes); anything that is no finite number is an error.
int32_t windowSide(double pixels);

// What shows a box on screen. The box calls it; the view attaches itself with view() and
// detaches (view(nullptr)) before it goes.
class PictureBoxView {
 public:
  // Show the bitmap again (Refresh).
  virtual void repaint() = 0;

 protected:
  ~PictureBoxView() = default;
};

class PictureBox final : public ObjectOf<PictureBox> {
  TESSEL_MEMBERS(PictureBox)

 public:
  PictureBox();
  ~PictureBox() override;

  // The backing bitmap, for drawing code and views.
  mdl_GDIPlus::GpBitmap* bitmap() const noexcept { return static_cast<mdl_GDIPlus::GpBitmap*>(bitmap_.get()); }

  void view(PictureBoxView* v) noexcept { view_ = v; }
  PictureBoxView* view() const noexcept { return view_; }

  // Input, from the view or a test: raises one of the box's events with the arguments, which are
  // variables where the event takes them ByRef, so that the caller goes on with what the handlers
  // left there. The box outlives the handlers, even one that drops the last reference to it; an
  // error a handler raises reaches the caller.
  //   int16_t key = 65, shift = 0;
  //   box->deliver(&PictureBox::KeyDown, key, shift);
  template <class... A, class... Args>
  void deliver(Event<A...> PictureBox::*event, Args&&... args) {
    KeepAlive alive(this);
    (this->*event).raise(std::forward<Args>(args)...);
  }

 private:
  // A new bitmap of the size with the old pixels at the top left and the rest in BackColor, and
  // its device context. A bitmap the platform cannot make (7) leaves the box as it was.
  void hRebuild(int32_t width, int32_t height);
  // hRebuild and Resize, when the size changes.
  void hResize(int32_t width, int32_t height);
  float hScale(float value, int16_t from, const Variant& to, bool vertical) const;

  PlatformUser user_;
  const int64_t hwnd_;
  int32_t left_ = 0, top_ = 0;
  int32_t width_ = 0, height_ = 0;
  int16_t scaleMode_ = 1;
  bool autoRedraw_ = false;
  uint32_t backColor_ = 0xFFFFFFFF;
  PictureBoxView* view_ = nullptr;
  mdl_GDIPlus::ImageHandle bitmap_;
  // Last: the device context goes before the bitmap it draws on (unregistered first).
  mdl_GDIPlus::GraphicsHandle dc_;
};

}  // namespace tessel
