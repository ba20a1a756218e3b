// The host control (ctl_PictureBox.members): an inner picture box, a surface bound to it, and a
// control tree that its pointer input goes to.
//
// Rules, written once:
// - The control's size is its own (Move off screen, the window's allocation on screen); a change
//   moves the inner box over the whole control, binds GRAPHICS to it again, then raises RESIZE.
// - Every input event of the inner box is raised again as the control's own with the very same
//   arguments, so a handler's change reaches the box (and, for the pointer, the tree).
// - Presses, moves and releases then go to Control's EVENTHANDLER, a move with a button held as
//   Hold, and the box is refreshed. Keys never reach the tree.
// - The handlers of the inner box's events are the procedures the event loop calls: their
//   failures may show the error dialog.
#pragma once

#include <tessel/controls/cls_DrawControl.h>
#include <tessel/core/TypeLib.h>
#include <tessel/graphics/cls_DrawGraphics.h>
#include <tessel/host/PictureBox.h>
#include <tessel/host/ctl_PictureBox.members.h>

#include <cstdint>
#include <vector>

namespace tessel {

class ctl_PictureBox final : public ObjectOf<ctl_PictureBox> {
  TESSEL_MEMBERS(ctl_PictureBox)

 public:
  ctl_PictureBox();

  // The inner picture box, for the view that shows it.
  const Ref<PictureBox>& box() const noexcept { return box_; }
  // The size the control was given, in pixels (a view passes its window's allocation here).
  void resize(int32_t width, int32_t height);

 private:
  void UserControl_Resize();
  // A press, move or release of the inner box: raised again, handed to the tree, refreshed.
  using PointerEvent = Event<int16_t&, int16_t&, float&, float&>;
  void hPointer(PointerEvent ctl_PictureBox::*own, enm_UIMouseEvent kind, int16_t& Button, int16_t& Shift, float& X,
                float& Y);
  void hWire();

  Ref<PictureBox> box_;
  Ref<cls_DrawGraphics> graphics_;
  Ref<cls_DrawControl> control_;
  Ref<cls_DrawRect> rect_;
  int32_t left_ = 0, top_ = 0, width_ = 0, height_ = 0;
  float lastX_ = 0, lastY_ = 0;
  std::vector<Connection> wires_;  // to the inner box's events; they end with the control
};

}  // namespace tessel
