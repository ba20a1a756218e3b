#include <tessel/core/Text.h>

#include <tessel/core/Checked.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace tessel {

std::u16string toUtf16(std::string_view s) {
  std::u16string out;
  out.reserve(s.size());
  for (size_t i = 0; i < s.size();) {
    auto c = static_cast<unsigned char>(s[i]);
    char32_t cp;
    size_t len;
    if (c < 0x80) { cp = c; len = 1; }
    else if ((c >> 5) == 0x6) { cp = c & 0x1F; len = 2; }
    else if ((c >> 4) == 0xE) { cp = c & 0x0F; len = 3; }
    else if ((c >> 3) == 0x1E) { cp = c & 0x07; len = 4; }
    else { out.push_back(u'\uFFFD'); ++i; continue; }
    if (i + len > s.size()) { out.push_back(u'\uFFFD'); break; }
    bool ok = true;
    for (size_t k = 1; k < len; ++k) {
      auto cc = static_cast<unsigned char>(s[i + k]);
      if ((cc >> 6) != 0x2) { ok = false; break; }
      cp = (cp << 6) | (cc & 0x3F);
    }
    if (!ok) { out.push_back(u'\uFFFD'); ++i; continue; }
    i += len;
    appendCodePoint(out, cp);
  }
  return out;
}

std::string toUtf8(std::u16string_view s) {
  std::string out;
  out.reserve(s.size());
  for (size_t i = 0; i < s.size();) {
    char32_t cp = nextCodePoint(s, i);
    if (isSurrogate(cp)) cp = 0xFFFD;  // a lone surrogate cannot be written as UTF-8
    if (cp < 0x80) {
      out.push_back(static_cast<char>(cp));
    } else if (cp < 0x800) {
      out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
      out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else if (cp < 0x10000) {
      out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
      out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else {
      out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
      out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    }
  }
  return out;
}

std::u16string_view trimBlanks(std::u16string_view s) noexcept {
  while (!s.empty() && s.front() == u' ') s.remove_prefix(1);
  while (!s.empty() && s.back() == u' ') s.remove_suffix(1);
  return s;
}

char16_t upperAscii(char16_t c) noexcept { return (c >= u'a' && c <= u'z') ? c - 32 : c; }
char16_t lowerAscii(char16_t c) noexcept { return (c >= u'A' && c <= u'Z') ? c + 32 : c; }

std::u16string toUpperAscii(std::u16string_view s) {
  std::u16string out(s);
  for (auto& c : out) c = upperAscii(c);
  return out;
}

std::string toLowerAscii(std::string_view s) {
  std::string out(s);
  for (auto& c : out)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
  return out;
}

bool equalsIgnoreCase(std::u16string_view a, std::u16string_view b) noexcept {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i)
    if (upperAscii(a[i]) != upperAscii(b[i])) return false;
  return true;
}

bool equalsIgnoreCase(std::string_view a, std::string_view b) noexcept {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    char x = a[i], y = b[i];
    if (x >= 'a' && x <= 'z') x = static_cast<char>(x - 32);
    if (y >= 'a' && y <= 'z') y = static_cast<char>(y - 32);
    if (x != y) return false;
  }
  return true;
}

std::u16string formatNumber(double v, int significant) {
  if (std::isnan(v)) return u"NaN";
  if (std::isinf(v)) return v < 0 ? u"-Infinity" : u"Infinity";
  if (v == 0) return u"0";
  // Round to the wanted precision first; the exponent is that of the rounded value.
  char buf[64];
  {
    NearestRounding nearest;  // printf rounds the digits in the current mode
    std::snprintf(buf, sizeof buf, "%.*E", significant - 1, v);
  }
  std::string s(buf);
  auto ePos = s.find('E');
  int exponent = std::atoi(s.c_str() + ePos + 1);
  std::string mantissa = s.substr(0, ePos);
  bool negative = mantissa[0] == '-';
  if (negative) mantissa.erase(0, 1);
  std::string digits;
  for (char c : mantissa)
    if (c != '.') digits.push_back(c);
  while (digits.size() > 1 && digits.back() == '0') digits.pop_back();

  std::string out = negative ? "-" : "";
  if (exponent >= significant || exponent < -4) {
    out += digits.substr(0, 1);
    if (digits.size() > 1) out += "." + digits.substr(1);
    char eb[16];
    std::snprintf(eb, sizeof eb, "E%c%02d", exponent < 0 ? '-' : '+', std::abs(exponent));
    out += eb;
  } else if (exponent < 0) {
    out += "0." + std::string(static_cast<size_t>(-exponent - 1), '0') + digits;
  } else {
    auto intLen = static_cast<size_t>(exponent + 1);
    if (digits.size() <= intLen) {
      out += digits + std::string(intLen - digits.size(), '0');
    } else {
      out += digits.substr(0, intLen) + "." + digits.substr(intLen);
    }
  }
  return toUtf16(out);
}

}  // namespace tessel
