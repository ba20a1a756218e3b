// The root object: platform start-up state and one factory per resource family. Reached
// through sys_Global.DRAW (clients) or mdl_Global::DRAW() (the library); one per thread. It
// sits above every subsystem; lower layers reach its factories through core/Root.h.
#pragma once

#include <tessel/color/cls_DrawToolColor.h>
#include <tessel/core/TypeLib.h>
#include <tessel/core/enm_Draw_Status.h>
#include <tessel/core/mdl_GDIPlus.h>
#include <tessel/geometry/cls_DrawToolPoint.h>
#include <tessel/geometry/cls_DrawToolRect.h>
#include <tessel/images/cls_DrawResources.h>
#include <tessel/images/cls_DrawToolImage.h>
#include <tessel/resources/cls_DrawToolBrush.h>
#include <tessel/resources/cls_DrawPath.h>
#include <tessel/resources/cls_DrawToolFont.h>
#include <tessel/resources/cls_DrawToolImageAttributes.h>
#include <tessel/resources/cls_DrawToolPen.h>
#include <tessel/resources/cls_DrawToolTextFormat.h>
#include <tessel/root/cls_DrawTool.members.h>
#include <tessel/root/sys_Global.h>

#include <cstdint>
#include <string>

namespace tessel {

class cls_DrawTool final : public ObjectOf<cls_DrawTool> {
  TESSEL_MEMBERS(cls_DrawTool)

 public:
  // Start-up state, for hosts and tests that look at it.
  uint32_t token() const noexcept { return token_; }
  int32_t initCount() const noexcept { return count_; }

  // The platform start-up call. Tests replace it to see INIT handle a failing start-up.
  using StartupFn = enm_Draw_Status (*)(uint32_t* token, const mdl_GDIPlus::GdiplusStartupInput* input,
                                        void* output);
  static void setStartupFunction(StartupFn fn);

  // The last message ERRORSET was given on this thread (a bad pen or font description says
  // what was wrong there), for hosts and tests.
  static const std::u16string& lastErrorMessage() noexcept;

 private:
  enm_Draw_Status StartUpGDIPlus(uint32_t version);

  uint32_t token_ = 0;
  bool ready_ = false;
  int32_t count_ = 0;
};

}  // namespace tessel
