// Pointer handling of the control tree (cls_DrawControl.members): HITTEST, EVENTHANDLER and the
// focus helper.
//
// A node takes an event in its parent's child coordinates, updates its own state, raises MOUSE
// and hands the event on to its children, front first, in their coordinates, until one of them
// takes it. What a node answers is its own result, whatever its children answered.
//
// Kept as built:
// - Every node answers a Move with True, so the front child takes every Move and hover tracking
//   by Move works for it alone; the children behind it get hover only from In and Out.
// - A press is recorded on every node hit along the path from the root.
// - ENABLED is shown, not consulted: a host that wants a disabled node deaf tests it itself.
#include <tessel/controls/cls_DrawControl.h>

#include <tessel/core/Text.h>
#include <tessel/geometry/cls_DrawPoint.h>
#include <tessel/geometry/cls_DrawRect.h>
#include <tessel/geometry/cls_DrawToolPoint.h>

namespace tessel {

namespace {

using E = enm_UIMouseEvent;

// The title strip: a press at most this far below a window's top starts a drag.
constexpr double kTitleStrip = 30;

// A point of the toolkit: a point as it is, another object by its X and Y, anything else
// through the point factory.
Ref<cls_DrawPoint> pointArg(const Variant& v) {
  if (auto* point = dynamic_cast<cls_DrawPoint*>(v.obj())) return Ref<cls_DrawPoint>(point);
  if (v.isObject()) {
    if (v.isNothing()) raise(rt::ObjectNotSet);
    double x = 0, y = 0;
    PointCoordinates(v, x, y);
    return make<cls_DrawPoint>()->MOVE(x, y);
  }
  return rootFactory<cls_DrawToolPoint>()->AUTO(v, 0);
}

int32_t whole(double v) { return static_cast<int32_t>(roundToWhole(v, INT32_MIN, INT32_MAX)); }

}  // namespace

bool cls_DrawControl::HITTEST(Call, const Variant& pPoint) {
  // A rectangle is tested as the box's own HITTEST tests it: for containment.
  if (dynamic_cast<cls_DrawRect*>(pPoint.obj())) return hBox()->HITTEST(pPoint);
  return hBox()->HITTEST(Variant(pointArg(pPoint)));
}

bool cls_DrawControl::EVENTHANDLER(Call, enm_UIMouseEvent pEvent, int32_t pKey, int32_t pModifier,
                                   const Variant& pPoint, const Variant& pdata, Ref<cls_DrawControl> pParent) {
  const Ref<cls_DrawPoint> point = pointArg(pPoint);
  const Variant at(point);
  bool route = true, result = false;
  const double x = point->X(), y = point->Y();
  const int32_t relY = whole(y - hBox()->Y());

  switch (pEvent) {
    case E::ID_UIMouseEvent_Down:
      if (!HITTEST(at)) return false;
      hSetFocus(pParent);
      active_ = true;
      lastX_ = whole(x);
      lastY_ = whole(y);
      PRESSED(true);
      if (sort_ == enm_UIControl::ID_UIControl_Window && relY <= kTitleStrip) moving_ = true;
      result = true;
      break;
    case E::ID_UIMouseEvent_Up:
      moving_ = false;
      if (!pressed_ && !active_ && !HITTEST(at)) return false;
      active_ = false;
      PRESSED(false);
      break;  // still False: a release always goes on to the children
    case E::ID_UIMouseEvent_In:
      route = false;
      if (!HITTEST(at)) return false;
      HOVER(true);
      break;
    case E::ID_UIMouseEvent_Out:
      route = false;
      HOVER(false);
      break;
    case E::ID_UIMouseEvent_Move:
      if (moving_) {
        const int32_t dx = whole(x - lastX_), dy = whole(y - lastY_);
        lastX_ = whole(x);
        lastY_ = whole(y);
        hReRender();  // where the window was
        hBox()->MOVEBY(static_cast<float>(dx), static_cast<float>(dy));
        hReRender();  // and where it is now
        route = false;
      } else {
        const bool hit = HITTEST(at);
        if (hit && !hover_)
          EVENTHANDLER(E::ID_UIMouseEvent_In, pKey, pModifier, at, pdata, pParent);
        else if (!hit && hover_)
          EVENTHANDLER(E::ID_UIMouseEvent_Out, pKey, pModifier, at, pdata, pParent);
      }
      result = true;
      break;
    default:  // Hold, and anything else: no change of state
      break;
  }

  MOUSE.raise(pEvent, pKey, pModifier, point);
  if (children_.empty() || !route) return result;
  const Descent descent(dispatching_);

  // The children's point: shifted by the child origin exactly as drawing shifts the projection.
  // The point goes to the device under the projection as it stands (the parents' shifts are on
  // it while they dispatch) and comes back under the shifted one.
  const Ref<cls_DrawPoint> origin = hChildOrigin();
  Variant childPoint = at;
  const Ref<cls_DrawGraphics> surface = surface_;
  if (surface) {
    const Ref<Object> onDevice = surface->REPROJECT(at);
    surface->OFFSET(Variant(origin), 1);
    childPoint = Variant(surface->PROJECT(Variant(onDevice)));
  }
  const Ref<cls_DrawControl> self(this);
  // By position, read afresh each time: a child taking the focus may bring itself to the front.
  for (size_t i = 0; i < children_.size(); ++i) {
    const Ref<cls_DrawControl> child = children_[i];
    if (child && child->EVENTHANDLER(pEvent, pKey, pModifier, childPoint, pdata, self)) break;
  }
  if (surface) surface->OFFSET(Variant(origin), -1);
  return result;
}

void cls_DrawControl::hSetFocus(const Ref<cls_DrawControl>& pParent) {
  trap("hSetFocus", [&] {
    if (!behaviour_[static_cast<size_t>(enm_UIControlBehaviour::ID_UIControlBehaviour_CanFocus)] || focus_) return;
    if (!pParent) {
      FOCUS(true);
      return;
    }
    // Exclusive among the siblings; other branches of the tree keep theirs.
    for (int32_t i = 1; i <= pParent->CHILDREN(); ++i) {
      const Ref<cls_DrawControl> sibling = pParent->CHILD(Variant(i));
      if (sibling) sibling->FOCUS(sibling.get() == this);
    }
    if (behaviour_[static_cast<size_t>(enm_UIControlBehaviour::ID_UIControlBehaviour_FocusToFront)])
      pParent->CHILDZORDER(Variant(Ref<cls_DrawControl>(this)), 1);
  });
}

}  // namespace tessel
