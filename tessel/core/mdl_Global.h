// Module-level entry points of the library: the thread's root object and the status seam.
#pragma once

#include <tessel/core/TypeLib.h>
#include <tessel/core/enm_Draw_Status.h>

namespace tessel {

class cls_DrawTool;

namespace mdl_Global {

// The calling thread's root object, created on first read and never cleared.
Ref<cls_DrawTool> DRAW();

// Returns the status unchanged: the one seam every platform status passes through.
inline enm_Draw_Status Execute(enm_Draw_Status lReturn) noexcept { return lReturn; }

}  // namespace mdl_Global

// The module as an object of the type library (tessel.mdl_Global in scripts).
class mdl_GlobalModule final : public ObjectOf<mdl_GlobalModule> {
 public:
  static constexpr std::string_view ClassName = "mdl_Global";
  static const ClassInfo& typeInfo();
  static Ref<mdl_GlobalModule> instance();
};

// The application-wide global object: its DRAW is usable without qualification.
class sys_Global final : public ObjectOf<sys_Global> {
 public:
  static constexpr std::string_view ClassName = "sys_Global";
  static const ClassInfo& typeInfo();
  static Ref<sys_Global> instance();

  Ref<cls_DrawTool> DRAW() const;
};

}  // namespace tessel
