// Drawing the control tree (cls_DrawControl.members): RENDER draws a node and its children into
// an area of a surface, RENDERWINDOW draws the surface's pending area and presents it.
//
// A render rectangle is in the coordinates of the node's parent; each level moves it into its
// children's coordinates and shifts the surface's projection the same way, and puts both back
// afterwards. A node whose box does not overlap the rectangle is skipped with its whole subtree,
// so a render clipped to an area gives there the pixels of a full render. A failure between the
// two shifts leaves the projection shifted and the rectangle moved (RESETPROJECTION repairs the
// surface); a failure under RENDERWINDOW leaves the clip, and the area pending.
//
// Both hold the surface while they draw: on an image, whose surface otherwise opens a new
// native graphics on every call, the shifts and the clip last from the first call to the last.
#include <tessel/controls/cls_DrawControl.h>

#include <tessel/geometry/cls_DrawPoint.h>
#include <tessel/geometry/cls_DrawRect.h>
#include <tessel/graphics/SurfaceArgs.h>

namespace tessel {

namespace {

// The render rectangle as a rectangle of the toolkit: the caller's own, which is moved and put
// back, or one made of any other value (or object with X, Y, W, H).
Ref<cls_DrawRect> renderRect(const Variant& v) {
  if (auto* rect = dynamic_cast<cls_DrawRect*>(v.obj())) return Ref<cls_DrawRect>(rect);
  Ref<Object> made = surface::rectArg(v);
  if (auto* rect = dynamic_cast<cls_DrawRect*>(made.get())) return Ref<cls_DrawRect>(rect);
  const surface::Box b = surface::boxOf(made.get());
  Ref<cls_DrawRect> rect = make<cls_DrawRect>();
  rect->MOVE(b.x, b.y, b.w, b.h);
  return rect;
}

}  // namespace

Ref<cls_DrawPoint> cls_DrawControl::hChildOrigin() const {
  Ref<cls_DrawPoint> origin = hBox()->CORNER(enm_UIRectCorner::ID_UIRectCorner_XLeftYTop);
  if (lazy_CHILDBOX_ && lazy_CHILDBOX_->W() != 0) origin->MOVEBY(lazy_CHILDBOX_->X(), lazy_CHILDBOX_->Y());
  return origin;
}

void cls_DrawControl::RENDER(Call, Ref<cls_DrawGraphics> pRender, const Variant& pRenderRect) {
  if (!pRender) raise(rt::ObjectNotSet);
  if (!pRender->READY()) return;
  const cls_DrawGraphics::Hold hold(*pRender);
  attach(pRender);

  Ref<cls_DrawRect> area;
  if (!pRenderRect.isMissing()) {
    area = renderRect(pRenderRect);
    if (!hBox()->INTERSECTS(area)) return;
  }

  hPaint(*pRender);
  // The client area of a window: inside the frame, below the title strip, on every render.
  if (sort_ == enm_UIControl::ID_UIControl_Window)
    CHILDBOX()->MOVE(5, 30, hBox()->W() - 10, hBox()->H() - 35);
  if (children_.empty()) return;
  const Descent descent(rendering_);

  const Ref<cls_DrawPoint> origin = hChildOrigin();
  const double ox = origin->X(), oy = origin->Y();
  float areaX = 0, areaY = 0;
  if (area) {
    areaX = area->X();
    areaY = area->Y();
    area->MOVEBY(static_cast<float>(-ox), static_cast<float>(-oy));
  }
  pRender->OFFSET(Variant(origin), 1);
  const Variant childArea = area ? Variant(area) : Variant::missing();
  // From the back to the front: position 1 is painted last and lies on top.
  for (size_t i = children_.size(); i-- > 0;) {
    const Ref<cls_DrawControl> child = children_[i];
    if (child) child->RENDER(pRender, childArea);
  }
  pRender->OFFSET(Variant(origin), -1);
  // Back where the caller had it, exactly: moving there and back in single precision could miss.
  if (area) area->MOVE(areaX, areaY, -1, -1);
}

void cls_DrawControl::RENDERWINDOW(Call, Ref<cls_DrawGraphics> pDevice) {
  if (!pDevice) raise(rt::ObjectNotSet);
  const Ref<cls_DrawRect> pending = pDevice->REDRAWAREA();
  if (pending->W() == 0) return;
  const cls_DrawGraphics::Hold hold(*pDevice);
  pDevice->CLIP(Variant(pending->CLONE()));
  RENDER(pDevice, Variant(pending));
  pDevice->CLIPRESET();
  pDevice->REFRESH();
  // Presented: nothing is pending any more (a rectangle's own CLEAR leaves it as it is).
  pending->MOVE(0, 0, 0, 0);
}

}  // namespace tessel
