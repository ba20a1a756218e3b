// The font (cls_DrawFont.members): one native font under the shared resource lifecycle, with
// the family it reads owned next to it. A protected font ignores DELETE too.
#pragma once

#include <tessel/core/TypeLib.h>
#include <tessel/core/mdl_GDIPlus.h>
#include <tessel/core/NativeResource.h>
#include <tessel/resources/cls_DrawFont.members.h>

#include <string>

namespace tessel {

class cls_DrawFont final : public ObjectOf<cls_DrawFont> {
  TESSEL_MEMBERS(cls_DrawFont)

 public:
  ~cls_DrawFont() override;
  // Changes with every new native font (NativeResource.h): what a cache of measurements keys on.
  uint64_t nativeStamp() const noexcept { return native_.stamp(); }

 private:
  // Every change of the native font goes through these two, so that the family copy that
  // FAMILY handed out goes with the font it came from.
  void hFree() noexcept;
  void hAdopt(mdl_GDIPlus::GpFont* made) noexcept;
  mdl_GDIPlus::GpFontFamily* hFamily() const;

  NativeResource<mdl_GDIPlus::FontHandle> native_;
  mutable mdl_GDIPlus::FontFamilyHandle family_;  // the font's family, made on first read
  std::u16string name_;
};

}  // namespace tessel
