// Text helpers: the object model's strings are UTF-16; UTF-8 appears only at the edges
// (dialogs, standard error, Python, file names).
#pragma once

#include <string>
#include <string_view>

namespace tessel {

std::u16string toUtf16(std::string_view utf8);
std::string toUtf8(std::u16string_view utf16);

// UTF-16 code points, written once: a code point beyond the basic plane is a surrogate pair.
inline void appendCodePoint(std::u16string& out, char32_t cp) {
  if (cp >= 0x10000) {
    cp -= 0x10000;
    out.push_back(static_cast<char16_t>(0xD800 + (cp >> 10)));
    out.push_back(static_cast<char16_t>(0xDC00 + (cp & 0x3FF)));
  } else {
    out.push_back(static_cast<char16_t>(cp));
  }
}
// The code point that starts at s[i], moving i past it. A lone surrogate is returned as it is.
inline char32_t nextCodePoint(std::u16string_view s, size_t& i) {
  char32_t cp = s[i++];
  if (cp >= 0xD800 && cp < 0xDC00 && i < s.size() && s[i] >= 0xDC00 && s[i] < 0xE000)
    cp = 0x10000 + ((cp - 0xD800) << 10) + (s[i++] - 0xDC00);
  return cp;
}
inline bool isSurrogate(char32_t cp) noexcept { return cp >= 0xD800 && cp < 0xE000; }

// Case folding as the dispatcher and the parameter language need it: ASCII letters only,
// so that "ß" or "İ" never change length or meaning behind a caller's back.
// The text without the blanks (U+0020 only) at either end.
std::u16string_view trimBlanks(std::u16string_view s) noexcept;

char16_t upperAscii(char16_t c) noexcept;
char16_t lowerAscii(char16_t c) noexcept;
std::u16string toUpperAscii(std::u16string_view s);
std::string toLowerAscii(std::string_view s);
bool equalsIgnoreCase(std::u16string_view a, std::u16string_view b) noexcept;
bool equalsIgnoreCase(std::string_view a, std::string_view b) noexcept;

// Automation's default text form of a number: at most `significant` significant digits
// (7 for Single, 15 for Double), no trailing zeros, exponent form "1E+07" / "1E-05" outside
// the range automation prints plainly.
std::u16string formatNumber(double value, int significant);

}  // namespace tessel
