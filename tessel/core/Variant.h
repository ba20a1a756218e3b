// The automation variant. Conversions follow automation's rules: whole numbers round half to
// even, a value out of the target's range raises 6, a text that is no number raises 13,
// Nothing where an object's value is needed raises 91, Null where a value is needed 94.
// No conversion depends on the process's floating-point rounding mode.
#pragma once

#include <tessel/core/Object.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>
#include <string_view>

namespace tessel {

enum class VarType : uint16_t {
  Empty = 0,
  Null = 1,
  Integer = 2,
  Long = 3,
  Single = 4,
  Double = 5,
  String = 8,
  Object = 9,
  Error = 10,  // only as Missing, the value of an omitted argument
  Boolean = 11,
  Byte = 17,
  LongLong = 20,  // 64-bit: native handles, which are pointers here
  Array = 8192,  // the array flag; an array of Variants is Array | Variant
  VariantArray = 8204,
};

class Variant {
 public:
  Variant() noexcept = default;
  Variant(bool v) noexcept : t_(VarType::Boolean) { n_.b = v; }
  Variant(uint8_t v) noexcept : t_(VarType::Byte) { n_.by = v; }
  Variant(int16_t v) noexcept : t_(VarType::Integer) { n_.i = v; }
  Variant(int32_t v) noexcept : t_(VarType::Long) { n_.l = v; }
  Variant(int64_t v) noexcept : t_(VarType::LongLong) { n_.ll = v; }
  Variant(float v) noexcept : t_(VarType::Single) { n_.f = v; }
  Variant(double v) noexcept : t_(VarType::Double) { n_.d = v; }
  Variant(std::u16string v) noexcept : t_(VarType::String), s_(std::move(v)) {}
  Variant(std::u16string_view v) : t_(VarType::String), s_(v) {}
  Variant(const char16_t* v) : t_(VarType::String), s_(v) {}
  Variant(const char* utf8);  // UTF-8 convenience for C++ callers
  Variant(Ref<Object> o) noexcept : t_(VarType::Object), o_(std::move(o)) {}
  template <class T, class = std::enable_if_t<std::is_base_of_v<Object, T> && !std::is_same_v<T, Object>>>
  Variant(Ref<T> o) noexcept : Variant(Ref<Object>(std::move(o))) {}
  Variant(Object* o) noexcept : Variant(Ref<Object>(o)) {}
  // An array of Variants (VariantArray); copies share the items, which never change.
  explicit Variant(std::vector<Variant> items);
  template <class E, class = std::enable_if_t<std::is_enum_v<E>>>
  Variant(E e) noexcept : Variant(static_cast<int32_t>(e)) {}

  static Variant null() noexcept { return Variant(VarType::Null); }
  static Variant missing() noexcept { return Variant(VarType::Error); }
  static Variant nothing() noexcept { return Variant(Ref<Object>()); }

  VarType type() const noexcept { return t_; }
  bool isEmpty() const noexcept { return t_ == VarType::Empty; }
  bool isNull() const noexcept { return t_ == VarType::Null; }
  bool isMissing() const noexcept { return t_ == VarType::Error; }
  bool isString() const noexcept { return t_ == VarType::String; }
  bool isObject() const noexcept { return t_ == VarType::Object; }
  bool isNothing() const noexcept { return t_ == VarType::Object && !o_; }
  bool isNumeric() const noexcept;  // Boolean, Byte, Integer, Long, LongLong, Single, Double
  bool isArray() const noexcept { return t_ == VarType::VariantArray; }

  // Raw access without conversion (the stored string / object; empty when of another type).
  const std::u16string& str() const noexcept { return s_; }
  Object* obj() const noexcept { return o_.get(); }
  const Ref<Object>& objRef() const noexcept { return o_; }
  // An array's items; empty for any other type.
  const std::vector<Variant>& items() const noexcept;

  // Conversions by automation's rules.
  bool toBool() const;
  uint8_t toByte() const;
  int16_t toInteger() const;
  int32_t toLong() const;  // a LongLong only when it fits, else 6
  int64_t toLongLong() const;
  float toSingle() const;
  double toDouble() const;
  std::u16string toString() const;
  std::string toUtf8() const;
  // An object (Nothing allowed); anything else raises 13.
  Ref<Object> toObject() const;

  // Same type and same value (objects by identity). For tests and caches, not automation's "=".
  friend bool operator==(const Variant& a, const Variant& b) noexcept;

 private:
  explicit Variant(VarType t) noexcept : t_(t) {}
  double numberOrRaise() const;  // the numeric value of any convertible variant
  Variant defaultValue() const;  // an object's default member, read

  VarType t_ = VarType::Empty;
  union {
    bool b;
    uint8_t by;
    int16_t i;
    int32_t l;
    int64_t ll;
    float f;
    double d;
  } n_{};
  std::u16string s_;
  Ref<Object> o_;
  std::shared_ptr<const std::vector<Variant>> a_;
};

// Number reading of automation's numeric conversion of a text: optional blanks, sign, digits
// with "." as the decimal point, optional exponent, "&H" hexadecimal; nothing else may follow.
// False when the text is no number.
bool parseNumber(std::u16string_view text, double& out) noexcept;

// The leading-number reader of the parameter language: blanks skipped, then the longest
// decimal number ("." as the decimal point whatever the locale, optional sign and exponent);
// 0 when the text does not begin with one. "12abc" reads 12, "abc" 0.
double readLeadingNumber(std::u16string_view text) noexcept;

// Whole-number rounding of automation: to nearest, ties to even in any rounding mode; raises 6
// outside [lo, hi].
int64_t roundToWhole(double v, double lo, double hi);

// The name automation's TypeName gives a variant ("Long", "String", "cls_DrawRect", "Nothing",
// "Variant()" for an array).
std::string typeName(const Variant& v);

}  // namespace tessel
