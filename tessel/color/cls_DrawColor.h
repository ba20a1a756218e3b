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
#include <tessel/core/mdl_Basalt.h>

#include <array>
#include <cstdint>
#include <string>

namespace tessel {

class cls_DrawColor final : public ObjectOf<cls_DrawColor> {
 public:
  static constexpr std::string_view ClassName = "cls_DrawColor";
  static const ClassInfo& typeInfo();

  cls_DrawColor();

  // Takes red, green, blue and alpha of another colour (one cache flush).
  Ref<cls_DrawColor> COPY(Ref<cls_DrawColor> pOther);

  uint8_t R() const;
  void R(uint8_t v);
  uint8_t G() const;
  void G(uint8_t v);
  uint8_t B() const;
  void B(uint8_t v);
  uint8_t A() const;
  void A(uint8_t v);

  // Red, green and blue from the thread's random sequence; alpha is kept.
  Ref<cls_DrawColor> RANDOM();
  // Channels clamped to 0..255; pAlpha -1 keeps the current alpha.
  Ref<cls_DrawColor> RGB(int32_t pR, int32_t pG, int32_t pB, int32_t pAlpha = -1);

  // The packed ARGB word (alpha in the high byte; negative when alpha >= 128). Assigning it
  // always gives an opaque colour.
  int32_t ATOM() const;
  void ATOM(int32_t v);

  // Derivations (cls_DrawColor_Derive.cpp).
  Ref<cls_DrawColor> BRIGHTER(int32_t pOffset);
  Ref<cls_DrawColor> DARKER(int32_t pOffset);
  // Perceived brightness 0..255: red 0.3, green 0.5, blue 0.2, ties to even.
  int32_t BRIGHTNESS();
  // Black or white, whichever reads on this colour; the same object until the colour changes.
  Ref<cls_DrawColor> CONTRAST();
  Ref<cls_DrawColor> SYSCOLOR(enm_SysColor pSysColor);
  // pMix/255 of the way toward pOther (0 this colour, 255 the other); alpha is never mixed.
  Ref<cls_DrawColor> MIX(int32_t pMix, const Variant& pOther, bool pSetSelf = false);
  // Sets the colour from "#RRGGBB[AA]", a colour name, a host integer or any object with R, G, B, A.
  Ref<cls_DrawColor> SOLID(const Variant& pCreate);

  // The host's integer colour, red in the low byte, no alpha.
  int32_t BASIC() const;
  void BASIC(int32_t v);

  Ref<cls_DrawColor> MODIFYR(int32_t pNew) const;
  Ref<cls_DrawColor> MODIFYG(int32_t pNew) const;
  Ref<cls_DrawColor> MODIFYB(int32_t pNew) const;
  Ref<cls_DrawColor> MODIFYA(int32_t pNew) const;

  // A variant of this colour that stays readable on the given background (anything the
  // colour factory's AUTO accepts); cached for up to five background brightnesses.
  Ref<cls_DrawColor> CONTRASTCOLOR(const Variant& pBackgroundColor);

  Ref<cls_DrawColor> CLONE() const;
  // "#RRGGBB", upper case, without alpha.
  std::u16string HTML() const;

  bool PROTECTED() const;
  void PROTECTED(bool v);

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
  // The solid brush and the pens by (width - 1, dash style) that this colour hands out.
  Ref<Object> brush_;
  std::array<std::array<Ref<Object>, kPenStyles>, kPenWidths> pens_;
  std::array<Ref<cls_DrawColor>, kDerivedSlots> derived_;
  // Brightness of the background each CONTRASTCOLOR slot was made for; -1 marks a free slot.
  std::array<int32_t, kDerivedSlots> bgKeys_;
  int32_t brightness_ = -1;  // -1: not computed since the last change
};

}  // namespace tessel
