// Fuzzes automation's number reading: a text converted to Double, Single, Long, Integer and
// Byte, the leading-number reader, and the printed form read back. Besides crashes it checks
// that the conversions agree with each other and fail only as they may.
//
// Input: the first byte picks the character width (low bit: one byte or two bytes per UTF-16
// unit); the rest is the text.
#include "FuzzSupport.h"

#include <tessel/core/Checked.h>
#include <tessel/core/Error.h>
#include <tessel/core/Text.h>
#include <tessel/core/Variant.h>

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string>

using namespace tessel;
using tessel::fuzzing::textOf;

namespace {

// The value of a conversion, or nothing when it raised; any other error is a finding.
template <class F>
auto attempt(F&& convert, std::initializer_list<int32_t> allowed) -> std::optional<decltype(convert())> {
  try {
    return convert();
  } catch (const Error& e) {
    bool known = false;
    for (int32_t n : allowed) known = known || e.number() == n;
    CHECK(known);
    return std::nullopt;
  }
}

void checkNumber(const std::u16string& text) {
  const Variant v(text);
  const auto d = attempt([&] { return v.toDouble(); }, {rt::TypeMismatch, rt::Overflow});
  const auto f = attempt([&] { return v.toSingle(); }, {rt::TypeMismatch, rt::Overflow});
  const auto l = attempt([&] { return v.toLong(); }, {rt::TypeMismatch, rt::Overflow});
  const auto b = attempt([&] { return v.toByte(); }, {rt::TypeMismatch, rt::Overflow});
  double parsed = 0;
  const bool isNumber = parseNumber(text, parsed);
  if (d) {
    CHECK(isNumber && std::isfinite(*d) && *d == parsed);
    // Printed and read back, a Double keeps its 15 significant digits.
    const double again = Variant(formatNumber(*d, 15)).toDouble();
    CHECK(again == *d || std::fabs(again - *d) <= std::fabs(*d) * 1e-14);
    if (std::fabs(*d) <= FLT_MAX) CHECK(f && *f == narrowToSingle(*d));
    else CHECK(!f);
    const double whole = roundHalfEven(*d);
    if (whole >= INT32_MIN && whole <= INT32_MAX) CHECK(l && *l == whole);
    else CHECK(!l);
    if (whole >= 0 && whole <= 255) CHECK(b && *b == whole);
    else CHECK(!b);
  } else {
    CHECK(!f && !l && !b);
  }
  const double leading = readLeadingNumber(text);
  CHECK(!std::isnan(leading));
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzzing::refuseDialogs();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  checkNumber(textOf(data + 1, size - 1, data[0] & 1));
  return 0;
}
