// The path (cls_DrawPath.members): one native path under the shared resource lifecycle, without
// protection. The native path is made by the first addition; RESET empties it and keeps it.
#pragma once

#include <tessel/core/TypeLib.h>
#include <tessel/core/mdl_GDIPlus.h>
#include <tessel/geometry/cls_DrawRect.h>
#include <tessel/core/NativeResource.h>
#include <tessel/resources/cls_DrawPath.members.h>

namespace tessel {

class cls_DrawPath final : public ObjectOf<cls_DrawPath> {
  TESSEL_MEMBERS(cls_DrawPath)

 public:
  // The outlines of `length` UTF-16 units of text as figures of their own, laid out as TEXT lays
  // them out; a failure adds nothing and is error 5. Holds the text lock.
  void addString(const char16_t* text, int length, const mdl_GDIPlus::GpFontFamily* family, int style, float emSize,
                 const mdl_GDIPlus::GpRectF& layout, const mdl_GDIPlus::GpStringFormat* format);

 private:

  // Makes the native path if there is none and runs `add` (the native path in, a status out) on
  // it. A failing status is a fault of the call (5). A native path made for an addition that
  // failed or added no point is freed again: an empty path holds none.
  template <class Add>
  void hAdd(Add add);
  Ref<cls_DrawPath> hSelf() { return Ref<cls_DrawPath>(this); }

  NativeResource<mdl_GDIPlus::PathHandle> native_;
};

}  // namespace tessel
