// Text helpers: the object model's strings are UTF-16; UTF-8 appears only at the edges
// (dialogs, standard error, Python, file names).
#pragma once

#include <string>
#include <string_view>

namespace tessel {

std::u16string toUtf16(std::string_view utf8);
std::string toUtf8(std::u16string_view utf16);

// Case folding as the dispatcher and the parameter language need it: ASCII letters only,
// so that "ß" or "İ" never change length or meaning behind a caller's back.
char16_t upperAscii(char16_t c) noexcept;
char16_t lowerAscii(char16_t c) noexcept;
std::u16string toUpperAscii(std::u16string_view s);
std::string toLowerAscii(std::string_view s);
bool equalsIgnoreCase(std::u16string_view a, std::u16string_view b) noexcept;
bool equalsIgnoreCase(std::string_view a, std::string_view b) noexcept;

// The host's default text form of a number: at most `significant` significant digits
// (7 for Single, 15 for Double), no trailing zeros, exponent form "1E+07" / "1E-05" outside
// the range the host prints plainly.
std::u16string formatNumber(double value, int significant);

}  // namespace tessel
