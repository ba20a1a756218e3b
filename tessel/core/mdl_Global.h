// Module-level entry points of the library: the thread's root object and the status seam.
#pragma once

#include <tessel/core/TypeLib.h>
#include <tessel/core/enm_Draw_Status.h>

#include <cstdint>
#include <string>

namespace tessel {

class cls_DrawTool;

namespace mdl_Global {

// The calling thread's root object, created on first read and never cleared.
Ref<cls_DrawTool> DRAW();

// Returns the status unchanged: the one seam every platform status passes through.
inline enm_Draw_Status Execute(enm_Draw_Status lReturn) noexcept { return lReturn; }

// The parameter language: decodes a short text into a type code (ParaType) and up to four
// values. pType is set to -1 first; a value that no rule assigns keeps what the caller put in.
void PARADECODE(const std::u16string& pText, int32_t& pType, Variant& pValue1, Variant& pValue2,
                Variant& pValue3, Variant& pValue4);
// The name of a type code ("Size", "Color", …); empty outside -1 to 6.
std::u16string PARATYPETEXT(int32_t pType);
// The value of a hexadecimal digit string; pDefault for the empty text. Any other character
// counts as a zero digit; a 32-bit overflow raises 6.
int32_t UNHEX(const std::u16string& pHex, int32_t pDefault);

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
