// The host control (ctl_PictureBox.members): sizing, forwarding and the pointer's way to the tree.
#include <tessel/host/ctl_PictureBox.h>

#include <tessel/core/Checked.h>
#include <tessel/geometry/cls_DrawPoint.h>
#include <tessel/geometry/cls_DrawRect.h>
#include <tessel/geometry/cls_DrawToolPoint.h>

#include <algorithm>

namespace tessel {

namespace {

using E = enm_UIMouseEvent;

// The handlers the event loop calls: their failures may show the dialog.
template <class F>
void handler(const char* name, F&& body) {
  Trap(ProcInfo{"ctl_PictureBox", name, true}, std::forward<F>(body));
}

}  // namespace

ctl_PictureBox::ctl_PictureBox() {
  trap("UserControl_Initialize", [&] {
    box_ = make<PictureBox>();
    hWire();
    // Sited at the inner box's first size, as a form sizes a control when it places it.
    resize(box_->Width(), box_->Height());
  });
}

void ctl_PictureBox::hWire() {
  PictureBox& b = *box_;
  auto pass = [this](const char* name, auto ctl_PictureBox::*own) {
    return [this, name, own](auto&... args) {
      const KeepAlive alive(this);
      handler(name, [&] { (this->*own).raise(args...); });
    };
  };
  wires_.push_back(b.Click.connect(pass("pic_Box_Click", &ctl_PictureBox::Click)));
  wires_.push_back(b.DblClick.connect(pass("pic_Box_DblClick", &ctl_PictureBox::DblClick)));
  wires_.push_back(b.KeyDown.connect(pass("pic_Box_KeyDown", &ctl_PictureBox::KeyDown)));
  wires_.push_back(b.KeyPress.connect(pass("pic_Box_KeyPress", &ctl_PictureBox::KeyPress)));
  wires_.push_back(b.KeyUp.connect(pass("pic_Box_KeyUp", &ctl_PictureBox::KeyUp)));
  wires_.push_back(b.OLECompleteDrag.connect(pass("pic_Box_OLECompleteDrag", &ctl_PictureBox::OLECompleteDrag)));
  wires_.push_back(b.OLEDragDrop.connect(pass("pic_Box_OLEDragDrop", &ctl_PictureBox::OLEDragDrop)));
  wires_.push_back(b.OLEDragOver.connect(pass("pic_Box_OLEDragOver", &ctl_PictureBox::OLEDragOver)));
  wires_.push_back(b.OLEGiveFeedback.connect(pass("pic_Box_OLEGiveFeedback", &ctl_PictureBox::OLEGiveFeedback)));
  wires_.push_back(b.OLESetData.connect(pass("pic_Box_OLESetData", &ctl_PictureBox::OLESetData)));
  wires_.push_back(b.OLEStartDrag.connect(pass("pic_Box_OLEStartDrag", &ctl_PictureBox::OLEStartDrag)));
  auto pointer = [this](const char* name, PointerEvent ctl_PictureBox::*own, E kind) {
    return [this, name, own, kind](int16_t& button, int16_t& shift, float& x, float& y) {
      const KeepAlive alive(this);
      handler(name, [&] { hPointer(own, kind, button, shift, x, y); });
    };
  };
  wires_.push_back(b.MouseDown.connect(pointer("pic_Box_MouseDown", &ctl_PictureBox::MouseDown, E::ID_UIMouseEvent_Down)));
  wires_.push_back(b.MouseMove.connect(pointer("pic_Box_MouseMove", &ctl_PictureBox::MouseMove, E::ID_UIMouseEvent_Move)));
  wires_.push_back(b.MouseUp.connect(pointer("pic_Box_MouseUp", &ctl_PictureBox::MouseUp, E::ID_UIMouseEvent_Up)));
}

void ctl_PictureBox::hPointer(PointerEvent ctl_PictureBox::*own, E kind, int16_t& Button, int16_t& Shift, float& X,
                              float& Y) {
  (this->*own).raise(Button, Shift, X, Y);
  lastX_ = X;
  lastY_ = Y;
  if (!control_) return;
  const Ref<cls_DrawPoint> point = rootFactory<cls_DrawToolPoint>()->AUTO(Variant(X), static_cast<double>(Y));
  // A move with a button held is a hold: the tree drags windows on plain moves only.
  if (kind == E::ID_UIMouseEvent_Move && Button != 0) kind = E::ID_UIMouseEvent_Hold;
  const Ref<cls_DrawControl> root = control_;
  root->EVENTHANDLER(kind, Button, Shift, Variant(point));
  REFRESH();
}

void ctl_PictureBox::resize(int32_t width, int32_t height) {
  width = windowSide(width);
  height = windowSide(height);
  if (width == width_ && height == height_) return;
  width_ = width;
  height_ = height;
  handler("UserControl_Resize", [&] { UserControl_Resize(); });
}

void ctl_PictureBox::UserControl_Resize() {
  box_->Move(0, 0, Variant(width_), Variant(height_));
  GRAPHICS()->CONNECT(box_);
  RESIZE.raise();
}

int32_t ctl_PictureBox::Left(Get) const { return left_; }
int32_t ctl_PictureBox::Top(Get) const { return top_; }
int32_t ctl_PictureBox::Width(Get) const { return width_; }
int32_t ctl_PictureBox::Height(Get) const { return height_; }
float ctl_PictureBox::ScaleWidth(Get) const { return static_cast<float>(width_); }
float ctl_PictureBox::ScaleHeight(Get) const { return static_cast<float>(height_); }

void ctl_PictureBox::Move(Call, float pLeft, float pTop, const Variant& pWidth, const Variant& pHeight) {
  const int32_t left = Variant(pLeft).toLong(), top = Variant(pTop).toLong();
  const int32_t width = pWidth.isMissing() ? width_ : windowSide(pWidth.toDouble());
  const int32_t height = pHeight.isMissing() ? height_ : windowSide(pHeight.toDouble());
  left_ = left;
  top_ = top;
  resize(width, height);
}

Ref<cls_DrawGraphics> ctl_PictureBox::GRAPHICS(Get) const {
  if (!graphics_) const_cast<ctl_PictureBox*>(this)->graphics_ = make<cls_DrawGraphics>();
  return graphics_;
}
void ctl_PictureBox::GRAPHICS(Set, Ref<cls_DrawGraphics> RHS) { graphics_ = std::move(RHS); }
Ref<cls_DrawControl> ctl_PictureBox::Control(Get) const { return control_; }
void ctl_PictureBox::Control(Set, Ref<cls_DrawControl> RHS) { control_ = std::move(RHS); }

// The same rectangle every time, moved on every read; one less than the size (intended).
Ref<cls_DrawRect> ctl_PictureBox::RECT(Get) const {
  if (!rect_) const_cast<ctl_PictureBox*>(this)->rect_ = make<cls_DrawRect>();
  rect_->MOVE(0, 0, static_cast<float>(width_ - 1), static_cast<float>(height_ - 1));
  return rect_;
}

Ref<Picture> ctl_PictureBox::Image(Get) const { return box_->Image(); }
Ref<Object> ctl_PictureBox::PICTUREBOX(Get) const { return box_; }
int32_t ctl_PictureBox::X(Call) const { return static_cast<int32_t>(roundHalfEven(lastX_)); }
int32_t ctl_PictureBox::Y(Call) const { return static_cast<int32_t>(roundHalfEven(lastY_)); }
void ctl_PictureBox::REFRESH(Call) { box_->Refresh(); }

}  // namespace tessel
