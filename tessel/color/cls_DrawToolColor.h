// The colour factory (the root object's COLOR): makes colours from loose arguments and holds
// the shared, write-protected BLACK and WHITE. Every place that accepts a colour as a Variant
// turns it into a colour through AUTO.
#pragma once

#include <tessel/color/cls_DrawColor.h>
#include <tessel/core/TypeLib.h>

namespace tessel {

class cls_DrawToolColor final : public ObjectOf<cls_DrawToolColor> {
 public:
  static constexpr std::string_view ClassName = "cls_DrawToolColor";
  static const ClassInfo& typeInfo();

  cls_DrawToolColor();

  // A colour given as an object is returned as that very object; anything else makes a new
  // colour through SOLID ("#RRGGBB[AA]", a colour name, a host integer, an object with R, G, B, A).
  Ref<cls_DrawColor> AUTO(const Variant& pAny);
  // A new colour with channels clamped to 0..255; pAlpha -1 leaves it opaque.
  Ref<cls_DrawColor> RGB(int32_t pR, int32_t pG, int32_t pB, int32_t pAlpha = -1);

  // The shared protected colours. Replaceable by assignment; the instances themselves never change.
  Ref<cls_DrawColor> BLACK();
  void BLACK(Ref<cls_DrawColor> v);
  Ref<cls_DrawColor> WHITE();
  void WHITE(Ref<cls_DrawColor> v);

 private:
  Ref<cls_DrawColor> black_;
  Ref<cls_DrawColor> white_;
};

}  // namespace tessel
