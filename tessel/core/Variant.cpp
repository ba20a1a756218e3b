#include <tessel/core/Variant.h>

#include <tessel/core/Checked.h>
#include <tessel/core/Error.h>
#include <tessel/core/Text.h>
#include <tessel/core/TypeLib.h>

#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace tessel {

Variant::Variant(const char* utf8) : t_(VarType::String), s_(toUtf16(utf8 ? utf8 : "")) {}

Variant::Variant(std::vector<Variant> items)
    : t_(VarType::VariantArray), a_(std::make_shared<const std::vector<Variant>>(std::move(items))) {}

const std::vector<Variant>& Variant::items() const noexcept {
  static const std::vector<Variant> none;
  return a_ ? *a_ : none;
}

bool Variant::isNumeric() const noexcept {
  switch (t_) {
    case VarType::Boolean: case VarType::Byte: case VarType::Integer: case VarType::Long:
    case VarType::LongLong: case VarType::Single: case VarType::Double:
      return true;
    default:
      return false;
  }
}

bool parseNumber(std::u16string_view t, double& out) noexcept {
  size_t i = 0, n = t.size();
  auto blank = [&](size_t k) { return k < n && (t[k] == u' ' || t[k] == u'\t'); };
  while (blank(i)) ++i;
  while (n > i && (t[n - 1] == u' ' || t[n - 1] == u'\t')) --n;
  if (i >= n) return false;
  if (n - i > 2 && t[i] == u'&' && (t[i + 1] == u'H' || t[i + 1] == u'h')) {
    // &H: up to eight hexadecimal digits, read as a 32-bit pattern (or 16-bit for up to four).
    size_t k = i + 2;
    if (n - k > 8) return false;
    uint32_t v = 0;
    for (; k < n; ++k) {
      char16_t c = upperAscii(t[k]);
      int d = (c >= u'0' && c <= u'9') ? c - u'0' : (c >= u'A' && c <= u'F') ? c - u'A' + 10 : -1;
      if (d < 0) return false;
      v = v * 16 + static_cast<uint32_t>(d);
    }
    if (n - (i + 2) <= 4) out = static_cast<int16_t>(v);
    else out = static_cast<int32_t>(v);
    return true;
  }
  std::string ascii;
  ascii.reserve(n - i);
  bool digits = false;
  size_t k = i;
  if (t[k] == u'+' || t[k] == u'-') ascii.push_back(static_cast<char>(t[k++]));
  while (k < n && t[k] >= u'0' && t[k] <= u'9') { ascii.push_back(static_cast<char>(t[k++])); digits = true; }
  if (k < n && t[k] == u'.') {
    ascii.push_back('.');
    ++k;
    while (k < n && t[k] >= u'0' && t[k] <= u'9') { ascii.push_back(static_cast<char>(t[k++])); digits = true; }
  }
  if (!digits) return false;
  if (k < n && (t[k] == u'E' || t[k] == u'e' || t[k] == u'D' || t[k] == u'd')) {
    ascii.push_back('E');
    ++k;
    if (k < n && (t[k] == u'+' || t[k] == u'-')) ascii.push_back(static_cast<char>(t[k++]));
    bool expDigits = false;
    while (k < n && t[k] >= u'0' && t[k] <= u'9') { ascii.push_back(static_cast<char>(t[k++])); expDigits = true; }
    if (!expDigits) return false;
  }
  if (k != n) return false;
  NearestRounding nearest;
  out = std::strtod(ascii.c_str(), nullptr);  // the C locale's "." is the only decimal point here
  return true;
}

double readLeadingNumber(std::u16string_view t) noexcept {
  size_t k = 0, n = t.size();
  while (k < n && (t[k] == u' ' || t[k] == u'\t')) ++k;
  std::string ascii;
  if (k < n && (t[k] == u'+' || t[k] == u'-')) ascii.push_back(static_cast<char>(t[k++]));
  bool digits = false;
  while (k < n && t[k] >= u'0' && t[k] <= u'9') { ascii.push_back(static_cast<char>(t[k++])); digits = true; }
  if (k < n && t[k] == u'.') {
    ascii.push_back('.');
    ++k;
    while (k < n && t[k] >= u'0' && t[k] <= u'9') { ascii.push_back(static_cast<char>(t[k++])); digits = true; }
  }
  if (!digits) return 0;
  // An exponent counts only when digits follow it ("1e" reads 1).
  if (k + 1 < n && (t[k] == u'E' || t[k] == u'e')) {
    size_t e = k + 1;
    std::string exp = "E";
    if (e < n && (t[e] == u'+' || t[e] == u'-')) exp.push_back(static_cast<char>(t[e++]));
    bool expDigits = false;
    while (e < n && t[e] >= u'0' && t[e] <= u'9' && exp.size() < 8) { exp.push_back(static_cast<char>(t[e++])); expDigits = true; }
    if (expDigits) ascii += exp;
  }
  NearestRounding nearest;
  double d = std::strtod(ascii.c_str(), nullptr);
  return std::isfinite(d) ? d : 0;
}

// A LongLong into a narrower whole type: exact, 6 outside [lo, hi].
static int64_t wholeIn(int64_t v, int64_t lo, int64_t hi) {
  if (v < lo || v > hi) raise(rt::Overflow);
  return v;
}

int64_t roundToWhole(double v, double lo, double hi) {
  if (std::isnan(v)) raise(rt::Overflow);
  double r = roundHalfEven(v);
  if (r < lo || r > hi) raise(rt::Overflow);
  return static_cast<int64_t>(r);
}

// An object stands for the value of its default member, if it has one.
Variant Variant::defaultValue() const {
  if (!o_) raise(rt::ObjectNotSet);
  if (!o_->classInfo().defaultMember()) raise(rt::TypeMismatch);
  Variant v = Invoke(o_.get(), "", InvokeKind::Get);
  if (v.isObject()) raise(rt::TypeMismatch);
  return v;
}

double Variant::numberOrRaise() const {
  switch (t_) {
    case VarType::Empty: return 0;
    case VarType::Null: raise(rt::InvalidUseOfNull);
    case VarType::Boolean: return n_.b ? -1 : 0;
    case VarType::Byte: return n_.by;
    case VarType::Integer: return n_.i;
    case VarType::Long: return n_.l;
    case VarType::LongLong: return static_cast<double>(n_.ll);
    case VarType::Single: return n_.f;
    case VarType::Double: return n_.d;
    case VarType::String: {
      double d;
      if (!parseNumber(s_, d)) raise(rt::TypeMismatch);
      if (std::isinf(d)) raise(rt::Overflow);
      return d;
    }
    case VarType::Object:
      return defaultValue().numberOrRaise();
    default:
      raise(rt::TypeMismatch);
  }
}

bool Variant::toBool() const {
  if (t_ == VarType::Boolean) return n_.b;
  if (t_ == VarType::String) {
    if (equalsIgnoreCase(s_, u"True")) return true;
    if (equalsIgnoreCase(s_, u"False")) return false;
  }
  return numberOrRaise() != 0;
}

uint8_t Variant::toByte() const {
  if (t_ == VarType::Byte) return n_.by;
  if (t_ == VarType::LongLong) return static_cast<uint8_t>(wholeIn(n_.ll, 0, 255));
  return static_cast<uint8_t>(roundToWhole(numberOrRaise(), 0, 255));
}

int16_t Variant::toInteger() const {
  if (t_ == VarType::Integer) return n_.i;
  if (t_ == VarType::LongLong) return static_cast<int16_t>(wholeIn(n_.ll, -32768, 32767));
  return static_cast<int16_t>(roundToWhole(numberOrRaise(), -32768, 32767));
}

int32_t Variant::toLong() const {
  if (t_ == VarType::Long) return n_.l;
  if (t_ == VarType::LongLong) return static_cast<int32_t>(wholeIn(n_.ll, INT32_MIN, INT32_MAX));
  return static_cast<int32_t>(roundToWhole(numberOrRaise(), -2147483648.0, 2147483647.0));
}

int64_t Variant::toLongLong() const {
  switch (t_) {
    case VarType::LongLong: return n_.ll;
    case VarType::Long: return n_.l;
    case VarType::Integer: return n_.i;
    case VarType::Byte: return n_.by;
    default: {
      // 2^63 is the first double beyond the range; every double below it fits.
      const double d = numberOrRaise();
      if (std::isnan(d)) raise(rt::Overflow);
      const double r = roundHalfEven(d);
      if (r >= 9223372036854775808.0 || r < -9223372036854775808.0) raise(rt::Overflow);
      return static_cast<int64_t>(r);
    }
  }
}

// Automation's Single and Double hold finite numbers only: infinity and NaN (which a host
// program can hand in) are an overflow, like a value beyond the range.
float Variant::toSingle() const {
  const double d = t_ == VarType::Single ? n_.f : numberOrRaise();
  if (!std::isfinite(d) || std::fabs(d) > FLT_MAX) raise(rt::Overflow);
  return narrowToSingle(d);
}

double Variant::toDouble() const {
  const double d = t_ == VarType::Double ? n_.d : numberOrRaise();
  if (!std::isfinite(d)) raise(rt::Overflow);
  return d;
}

std::u16string Variant::toString() const {
  switch (t_) {
    case VarType::Empty: return {};
    case VarType::String: return s_;
    case VarType::Boolean: return n_.b ? u"True" : u"False";
    case VarType::Single: return formatNumber(n_.f, 7);
    case VarType::Double: return formatNumber(n_.d, 15);
    case VarType::Byte: case VarType::Integer: case VarType::Long:
      return formatNumber(numberOrRaise(), 15);
    case VarType::LongLong: {
      const std::string digits = std::to_string(n_.ll);  // every digit, as automation prints one
      return std::u16string(digits.begin(), digits.end());
    }
    case VarType::Null: raise(rt::InvalidUseOfNull);
    case VarType::Object:
      return defaultValue().toString();
    default:
      raise(rt::TypeMismatch);
  }
}

std::string Variant::toUtf8() const { return tessel::toUtf8(toString()); }

Ref<Object> Variant::toObject() const {
  if (t_ != VarType::Object) raise(rt::TypeMismatch);
  return o_;
}

bool operator==(const Variant& a, const Variant& b) noexcept {
  if (a.t_ != b.t_) return false;
  switch (a.t_) {
    case VarType::Boolean: return a.n_.b == b.n_.b;
    case VarType::Byte: return a.n_.by == b.n_.by;
    case VarType::Integer: return a.n_.i == b.n_.i;
    case VarType::Long: return a.n_.l == b.n_.l;
    case VarType::LongLong: return a.n_.ll == b.n_.ll;
    case VarType::Single: return a.n_.f == b.n_.f;
    case VarType::Double: return a.n_.d == b.n_.d;
    case VarType::String: return a.s_ == b.s_;
    case VarType::Object: return a.o_.get() == b.o_.get();
    case VarType::VariantArray: return a.items() == b.items();
    default: return true;
  }
}

std::string typeName(const Variant& v) {
  switch (v.type()) {
    case VarType::Empty: return "Empty";
    case VarType::Null: return "Null";
    case VarType::Integer: return "Integer";
    case VarType::Long: return "Long";
    case VarType::LongLong: return "LongLong";
    case VarType::Single: return "Single";
    case VarType::Double: return "Double";
    case VarType::String: return "String";
    case VarType::Object: return v.obj() ? std::string(v.obj()->typeName()) : "Nothing";
    case VarType::Error: return "Error";
    case VarType::Boolean: return "Boolean";
    case VarType::Byte: return "Byte";
    case VarType::VariantArray: return "Variant()";
    case VarType::Array: break;
  }
  return "Unknown";
}

}  // namespace tessel
