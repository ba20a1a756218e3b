// The text format (cls_DrawTextFormat.members): one native string format under the shared
// resource lifecycle; a protected one ignores DELETE too.
#pragma once

#include <tessel/core/TypeLib.h>
#include <tessel/core/mdl_Basalt.h>
#include <tessel/core/mdl_GDIPlus.h>
#include <tessel/core/NativeResource.h>
#include <tessel/resources/cls_DrawTextFormat.members.h>

namespace tessel {

class cls_DrawTextFormat final : public ObjectOf<cls_DrawTextFormat> {
  TESSEL_MEMBERS(cls_DrawTextFormat)

 public:
  // Changes with every new native format; ALIGN changes the format in place and keeps it.
  uint64_t nativeStamp() const noexcept { return native_.stamp(); }

 private:
  NativeResource<mdl_GDIPlus::StringFormatHandle> native_;
  enm_TextAlign align_ = enm_TextAlign::ID_TextAlign_LeftMiddle;
};

}  // namespace tessel
