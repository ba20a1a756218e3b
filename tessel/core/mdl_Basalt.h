// The core-library services the object model relies on: a splitter that honours brackets and
// quotes, the twelve-member text alignment, system colours and their translation, and colour
// names. (The maker's own core library is closed; these are the project's equivalents.)
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

// Text alignment: value / 4 is the vertical position (0 middle, 1 top, 2 bottom), value mod 4
// the horizontal one (0 left, 1 centre, 2 right, 3 block).
enum class enm_TextAlign : int32_t {
  ID_TextAlign_LeftMiddle = 0,
  ID_TextAlign_CenterMiddle = 1,
  ID_TextAlign_RightMiddle = 2,
  ID_TextAlign_BlockMiddle = 3,
  ID_TextAlign_LeftTop = 4,
  ID_TextAlign_CenterTop = 5,
  ID_TextAlign_RightTop = 6,
  ID_TextAlign_BlockTop = 7,
  ID_TextAlign_LeftBottom = 8,
  ID_TextAlign_CenterBottom = 9,
  ID_TextAlign_RightBottom = 10,
  ID_TextAlign_BlockBottom = 11,
};

// System colours, indexed like the Win32 system-colour indices 0 to 30. A host colour of
// 0x80000000 + index refers to one.
enum class enm_SysColor : int32_t {
  ID_SysColor_ScrollBar = 0,
  ID_SysColor_Background = 1,
  ID_SysColor_ActiveCaption = 2,
  ID_SysColor_InactiveCaption = 3,
  ID_SysColor_Menu = 4,
  ID_SysColor_Window = 5,
  ID_SysColor_WindowFrame = 6,
  ID_SysColor_MenuText = 7,
  ID_SysColor_WindowText = 8,
  ID_SysColor_CaptionText = 9,
  ID_SysColor_ActiveBorder = 10,
  ID_SysColor_InactiveBorder = 11,
  ID_SysColor_AppWorkspace = 12,
  ID_SysColor_Highlight = 13,
  ID_SysColor_HighlightText = 14,
  ID_SysColor_ButtonFace = 15,
  ID_SysColor_ButtonShadow = 16,
  ID_SysColor_GrayText = 17,
  ID_SysColor_ButtonText = 18,
  ID_SysColor_InactiveCaptionText = 19,
  ID_SysColor_ButtonHighlight = 20,
  ID_SysColor_ButtonDarkShadow = 21,
  ID_SysColor_ButtonLight = 22,
  ID_SysColor_InfoText = 23,
  ID_SysColor_InfoBackground = 24,
  ID_SysColor_HotLight = 26,
  ID_SysColor_GradientActiveCaption = 27,
  ID_SysColor_GradientInactiveCaption = 28,
  ID_SysColor_MenuHighlight = 29,
  ID_SysColor_MenuBar = 30,
};

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

}  // namespace mdl_Basalt
}  // namespace tessel
