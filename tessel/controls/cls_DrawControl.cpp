// The control node's data, behaviour table and children (cls_DrawControl.members).
#include <tessel/controls/cls_DrawControl.h>

#include <tessel/core/Text.h>
#include <tessel/geometry/cls_DrawRect.h>
#include <tessel/graphics/cls_DrawGraphics.h>
#include <tessel/images/cls_DrawImage.h>
#include <tessel/resources/cls_DrawFont.h>

#include <algorithm>
#include <limits>

namespace tessel {

using B = enm_UIControlBehaviour;

cls_DrawControl::cls_DrawControl() {
  trap("Class_Initialize", [&] {
    box_ = make<cls_DrawRect>();
    padding_ = 4;
    enabled_ = true;
    text_ = u"Control";
    textAlign_ = enm_TextAlign::ID_TextAlign_CenterMiddle;
    box_->MOVE(0, 0, 200, 50);
  });
}

cls_DrawControl::~cls_DrawControl() = default;

Ref<cls_DrawImage> cls_DrawControl::ICON(Get) const { return icon_; }
void cls_DrawControl::ICON(Set, Ref<cls_DrawImage> RHS) { icon_ = std::move(RHS); }
Ref<cls_DrawFont> cls_DrawControl::TEXTFONT(Get) const { return textFont_; }
void cls_DrawControl::TEXTFONT(Set, Ref<cls_DrawFont> RHS) { textFont_ = std::move(RHS); }
std::u16string cls_DrawControl::ID(Get) const { return id_; }
void cls_DrawControl::ID(Let, const std::u16string& RHS) { id_ = RHS; }
Ref<cls_DrawRect> cls_DrawControl::BOX(Get) const { return box_; }
void cls_DrawControl::BOX(Set, Ref<cls_DrawRect> RHS) { box_ = std::move(RHS); }

int32_t cls_DrawControl::ICONSIZE(Get) const { return iconSize_; }
void cls_DrawControl::ICONSIZE(Let, int32_t RHS) { hChange(iconSize_, RHS); }
enm_UIIconPosition cls_DrawControl::ICONPOSITION(Get) const { return iconPosition_; }
void cls_DrawControl::ICONPOSITION(Let, enm_UIIconPosition RHS) { hChange(iconPosition_, RHS); }
int32_t cls_DrawControl::PADDING(Get) const { return padding_; }
void cls_DrawControl::PADDING(Let, int32_t RHS) { hChange(padding_, RHS); }
std::u16string cls_DrawControl::TEXT(Get) const { return text_; }
void cls_DrawControl::TEXT(Let, const std::u16string& RHS) { hChange(text_, RHS); }
enm_TextAlign cls_DrawControl::TEXTALIGN(Get) const { return textAlign_; }
void cls_DrawControl::TEXTALIGN(Let, enm_TextAlign RHS) { hChange(textAlign_, RHS); }
bool cls_DrawControl::FOCUS(Get) const { return focus_; }
void cls_DrawControl::FOCUS(Let, bool RHS) { hChange(focus_, RHS); }
bool cls_DrawControl::ENABLED(Get) const { return enabled_; }
void cls_DrawControl::ENABLED(Let, bool RHS) { hChange(enabled_, RHS); }

enm_UIControl cls_DrawControl::SORT(Get) const { return sort_; }
void cls_DrawControl::SORT(Let, enm_UIControl RHS) {
  if (sort_ == RHS) return;
  sort_ = RHS;
  hSortChanged();
  hReRender();
}

bool cls_DrawControl::PRESSED(Get) const { return pressed_; }
// Only a node that can be pressed takes it.
void cls_DrawControl::PRESSED(Let, bool RHS) {
  if (behaviour_[static_cast<size_t>(B::ID_UIControlBehaviour_CanPressed)]) hChange(pressed_, RHS);
}

bool cls_DrawControl::HOVER(Get) const { return hover_; }
// Always stored; shown only by a node with the hover effect.
void cls_DrawControl::HOVER(Let, bool RHS) {
  if (hover_ == RHS) return;
  hover_ = RHS;
  if (behaviour_[static_cast<size_t>(B::ID_UIControlBehaviour_HoverEffect)]) hReRender();
}

namespace {

size_t slot(enm_UIControlBehaviour b, size_t count) {
  const auto i = static_cast<int32_t>(b);
  if (i < 0 || static_cast<size_t>(i) >= count) raise(rt::SubscriptOutOfRange);
  return static_cast<size_t>(i);
}

}  // namespace

bool cls_DrawControl::BEHAVIOUR(Get, enm_UIControlBehaviour pBehaviour) const {
  return behaviour_[slot(pBehaviour, kBehaviours)];
}
void cls_DrawControl::BEHAVIOUR(Let, enm_UIControlBehaviour pBehaviour, bool RHS) {
  behaviour_[slot(pBehaviour, kBehaviours)] = RHS;
}

void cls_DrawControl::hSortChanged() {
  behaviour_.fill(false);
  auto on = [&](B b) { behaviour_[static_cast<size_t>(b)] = true; };
  switch (sort_) {
    case enm_UIControl::ID_UIControl_Button:
      on(B::ID_UIControlBehaviour_CanFocus);
      on(B::ID_UIControlBehaviour_CanPressed);
      on(B::ID_UIControlBehaviour_HoverEffect);
      break;
    case enm_UIControl::ID_UIControl_Window:
      on(B::ID_UIControlBehaviour_CanFocus);
      on(B::ID_UIControlBehaviour_FocusToFront);
      break;
    default:
      break;
  }
}

void cls_DrawControl::attach(Ref<cls_DrawGraphics> surface) {
  surface_ = std::move(surface);
  drawnAt_ = surface_ ? surface_->worldToDevice() : Affine{};
}

// The box where the device shows it joins the attached surface's pending area; nothing draws
// here. The box is mapped as REPROJECT maps it, by the projection the node was last drawn under:
// outside a render or a pointer event the surface's projection no longer holds the shifts of
// the node's parents, and a nested node would ask for the wrong place.
void cls_DrawControl::hReRender() {
  if (!surface_) return;
  const Affine::Point at = drawnAt_.map({hBox()->X(), hBox()->Y()});
  Ref<cls_DrawRect> onDevice = make<cls_DrawRect>();
  onDevice->COPY(hBox());
  onDevice->MOVE(static_cast<float>(at.x), static_cast<float>(at.y), -1, -1);
  surface_->RENDERWINDOW(Variant(onDevice));
}

int32_t cls_DrawControl::CHILDREN(Call) const { return static_cast<int32_t>(children_.size()); }

Ref<cls_DrawControl> cls_DrawControl::CHILDADD(Call, Ref<cls_DrawControl> pControl) {
  children_.push_back(pControl);
  return pControl;
}

int32_t cls_DrawControl::CHILDFIND(Call, const Variant& pIDOrIndex) const {
  const auto n = static_cast<int32_t>(children_.size());
  if (pIDOrIndex.isObject()) {
    for (int32_t i = 0; i < n; ++i)
      if (children_[static_cast<size_t>(i)].get() == pIDOrIndex.obj()) return i + 1;
    return 0;
  }
  if (pIDOrIndex.isString()) {
    for (int32_t i = 0; i < n; ++i)
      if (children_[static_cast<size_t>(i)] && children_[static_cast<size_t>(i)]->ID() == pIDOrIndex.str()) return i + 1;
    return 0;
  }
  // A position: the leading number of the value's text, rounded half to even.
  const double number = readLeadingNumber(pIDOrIndex.toString());
  if (!(number >= 0.5 && number < n + 0.5)) return 0;
  return static_cast<int32_t>(roundToWhole(number, 1, n));
}

Ref<cls_DrawControl> cls_DrawControl::CHILD(Call, const Variant& pIDOrIndex) const {
  const int32_t i = CHILDFIND(pIDOrIndex);
  return i == 0 ? Ref<cls_DrawControl>() : children_[static_cast<size_t>(i - 1)];
}

// Always to position 1 (intended): pZOrder only decides whether the child moves at all.
void cls_DrawControl::CHILDZORDER(Call, const Variant& pIDOrIndex, int32_t pZOrder) {
  const int32_t found = CHILDFIND(pIDOrIndex);
  if (found == 0) return;
  const int32_t target = std::clamp(pZOrder, 1, CHILDREN());
  if (found == target) return;
  std::swap(children_[static_cast<size_t>(found - 1)], children_[0]);
}

}  // namespace tessel
