// The core-library services the object model relies on: a splitter that honours brackets and
// quotes, the twelve-member text alignment, system colours and their translation, and colour
// names. (The maker's own core library is closed; these are the project's equivalents.)
#pragma once

#include <tessel/core/mdl_Basalt.members.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

namespace mdl_Basalt {

// The items of `text` between separators. Separators inside brackets (any nesting of the
// characters in `open` / `close`, paired by position) or inside quotes do not split; items keep
// their blanks and their brackets and quotes. The empty text has no items; a quote of 0 means
// none. A closing bracket that matches no open one is an ordinary character, and an unclosed
// bracket or quote runs to the end of the text.
std::vector<std::u16string> Split(std::u16string_view text, char16_t separator, std::u16string_view open = {},
                                  std::u16string_view close = {}, char16_t quote = 0);

// A split text read by 1-based position: an item beyond the count is empty.
class SplitList {
 public:
  SplitList() = default;
  SplitList(std::u16string_view text, char16_t separator, std::u16string_view open = {},
            std::u16string_view close = {}, char16_t quote = 0);
  // Splits another text, reusing the list (the parameter language keeps one per thread).
  void split(std::u16string_view text, char16_t separator, std::u16string_view open = {},
             std::u16string_view close = {}, char16_t quote = 0);
  int32_t count() const noexcept { return static_cast<int32_t>(items_.size()); }
  const std::u16string& item(int32_t index) const noexcept;

 private:
  std::vector<std::u16string> items_;
};

// A host colour (red in the low byte, or 0x80000000 + system-colour index) as a plain
// red-green-blue integer. Raises 5 for a system reference that names no member of
// enm_SysColor (beyond 30, or 25) and for any other value with a high byte set.
int32_t TranslateColor(int32_t hostColor);
// The red, green and blue bytes of a plain integer colour (red in the low byte).
void SplitRGB(int32_t rgb, int32_t& red, int32_t& green, int32_t& blue) noexcept;
// The plain integer colour of a system colour in the fixed default theme; raises 5 for a value
// outside the enumeration.
int32_t SysColor(enm_SysColor index);
// A CSS Color Module Level 4 colour name, matched without regard to case, as a plain integer
// colour; `defaultColor` for an unknown name.
int32_t ColorFromName(std::u16string_view name, int32_t defaultColor);

// The CSS colour name of 0xRRGGBB, the first in alphabetical order where several share it ("aqua"
// before "cyan"); empty when none matches.
std::string NameOfColor(uint32_t rgb);

}  // namespace mdl_Basalt
}  // namespace tessel
