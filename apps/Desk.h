// The desktop that the showcase pictures and the desktop program show: a desktop with two
// windows of buttons with icons and a panel, built through the object model as an application
// builds one.
#pragma once

#include <tessel/tessel.h>

namespace showcase {

using tessel::Ref;
using tessel::Variant;
using K = tessel::enm_UIControl;

inline Ref<tessel::cls_DrawControl> node(K sort, const char16_t* text, float x, float y, float w, float h) {
  auto n = tessel::make<tessel::cls_DrawControl>();
  n->SORT(sort);
  n->TEXT(text);
  n->BOX()->MOVE(x, y, w, h);
  return n;
}

// One of the root's icons drawn on a transparent image of `side` pixels, for a node's ICON.
inline Ref<tessel::cls_DrawImage> icon(const char16_t* name, const char16_t* colour, int32_t side = 20) {
  Ref<tessel::cls_DrawTool> draw = tessel::mdl_Global::DRAW();
  auto image = draw->Image()->CREATE(side, side, Variant(u"#FFFFFF00"));
  auto g = image->GRAPHICS();
  draw->ICON(g, name, Variant(draw->RECT()->RECT(Variant(0), 0, side, side)), Variant(colour));
  return image;
}

// The icon at its own size beside the caption.
inline Ref<tessel::cls_DrawControl> withIcon(Ref<tessel::cls_DrawControl> n, const char16_t* name,
                                             const char16_t* colour, int32_t side = 20) {
  n->ICON(icon(name, colour, side));
  n->ICONSIZE(side);
  return n;
}

// The desktop at (x, y), w by h, with the "Files" and "Viewer" windows.
inline Ref<tessel::cls_DrawControl> scene(float x = 20, float y = 44, float w = 690, float h = 330) {
  using tessel::enm_TextAlign;
  using tessel::enm_UIIconPosition;
  auto desk = node(K::ID_UIControl_Desktop, u"", x, y, w, h);
  auto files = desk->CHILDADD(node(K::ID_UIControl_Window, u"Files", 24, 20, 300, 250));
  files->TEXTALIGN(enm_TextAlign::ID_TextAlign_LeftMiddle);
  files->CHILDADD(withIcon(node(K::ID_UIControl_Button, u"Open", 14, 14, 122, 34), u"arrowup", u"#2F6690"));
  files->CHILDADD(withIcon(node(K::ID_UIControl_Button, u"Search", 146, 14, 122, 34), u"search", u"#2F6690"));
  files->CHILDADD(node(K::ID_UIControl_Button, u"Held down", 14, 58, 122, 34));
  files->CHILDADD(node(K::ID_UIControl_Button, u"Disabled", 146, 58, 122, 34))->ENABLED(false);
  auto panel = files->CHILDADD(node(K::ID_UIControl_Container, u"Options", 14, 104, 254, 100));
  panel->TEXTALIGN(enm_TextAlign::ID_TextAlign_LeftTop);
  panel->CHILDADD(withIcon(node(K::ID_UIControl_Button, u"Keep", 12, 30, 110, 30), u"check", u"#3C8D4F", 18));
  panel->CHILDADD(withIcon(node(K::ID_UIControl_Button, u"Drop", 130, 30, 110, 30), u"cross", u"#BC4B51", 18));

  auto viewer = desk->CHILDADD(node(K::ID_UIControl_Window, u"Viewer", 200, 90, 300, 210));
  withIcon(viewer, u"menu", u"#FFFFFF", 16);
  viewer->TEXTALIGN(enm_TextAlign::ID_TextAlign_LeftMiddle);
  auto about = viewer->CHILDADD(
      withIcon(node(K::ID_UIControl_Button, u"About", 14, 14, 110, 96), u"info", u"#2F6690", 56));
  about->ICONPOSITION(enm_UIIconPosition::ID_UIIconPosition_Top);
  viewer->CHILDADD(withIcon(node(K::ID_UIControl_Button, u"Close", 150, 130, 120, 34), u"close", u"#BC4B51"));
  return desk;
}

}  // namespace showcase
