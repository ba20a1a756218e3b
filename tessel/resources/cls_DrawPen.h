// The pen (cls_DrawPen.members): one native pen under the shared resource lifecycle. Unlike a
// brush, a protected pen ignores DELETE too.
#pragma once

#include <tessel/core/TypeLib.h>
#include <tessel/core/mdl_GDIPlus.h>
#include <tessel/core/NativeResource.h>
#include <tessel/resources/cls_DrawPen.members.h>

namespace tessel {

class cls_DrawPen final : public ObjectOf<cls_DrawPen> {
  TESSEL_MEMBERS(cls_DrawPen)

 public:
  // The pen for drawing code; null for an empty pen.
  mdl_GDIPlus::GpPen* pen() const noexcept { return native_.get(); }

 private:

  NativeResource<mdl_GDIPlus::PenHandle> native_;
};

}  // namespace tessel
