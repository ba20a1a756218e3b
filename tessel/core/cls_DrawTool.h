// The root object: platform start-up state and one factory per resource family. Reached
// through sys_Global.DRAW (clients) or mdl_Global::DRAW() (the library); one per thread.
#pragma once

#include <tessel/color/cls_DrawToolColor.h>
#include <tessel/core/TypeLib.h>
#include <tessel/core/enm_Draw_Status.h>
#include <tessel/core/mdl_GDIPlus.h>
#include <tessel/geometry/cls_DrawToolPoint.h>
#include <tessel/geometry/cls_DrawToolRect.h>

#include <cstdint>
#include <string>

namespace tessel {

class cls_DrawTool final : public ObjectOf<cls_DrawTool> {
 public:
  static constexpr std::string_view ClassName = "cls_DrawTool";
  static const ClassInfo& typeInfo();

  // The colour factory, created on first read; replaceable by another instance.
  Ref<cls_DrawToolColor> COLOR();
  void COLOR(Ref<cls_DrawToolColor> v);

  // The rectangle and point factories, each created on first read and replaceable by another
  // instance; after Nothing is assigned, the next read creates a fresh one.
  Ref<cls_DrawToolRect> RECT();
  void RECT(Ref<cls_DrawToolRect> v);
  Ref<cls_DrawToolPoint> POINT();
  void POINT(Ref<cls_DrawToolPoint> v);

  bool READY() const;
  // Starts the platform and counts the user. Answers True even when the start-up failed;
  // the message box is the only sign of that (intended).
  bool INIT();
  // Forgets one user; never shuts the platform down.
  void DEINIT();
  enm_Draw_Status Execute(enm_Draw_Status lReturn) const;
  std::u16string ERRORINFO(enm_Draw_Status lError) const;
  void ERRORSET(const std::u16string& pErrorMsg) const;

  // Start-up state, for hosts and tests that look at it.
  uint32_t token() const noexcept { return token_; }
  int32_t initCount() const noexcept { return count_; }

  // The platform start-up call. Tests replace it to see INIT handle a failing start-up.
  using StartupFn = enm_Draw_Status (*)(uint32_t* token, const mdl_GDIPlus::GdiplusStartupInput* input,
                                        void* output);
  static void setStartupFunction(StartupFn fn);

 private:
  // A factory property's value: made on first read, and again after Nothing was assigned.
  template <class T>
  static Ref<T> hFactory(Ref<T>& slot) {
    if (!slot) slot = make<T>();
    return slot;
  }
  enm_Draw_Status StartUpGDIPlus(uint32_t version);

  uint32_t token_ = 0;
  bool ready_ = false;
  int32_t count_ = 0;
  Ref<cls_DrawToolRect> rect_;
  Ref<cls_DrawToolPoint> point_;
  Ref<cls_DrawToolColor> color_;
};

}  // namespace tessel
