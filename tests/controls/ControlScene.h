// Helpers for the control tree's tests: nodes made in one line, and a surface on a white image
// whose pixels can be read back.
#pragma once

#include <tessel/tessel.h>

#include <cstdint>
#include <string>

namespace tessel {

inline Ref<cls_DrawControl> control(enm_UIControl sort, const char16_t* id, float x, float y, float w, float h) {
  auto n = make<cls_DrawControl>();
  n->SORT(sort);
  n->ID(id);
  n->TEXT(u"");
  n->BOX()->MOVE(x, y, w, h);
  return n;
}

// A square button painted as one flat colour: no caption, a solid icon over the whole box.
inline Ref<cls_DrawControl> swatch(const char16_t* id, const char16_t* colour, float x, float y, float side) {
  auto n = control(enm_UIControl::ID_UIControl_Button, id, x, y, side, side);
  n->PADDING(0);
  n->ICON(mdl_Global::DRAW()->Image()->CREATE(8, 8, Variant(colour)));
  return n;
}

struct Scene {
  explicit Scene(int32_t w = 200, int32_t h = 150) {
    mdl_Global::DRAW()->INIT();
    image = mdl_Global::DRAW()->Image()->CREATE(w, h, Variant(u"#FFFFFF"));
    surface = make<cls_DrawGraphics>();
    surface->CONNECT(image);
  }
  // The pixel as 0xRRGGBB.
  uint32_t rgb(int32_t x, int32_t y) const { return static_cast<uint32_t>(image->PIXEL(x, y)) & 0xFFFFFFu; }
  bool same(const Scene& other) const {
    for (int32_t y = 0; y < static_cast<int32_t>(image->HEIGHT()); ++y)
      for (int32_t x = 0; x < static_cast<int32_t>(image->WIDTH()); ++x)
        if (rgb(x, y) != other.rgb(x, y)) return false;
    return true;
  }
  Ref<cls_DrawImage> image;
  Ref<cls_DrawGraphics> surface;
};

inline std::string info(const Ref<cls_DrawRect>& r) { return toUtf8(r->INFO()); }

}  // namespace tessel
