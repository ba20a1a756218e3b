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

}  // namespace tessel
