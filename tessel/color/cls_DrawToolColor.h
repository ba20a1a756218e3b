// The colour factory (the root object's COLOR): makes colours from loose arguments and holds
// the shared, write-protected BLACK and WHITE. Every place that accepts a colour as a Variant
// turns it into a colour through AUTO.
#pragma once

#include <tessel/color/cls_DrawColor.h>
#include <tessel/core/TypeLib.h>
#include <tessel/color/cls_DrawToolColor.members.h>

namespace tessel {

class cls_DrawToolColor final : public ObjectOf<cls_DrawToolColor> {
  TESSEL_MEMBERS(cls_DrawToolColor)

 public:
  cls_DrawToolColor();

 private:
  Ref<cls_DrawColor> black_;
  Ref<cls_DrawColor> white_;
};

// The packed ARGB word of a colour argument, as drawing code hands it to the platform: an object
// is read by name, so that anything with an ATOM serves; any other value is what the calling
// thread's colour factory makes of it through AUTO.
uint32_t ColorArgb(const Variant& colour);

}  // namespace tessel
