// The control node (cls_DrawControl.members): its data, its behaviour table and its children.
//
// Rules, written once:
// - Every setter of a property that shows asks for a repaint when the value changes (hReRender):
//   the node's box, mapped to the device by the surface it was last rendered on, joins that
//   surface's pending area. Without such a surface nothing happens; nothing draws at once.
// - A change of SORT resets the behaviour table to the kind's switches before its repaint
//   request (hSortChanged), so switches set before are lost.
// - Children are held by counted references, position 1 at the front (drawn last, asked first);
//   there is no link back to the parent and no removal.
// - A child's coordinates start at its parent's child origin: the box's top left, moved by
//   CHILDBOX's position when CHILDBOX has a width. Drawing shifts the surface's projection by it
//   (cls_DrawControl_Render.cpp), pointer handling shifts the point by it
//   (cls_DrawControl_Pointer.cpp), so what is drawn and what is hit agree at every depth.
#pragma once

#include <tessel/controls/cls_DrawControl.members.h>
#include <tessel/core/TypeLib.h>
#include <tessel/core/mdl_Basalt.h>
#include <tessel/graphics/cls_DrawGraphics.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace tessel {

class cls_DrawControl final : public ObjectOf<cls_DrawControl> {
  TESSEL_MEMBERS(cls_DrawControl)

 public:
  cls_DrawControl();
  ~cls_DrawControl() override;

  // The surface the node was last rendered on (null before), and how the node's own coordinates
  // mapped to its device then; RENDER attaches.
  const Ref<cls_DrawGraphics>& attached() const noexcept { return surface_; }
  void attach(Ref<cls_DrawGraphics> surface);

 private:
  // The node's paths and brushes, kept between renders (cls_DrawControl_Look.cpp).
  struct Look;
  struct LookDeleter {
    void operator()(Look* look) const noexcept;
  };

  // BOX, which the application may have set to Nothing (91 then).
  const Ref<cls_DrawRect>& hBox() const {
    if (!box_) raise(rt::ObjectNotSet);
    return box_;
  }
  void hSetFocus(const Ref<cls_DrawControl>& pParent);
  void hSortChanged();
  void hReRender();
  // Paints the node itself, its body, caption and icon, on a ready surface.
  void hPaint(cls_DrawGraphics& g);
  // Where the children's coordinates start, in this node's parent coordinates.
  Ref<cls_DrawPoint> hChildOrigin() const;
  // Marks the node while RENDER or EVENTHANDLER goes through its children. Meeting the mark again
  // on the way down means the node is its own descendant (a node added under itself): error 5,
  // where the descent would never end.
  class Descent {
   public:
    explicit Descent(bool& mark) : mark_(mark) {
      if (mark_) raise(rt::InvalidCall);
      mark_ = true;
    }
    ~Descent() { mark_ = false; }
    Descent(const Descent&) = delete;
    Descent& operator=(const Descent&) = delete;

   private:
    bool& mark_;
  };
  // Stores `value` in `field` and asks for a repaint when it changed.
  template <class T>
  void hChange(T& field, const T& value) {
    if (field == value) return;
    field = value;
    hReRender();
  }

  static constexpr size_t kBehaviours = 21;
  Ref<cls_DrawImage> icon_;
  Ref<cls_DrawFont> textFont_;
  std::u16string id_;
  Ref<cls_DrawRect> box_;
  int32_t iconSize_ = 0;
  enm_UIIconPosition iconPosition_ = enm_UIIconPosition::ID_UIIconPosition_Left;
  int32_t padding_ = 0;
  enm_UIControl sort_ = static_cast<enm_UIControl>(0);
  std::u16string text_;
  enm_TextAlign textAlign_ = enm_TextAlign::ID_TextAlign_LeftMiddle;
  bool pressed_ = false, focus_ = false, enabled_ = false, hover_ = false;
  std::array<bool, kBehaviours> behaviour_{};
  std::vector<Ref<cls_DrawControl>> children_;  // position 1 is children_[0]
  Ref<cls_DrawGraphics> surface_;
  Affine drawnAt_;  // the node's coordinates to device pixels, when it was last rendered
  // The drag record: a press on this node not yet released, the pointer at the last press or
  // move, and whether a window is being dragged by its title strip.
  bool active_ = false, moving_ = false;
  bool rendering_ = false, dispatching_ = false;  // Descent marks
  int32_t lastX_ = 0, lastY_ = 0;
  std::unique_ptr<Look, LookDeleter> look_;
};

}  // namespace tessel
