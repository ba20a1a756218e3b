// The colour: a 32-bit ARGB value with 8 bits per channel, plus lazily built caches of what
// drawing code asks of a colour on every paint (derived colours, its brightness, and the places
// for its solid brush and its pens). Any change of the channels empties the caches.
//
// Rules, written once:
// - A new colour is opaque black and not protected.
// - Numeric inputs are clamped, never rejected; a protected colour ignores every write silently.
//   Protection is one-way.
// - Derivations (CLONE, BRIGHTER, MODIFYR, …) return new colours; setters return the colour itself.
// - Colours are objects of the model: create them with make<cls_DrawColor>() or through the
//   colour factory, never on the stack (setters hand out references to themselves).
#pragma once

#include <tessel/core/TypeLib.h>
#include <tessel/color/cls_DrawColor.members.h>
#include <tessel/core/mdl_Basalt.h>

#include <array>
#include <cstdint>
#include <string>

namespace tessel {

class cls_DrawColor;

// The colour information window that INFO opens; the host layer fills it in when the library
// loads. Without it (no windowing host) INFO does nothing.
inline void (*ColorInfoWindow)(cls_DrawColor& colour) = nullptr;

class cls_DrawColor final : public ObjectOf<cls_DrawColor> {
  TESSEL_MEMBERS(cls_DrawColor)

 public:
  cls_DrawColor();

 private:
  enum Channel : size_t { kBlue = 0, kGreen = 1, kRed = 2, kAlpha = 3 };
  static constexpr size_t kDerivedSlots = 6;  // 0: CONTRAST, 1..5: CONTRASTCOLOR
  static constexpr size_t kPenWidths = 10;
  static constexpr size_t kPenStyles = 6;

  Ref<cls_DrawColor> me() { return Ref<cls_DrawColor>(this); }
  void setChannel(Channel c, uint8_t v);
  Ref<cls_DrawColor> modified(Channel c, int32_t v) const;
  // Empties every cache after the channels changed.
  void hChange();

  // In memory order blue, green, red, alpha: read as a little-endian word it is the ARGB value.
  std::array<uint8_t, 4> ch_{0, 0, 0, 255};
  bool protected_ = false;
  // The solid brush and the pens by (width - 1, dash style) that this colour hands out. The
  // resources layer makes them (cls_DrawColor_Resources.cpp); the colour only knows them as
  // objects, and drops them when it changes. They hold no reference back to the colour.
  mutable Ref<Object> brush_;
  mutable std::array<std::array<Ref<Object>, kPenStyles>, kPenWidths> pens_;
  std::array<Ref<cls_DrawColor>, kDerivedSlots> derived_;
  // Brightness of the background each CONTRASTCOLOR slot was made for; -1 marks a free slot.
  std::array<int32_t, kDerivedSlots> bgKeys_;
  int32_t brightness_ = -1;  // -1: not computed since the last change
};

}  // namespace tessel
