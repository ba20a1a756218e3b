// The brush (cls_DrawBrush.members): one native brush under the shared resource lifecycle.
// Unlike a pen, a brush's DELETE frees even a protected brush.
#pragma once

#include <tessel/core/NativeResource.h>
#include <tessel/core/TypeLib.h>
#include <tessel/core/mdl_GDIPlus.h>
#include <tessel/resources/cls_DrawBrush.members.h>

namespace tessel {

class cls_DrawBrush final : public ObjectOf<cls_DrawBrush> {
  TESSEL_MEMBERS(cls_DrawBrush)

 public:
  // The brush for drawing code; null for an empty brush.
  mdl_GDIPlus::GpBrush* brush() const noexcept { return native_.get(); }

 private:
  Ref<cls_DrawBrush> me() { return Ref<cls_DrawBrush>(this); }

  NativeResource<mdl_GDIPlus::BrushHandle> native_;
};

}  // namespace tessel
