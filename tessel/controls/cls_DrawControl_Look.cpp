// How a control node looks (cls_DrawControl.members): the body of each kind, its states, and
// the caption and icon laid out inside it.
//
// Every look starts from two colours, the highlight system colour and white; the rest is
// derived from them once per thread. Bodies are filled with gradients running down the box
// (90 degrees), rounded outlines are four quarter arcs in the box's corner squares. Everything
// is drawn inside the box, so that a repaint of the box covers all of it.
//
//   button     white to grey; pressed grey to dark with white text; a blue rim and inner glow
//              under the pointer, a two-unit blue rim with the focus
//   container  a light grey panel with a thin rim
//   desktop    dark grey, RGB(50, 50, 50) at the top
//   window     a frame with a 30-unit title strip, blue with the focus and grey without, around
//              a light client area; the caption and icon sit in the strip
//   disabled   a white veil over the body, grey text and a faded icon
//
// The paths and brushes a node needs are kept with the node and made again only when its box
// or kind changes; colours, pens, formats and the faded icon's attributes are shared.
#include <tessel/controls/cls_DrawControl.h>

#include <tessel/color/cls_DrawColor.h>
#include <tessel/color/cls_DrawToolColor.h>
#include <tessel/core/mdl_GDIPlus.h>
#include <tessel/geometry/cls_DrawRect.h>
#include <tessel/images/cls_DrawImage.h>
#include <tessel/resources/cls_DrawBrush.h>
#include <tessel/resources/cls_DrawFont.h>
#include <tessel/resources/cls_DrawImageAttributes.h>
#include <tessel/resources/cls_DrawPath.h>
#include <tessel/resources/cls_DrawPen.h>
#include <tessel/resources/cls_DrawTextFormat.h>
#include <tessel/resources/cls_DrawToolBrush.h>
#include <tessel/resources/cls_DrawToolImageAttributes.h>
#include <tessel/resources/cls_DrawToolPen.h>
#include <tessel/resources/cls_DrawToolTextFormat.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace tessel {

namespace gp = mdl_GDIPlus;
using K = enm_UIControl;
using Corner = enm_UIRectCorner;

namespace {

constexpr float kCorner = 10;       // the side of the corner squares of every rounded body
constexpr float kTitleStrip = 30;   // a window's title strip
constexpr float kFrame = 5;         // a window's frame beside and below the client area
constexpr int32_t kHighlight = 13;  // the system colour every look starts from, with white

struct Area {
  float x, y, w, h;
};

Ref<cls_DrawRect> rectOf(Area a) {
  Ref<cls_DrawRect> r = make<cls_DrawRect>();
  r->MOVE(a.x, a.y, a.w, a.h);
  return r;
}

Area inset(Area a, float by) { return {a.x + by, a.y + by, a.w - 2 * by, a.h - 2 * by}; }

// The rounded outline of an area: a quarter arc in each corner square, clockwise from the top
// left. The squares shrink for an area smaller than they are.
Ref<cls_DrawPath> rounded(Area a, float corner) {
  const Ref<cls_DrawRect> r = rectOf(a);
  const float c = std::min({corner, a.w, a.h});
  Ref<cls_DrawPath> p = make<cls_DrawPath>();
  p->ARC(Variant(r->CORNERRECT(Corner::ID_UIRectCorner_XLeftYTop, c)), 180, 90);
  p->ARC(Variant(r->CORNERRECT(Corner::ID_UIRectCorner_XRightYTop, c)), 270, 90);
  p->ARC(Variant(r->CORNERRECT(Corner::ID_UIRectCorner_XRightYBottom, c)), 0, 90);
  p->ARC(Variant(r->CORNERRECT(Corner::ID_UIRectCorner_XLeftYBottom, c)), 90, 90);
  p->CLOSEFIGURE();
  return p;
}

// A window's title strip: rounded at the top, straight below.
Ref<cls_DrawPath> topRounded(Area a, float corner) {
  const Ref<cls_DrawRect> r = rectOf(a);
  const float c = std::min({corner, a.w, a.h});
  Ref<cls_DrawPath> p = make<cls_DrawPath>();
  p->ARC(Variant(r->CORNERRECT(Corner::ID_UIRectCorner_XLeftYTop, c)), 180, 90);
  p->ARC(Variant(r->CORNERRECT(Corner::ID_UIRectCorner_XRightYTop, c)), 270, 90);
  p->LINE(Variant(a.x + a.w), Variant(a.y + a.h), Variant(a.x), Variant(a.y + a.h));
  p->CLOSEFIGURE();
  return p;
}

Ref<cls_DrawPath> plain(Area a) { return make<cls_DrawPath>()->RECT(Variant(rectOf(a)), 0); }

Ref<cls_DrawBrush> gradient(Area a, const Ref<cls_DrawColor>& top, const Ref<cls_DrawColor>& bottom) {
  return rootFactory<cls_DrawToolBrush>()->GRADIENT(Variant(rectOf(a)), Variant(top), Variant(bottom), 90);
}

// The colours, pens and formats of every look, made once per thread.
struct Palette {
  Ref<cls_DrawColor> highlight, white;
  Ref<cls_DrawColor> buttonTop, buttonBottom, pressedTop, pressedBottom;
  Ref<cls_DrawColor> panelTop, panelBottom, panelPressedTop, panelPressedBottom;
  Ref<cls_DrawColor> desktopTop, desktopBottom;
  Ref<cls_DrawColor> titleTop, titleBottom, idleTitleTop, idleTitleBottom;
  Ref<cls_DrawColor> frameTop, frameBottom, idleFrameTop, idleFrameBottom;
  Ref<cls_DrawColor> clientTop, clientBottom, tintTop, tintBottom, veilTop, veilBottom;
  Ref<cls_DrawColor> ink, inkOnDark, inkIdleTitle, inkDisabled, inkDesktop;
  Ref<cls_DrawPen> rim, rimPressed, rimDisabled, rimPanel, rimHover, glow, focusRing, frameRim, idleFrameRim,
      clientRim, stripLight;
  Ref<cls_DrawPen> noPen;
  std::array<Ref<cls_DrawTextFormat>, 12> formats;
  Ref<cls_DrawImageAttributes> faded;

  Palette() {
    auto colours = rootFactory<cls_DrawToolColor>();
    highlight = make<cls_DrawColor>()->SYSCOLOR(static_cast<enm_SysColor>(kHighlight));
    white = colours->RGB(255, 255, 255);
    // A button's gradients, derived in this order from the one white.
    buttonTop = white->BRIGHTER(100);
    buttonBottom = white->DARKER(100);
    pressedTop = white->DARKER(100);
    pressedBottom = white->DARKER(200);

    panelTop = white->DARKER(8);
    panelBottom = white->DARKER(36);
    panelPressedTop = white->DARKER(52);
    panelPressedBottom = white->DARKER(20);
    desktopTop = colours->RGB(50, 50, 50);
    desktopBottom = desktopTop->DARKER(22);
    titleTop = highlight->BRIGHTER(78);
    titleBottom = highlight->BRIGHTER(8);
    idleTitleTop = white->DARKER(38);
    idleTitleBottom = white->DARKER(82);
    frameTop = highlight->BRIGHTER(20);
    frameBottom = highlight;
    idleFrameTop = white->DARKER(105);
    idleFrameBottom = white->DARKER(125);
    clientTop = white;
    clientBottom = white->DARKER(18);
    tintTop = highlight->BRIGHTER(170)->MODIFYA(110);
    tintBottom = highlight->BRIGHTER(170)->MODIFYA(25);
    veilTop = white->MODIFYA(170);
    veilBottom = white->MODIFYA(120);

    ink = white->DARKER(235);
    inkOnDark = white;
    inkIdleTitle = white->DARKER(170);
    inkDisabled = white->DARKER(112);
    inkDesktop = white->DARKER(40);

    rim = white->DARKER(150)->PEN(1);
    rimPressed = white->DARKER(210)->PEN(1);
    rimDisabled = white->DARKER(82)->PEN(1);
    rimPanel = white->DARKER(95)->PEN(1);
    rimHover = highlight->BRIGHTER(40)->PEN(1);
    glow = highlight->MIX(165, Variant(white))->PEN(1);
    focusRing = highlight->PEN(2);
    frameRim = highlight->DARKER(6)->PEN(1);
    idleFrameRim = white->DARKER(160)->PEN(1);
    clientRim = white->DARKER(70)->PEN(1);
    stripLight = white->MODIFYA(70)->PEN(1);

    noPen = rootFactory<cls_DrawToolPen>()->NONE();
    auto textFormats = rootFactory<cls_DrawToolTextFormat>();
    for (size_t i = 0; i < formats.size(); ++i) formats[i] = textFormats->ALIGN(static_cast<enm_TextAlign>(i));
    faded = rootFactory<cls_DrawToolImageAttributes>()->ALPHA(0.45f);
  }

  const Ref<cls_DrawTextFormat>& format(int32_t align) const {
    return formats[static_cast<size_t>(std::clamp(align, 0, static_cast<int32_t>(formats.size()) - 1))];
  }
};

Palette& palette() {
  thread_local Palette p;
  return p;
}

}  // namespace

// What a node keeps between renders: made for one box and one kind, dropped when either changes.
struct cls_DrawControl::Look {
  Area box{0, 0, -1, -1};
  K sort{};
  Ref<cls_DrawPath> body, ring, strip, stripLight, client;
  std::array<Ref<cls_DrawPath>, 2> glow;              // without and with the focus ring
  std::array<Ref<cls_DrawBrush>, 2> fill, stripFill;  // by state: at rest, pressed or focused
  Ref<cls_DrawBrush> clientFill, tint, veil;

  template <class T, class Make>
  static const Ref<T>& kept(Ref<T>& slot, Make&& make) {
    if (!slot) slot = make();
    return slot;
  }
};

void cls_DrawControl::LookDeleter::operator()(Look* look) const noexcept { delete look; }

namespace {

// The caption and the icon inside `r`: the icon beside the caption as ICONPOSITION says, the two
// as one group placed by the alignment; the caption alone, or the icon alone, when the other is
// missing. Without ICONSIZE an icon beside the caption is as tall as the area, one above or below
// it takes what the caption leaves.
struct Content {
  std::u16string text;
  Variant font;  // missing: the surface's
  int32_t align;
  Ref<cls_DrawImage> icon;
  float iconSize, gap;
  enm_UIIconPosition position;
  Ref<cls_DrawColor> ink;
  bool faded;

  void draw(cls_DrawGraphics& g, Area r) const {
    if (r.w <= 0 || r.h <= 0) return;
    const int32_t across = align % 4 == 3 ? 0 : align % 4, down = align / 4;  // block text sets as left
    const bool hasIcon = icon && icon->HANDLE() != 0;
    if (!hasIcon) {
      caption(g, r, align);
      return;
    }
    const bool beside = position == enm_UIIconPosition::ID_UIIconPosition_Left ||
                        position == enm_UIIconPosition::ID_UIIconPosition_Right;
    const bool hasText = !text.empty();
    const float space = hasText ? gap : 0;
    auto place = [](float start, float room, float size, int32_t where) {
      return where == 1 ? start + (room - size) / 2 : where == 2 ? start + room - size : start;
    };
    if (beside) {
      const float s = std::min(iconSize > 0 ? iconSize : r.h, r.w);
      const float tw = hasText ? measured(g, r).w : 0;
      const float group = std::min(r.w, s + space + tw);
      const float gx = place(r.x, r.w, group, across);
      // Vertically the icon follows the alignment's row: 0 middle, 1 top, 2 bottom.
      const float iy = place(r.y, r.h, s, down == 0 ? 1 : down == 1 ? 0 : 2);
      const bool left = position == enm_UIIconPosition::ID_UIIconPosition_Left;
      const float ix = left ? gx : gx + group - s;
      image(g, {ix, iy, s, s});
      // The caption takes the rest of the area on its side, set against the icon.
      if (left)
        caption(g, {ix + s + space, r.y, r.x + r.w - (ix + s + space), r.h}, down * 4);
      else
        caption(g, {r.x, r.y, ix - space - r.x, r.h}, down * 4 + 2);
      return;
    }
    const float th = hasText ? std::ceil(measured(g, r).h) : 0;
    const float s = iconSize > 0 ? iconSize : std::max(0.0f, std::min(r.w, r.h - th - space));
    const float group = std::min(r.h, s + space + th);
    const float gy = place(r.y, r.h, group, down == 0 ? 1 : down == 1 ? 0 : 2);
    const float ix = place(r.x, r.w, s, across);
    if (position == enm_UIIconPosition::ID_UIIconPosition_Top) {
      image(g, {ix, gy, s, s});
      caption(g, {r.x, gy + s + space, r.w, r.y + r.h - (gy + s + space)}, 4 + across);
    } else {
      caption(g, {r.x, gy, r.w, th}, 4 + across);
      image(g, {ix, gy + th + space, s, s});
    }
  }

 private:
  Area measured(cls_DrawGraphics& g, Area r) const {
    const Ref<cls_DrawRect> m = g.TEXTMEASURE(text, Variant(rectOf(r)), font, Variant::missing(),
                                              Variant(palette().format(align)));
    return m ? Area{m->X(), m->Y(), m->W(), m->H()} : Area{0, 0, 0, 0};
  }
  void caption(cls_DrawGraphics& g, Area r, int32_t how) const {
    if (text.empty() || r.w <= 0 || r.h <= 0) return;
    g.TEXT(text, Variant(rectOf(r)), font, Variant(ink->BRUSH()), Variant::missing(),
           Variant(palette().format(how)));
  }
  void image(cls_DrawGraphics& g, Area r) const {
    if (r.w <= 0 || r.h <= 0) return;
    g.IMAGEFIT(Variant(icon), Variant(rectOf(r)), true, enm_TextAlign::ID_TextAlign_CenterMiddle,
               faded ? Variant(palette().faded) : Variant::missing());
  }
};

// Keeps what is drawn while it lives inside an area, on top of the clip there is, and puts that
// clip back: a caption too long for its node wraps, and stays inside the node's box all the same.
class ClipTo {
 public:
  ClipTo(gp::GpGraphics* g, Area a) : g_(g) {
    saved_ = gp::Succeeded(gp::GdipSaveGraphics(g_, &state_));
    if (saved_) gp::GdipSetClipRect(g_, a.x, a.y, a.w, a.h, gp::CombineModeIntersect);
  }
  ~ClipTo() {
    if (saved_) gp::GdipRestoreGraphics(g_, state_);
  }
  ClipTo(const ClipTo&) = delete;
  ClipTo& operator=(const ClipTo&) = delete;

 private:
  gp::GpGraphics* g_;
  uint32_t state_ = 0;
  bool saved_ = false;
};

// Fills and outlines through the surface, so that its projection and clip apply.
void fill(cls_DrawGraphics& g, const Ref<cls_DrawPath>& path, const Ref<cls_DrawBrush>& brush) {
  g.PATH(Variant(path), Variant(palette().noPen), Variant(brush));
}
void outline(cls_DrawGraphics& g, const Ref<cls_DrawPath>& path, const Ref<cls_DrawPen>& pen) {
  g.PATH(Variant(path), Variant(pen), Variant(rootFactory<cls_DrawToolBrush>()->NONE()));
}

}  // namespace

void cls_DrawControl::hPaint(cls_DrawGraphics& g) {
  const Area box{hBox()->X(), hBox()->Y(), hBox()->W(), hBox()->H()};
  const bool known = sort_ == K::ID_UIControl_Button || sort_ == K::ID_UIControl_Container ||
                     sort_ == K::ID_UIControl_Desktop || sort_ == K::ID_UIControl_Window;
  if (!known || box.w <= 0 || box.h <= 0) return;

  if (!look_) look_.reset(new Look);
  Look& look = *look_;
  if (look.sort != sort_ || look.box.x != box.x || look.box.y != box.y || look.box.w != box.w ||
      look.box.h != box.h) {
    look = Look{};
    look.box = box;
    look.sort = sort_;
  }
  const Palette& p = palette();
  auto has = [&](enm_UIControlBehaviour b) { return behaviour_[static_cast<size_t>(b)]; };
  const bool lit = hover_ && has(enm_UIControlBehaviour::ID_UIControlBehaviour_HoverEffect) && enabled_;

  // Curves are drawn smooth; the surface's own setting comes back afterwards.
  gp::GpGraphics* native = g.graphics();
  int smoothing = 0;
  gp::GdipGetSmoothingMode(native, &smoothing);
  gp::GdipSetSmoothingMode(native, gp::SmoothingModeAntiAlias);
  struct Restore {
    gp::GpGraphics* g;
    int mode;
    ~Restore() { gp::GdipSetSmoothingMode(g, mode); }
  } restore{native, smoothing};

  Content content{text_,
                  textFont_ ? Variant(textFont_) : Variant::missing(),
                  static_cast<int32_t>(textAlign_),
                  icon_,
                  static_cast<float>(iconSize_),
                  static_cast<float>(padding_),
                  iconPosition_,
                  p.ink,
                  !enabled_};
  const auto pad = static_cast<float>(padding_);
  // A filled path covers half a unit beyond its outline on the platform, so a shape through the
  // centres of the box's edge pixels fills exactly the box, and a one-unit line along it covers
  // exactly those edge pixels. Gradients run over the box itself.
  const Area shape{box.x, box.y, box.w - 1, box.h - 1};
  const auto body = [&] { return Look::kept(look.body, [&] { return rounded(shape, kCorner); }); };
  const auto veil = [&] { return Look::kept(look.veil, [&] { return gradient(box, p.veilTop, p.veilBottom); }); };

  switch (sort_) {
    case K::ID_UIControl_Desktop: {
      fill(g, Look::kept(look.body, [&] { return plain(shape); }),
           Look::kept(look.fill[0], [&] { return gradient(box, p.desktopTop, p.desktopBottom); }));
      content.ink = enabled_ ? p.inkDesktop : p.inkDisabled;
      const ClipTo inside(native, box);
      content.draw(g, inset(box, pad));
      break;
    }
    case K::ID_UIControl_Window: {
      const bool focused = focus_;
      const Area strip{box.x, box.y, box.w, std::min(kTitleStrip, box.h)};
      const Area client{box.x + kFrame, box.y + kTitleStrip, box.w - 2 * kFrame, box.h - kTitleStrip - kFrame};
      fill(g, body(), Look::kept(look.fill[focused], [&] {
             return focused ? gradient(box, p.frameTop, p.frameBottom) : gradient(box, p.idleFrameTop, p.idleFrameBottom);
           }));
      fill(g, Look::kept(look.strip, [&] { return topRounded({strip.x, strip.y, strip.w - 1, strip.h - 1}, kCorner); }),
           Look::kept(look.stripFill[focused], [&] {
             return focused ? gradient(strip, p.titleTop, p.titleBottom)
                            : gradient(strip, p.idleTitleTop, p.idleTitleBottom);
           }));
      if (client.w > 0 && client.h > 0) {
        const Area inner{client.x, client.y, client.w - 1, client.h - 1};
        fill(g, Look::kept(look.client, [&] { return plain(inner); }),
             Look::kept(look.clientFill, [&] { return gradient(client, p.clientTop, p.clientBottom); }));
        outline(g, Look::kept(look.ring, [&] { return plain(inset(inner, -1)); }), p.clientRim);
      }
      // A light line just under the strip's top edge, and the frame's rim.
      outline(g, Look::kept(look.stripLight, [&] {
                return make<cls_DrawPath>()->LINE(Variant(shape.x + 3), Variant(shape.y + 1),
                                                  Variant(shape.x + shape.w - 3), Variant(shape.y + 1));
              }),
              p.stripLight);
      outline(g, body(), focused ? p.frameRim : p.idleFrameRim);
      if (!enabled_) fill(g, body(), veil());
      content.ink = !enabled_ ? p.inkDisabled : focused ? p.inkOnDark : p.inkIdleTitle;
      const Area title{box.x, box.y, box.w, std::min(kTitleStrip, box.h)};
      const ClipTo inside(native, title);
      content.draw(g, {title.x + pad, title.y + pad, title.w - 2 * pad, title.h - 2 * pad});
      break;
    }
    default: {  // a button, and a container with a button's states when its behaviours allow them
      const bool button = sort_ == K::ID_UIControl_Button;
      const bool down = pressed_;
      fill(g, body(), Look::kept(look.fill[down], [&] {
             if (button) return down ? gradient(box, p.pressedTop, p.pressedBottom) : gradient(box, p.buttonTop, p.buttonBottom);
             return down ? gradient(box, p.panelPressedTop, p.panelPressedBottom) : gradient(box, p.panelTop, p.panelBottom);
           }));
      if (lit && !down) fill(g, body(), Look::kept(look.tint, [&] { return gradient(box, p.tintTop, p.tintBottom); }));
      if (!enabled_) fill(g, body(), veil());
      if (focus_ && enabled_) {
        outline(g, Look::kept(look.ring, [&] { return rounded(inset(shape, 0.5f), kCorner); }), p.focusRing);
      } else {
        const Ref<cls_DrawPen>& pen = !enabled_ ? p.rimDisabled
                                      : lit     ? p.rimHover
                                      : down    ? p.rimPressed
                                      : button  ? p.rim
                                                : p.rimPanel;
        outline(g, body(), pen);
      }
      if (lit) outline(g, Look::kept(look.glow[focus_], [&] { return rounded(inset(shape, focus_ ? 2.0f : 1.0f), kCorner); }), p.glow);
      content.ink = !enabled_ ? p.inkDisabled : (down && button) ? p.inkOnDark : p.ink;
      // Pressed, the content sinks by a unit.
      const float sink = down ? 1.0f : 0.0f;
      const ClipTo inside(native, box);
      content.draw(g, {box.x + pad + sink, box.y + pad + sink, box.w - 2 * pad, box.h - 2 * pad});
      break;
    }
  }
}

}  // namespace tessel
