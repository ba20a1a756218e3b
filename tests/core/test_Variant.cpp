// The host's conversion rules: half-to-even rounding, overflow, type mismatch, and the texts
// numbers turn into.
#include <tessel/core/Error.h>
#include <tessel/core/Text.h>
#include <tessel/core/Variant.h>

#include <gtest/gtest.h>

#include <cmath>

#include "TestSupport.h"

#include <cfenv>
#include <functional>

using namespace tessel;

TEST(Variant, WholeNumbersRoundHalfToEven) {
  EXPECT_EQ(Variant(2.5).toLong(), 2);
  EXPECT_EQ(Variant(3.5).toLong(), 4);
  EXPECT_EQ(Variant(-2.5).toLong(), -2);
  EXPECT_EQ(Variant(2.5000001).toLong(), 3);
  EXPECT_EQ(Variant(0.5f).toInteger(), 0);
  EXPECT_EQ(Variant(254.5).toByte(), 254);
  EXPECT_EQ(Variant(u" 7.5 ").toLong(), 8);
  EXPECT_EQ(Variant(true).toLong(), -1);
  EXPECT_EQ(Variant().toLong(), 0);
}

// A host or a plug-in may leave the process in another rounding mode; conversions must not care.
TEST(Variant, ConversionsIgnoreTheFloatingPointRoundingMode) {
  inEveryRoundingMode([] {
    EXPECT_EQ(Variant(2.5).toLong(), 2);
    EXPECT_EQ(Variant(3.5).toLong(), 4);
    EXPECT_EQ(Variant(-2.5).toLong(), -2);
    EXPECT_EQ(Variant(-3.5).toLong(), -4);
    EXPECT_EQ(Variant(0.5).toLong(), 0);
    EXPECT_EQ(Variant(-0.5).toLong(), 0);
    EXPECT_EQ(Variant(1.5f).toInteger(), 2);
    EXPECT_EQ(Variant(-0.75).toLong(), -1);
    EXPECT_EQ(Variant(254.5).toByte(), 254);
    EXPECT_EQ(Variant(u"7.5").toLong(), 8);
    EXPECT_EQ(Variant(2147483646.5).toLong(), 2147483646);
    EXPECT_EQ(Variant(-2147483648.5).toLong(), INT32_MIN);
    EXPECT_EQ(raisedNumber([] { Variant(2147483647.5).toLong(); }), 6);
    EXPECT_EQ(raisedNumber([] { Variant(-32768.51).toInteger(); }), 6);
    EXPECT_EQ(roundToWhole(4503599627370494.5, -1e18, 1e18), 4503599627370494);  // 2^52 - 1.5
    EXPECT_EQ(roundToWhole(4503599627370495.5, -1e18, 1e18), 4503599627370496);
    EXPECT_EQ(roundToWhole(-1e17, -1e18, 1e18), -100000000000000000);
    // Narrowing, reading and printing round to nearest too.
    EXPECT_EQ(Variant(0.1).toSingle(), 0.1f);
    EXPECT_EQ(Variant(-0.1).toSingle(), -0.1f);
    EXPECT_EQ(Variant(u"0.1").toDouble(), 0.1);
    EXPECT_EQ(readLeadingNumber(u"-0.1px"), -0.1);
    EXPECT_EQ(Variant(0.1f).toUtf8(), "0.1");
    EXPECT_EQ(Variant(1.0 / 3).toUtf8(), "0.333333333333333");
    EXPECT_EQ(Variant(-2.0 / 3).toUtf8(), "-0.666666666666667");
  });
}

TEST(Variant, OutOfRangeIsOverflowAndNonNumbersAreMismatches) {
  EXPECT_EQ(raisedNumber([] { Variant(2147483647.5).toLong(); }), 6);  // rounds to 2^31
  EXPECT_EQ(Variant(2147483647.49).toLong(), 2147483647);
  EXPECT_EQ(raisedNumber([] { Variant(32767.5).toInteger(); }), 6);
  EXPECT_EQ(raisedNumber([] { Variant(-1).toByte(); }), 6);
  EXPECT_EQ(raisedNumber([] { Variant(1e300).toSingle(); }), 6);
  EXPECT_EQ(raisedNumber([] { Variant(u"1e999").toDouble(); }), 6);
  EXPECT_EQ(raisedNumber([] { Variant(u"abc").toLong(); }), 13);
  EXPECT_EQ(raisedNumber([] { Variant(u"12abc").toDouble(); }), 13);
  EXPECT_EQ(raisedNumber([] { Variant(u"").toLong(); }), 13);
  EXPECT_EQ(raisedNumber([] { Variant::missing().toLong(); }), 13);
  EXPECT_EQ(raisedNumber([] { Variant::null().toLong(); }), 94);
  EXPECT_EQ(raisedNumber([] { Variant::nothing().toLong(); }), 91);
  EXPECT_EQ(raisedNumber([] { Variant(5).toObject(); }), 13);
}

// 64-bit values (native handles are pointers here) are never truncated: they narrow only when
// they fit, and read back whole.
TEST(Variant, LongLongHoldsSixtyFourBitsAndNarrowsOnlyWhenItFits) {
  const int64_t handle = 0x7F12345678ABCDEFll;
  const Variant v(handle);
  EXPECT_EQ(v.type(), VarType::LongLong);
  EXPECT_EQ(static_cast<int>(VarType::LongLong), 20);
  EXPECT_EQ(typeName(v), "LongLong");
  EXPECT_EQ(v.toLongLong(), handle);
  EXPECT_EQ(v.toUtf8(), "9156438538393996783");  // every digit
  EXPECT_EQ(v, Variant(handle));
  EXPECT_FALSE(v == Variant(handle + 1));
  EXPECT_EQ(raisedNumber([&] { v.toLong(); }), 6);
  EXPECT_EQ(raisedNumber([] { Variant(int64_t(INT32_MAX) + 1).toLong(); }), 6);
  EXPECT_EQ(Variant(int64_t(INT32_MIN)).toLong(), INT32_MIN);
  EXPECT_EQ(Variant(int64_t(-32768)).toInteger(), -32768);
  EXPECT_EQ(raisedNumber([] { Variant(int64_t(256)).toByte(); }), 6);
  EXPECT_EQ(Variant(int64_t(1) << 40).toDouble(), 1099511627776.0);
  // Into a LongLong: whole types exactly, others rounded half to even, 6 outside 64 bits.
  EXPECT_EQ(Variant(2.5).toLongLong(), 2);
  EXPECT_EQ(Variant(u"-9007199254740993").toLongLong(), -9007199254740992);  // read as a Double
  EXPECT_EQ(Variant(int32_t(-7)).toLongLong(), -7);
  EXPECT_EQ(raisedNumber([] { Variant(9223372036854775808.0).toLongLong(); }), 6);
  EXPECT_EQ(Variant(-9223372036854775808.0).toLongLong(), INT64_MIN);
  EXPECT_EQ(raisedNumber([] { Variant(std::nan("")).toLongLong(); }), 6);
}

TEST(Variant, TextsReadAsNumbersLikeTheHost) {
  EXPECT_DOUBLE_EQ(Variant(u"-12.25").toDouble(), -12.25);
  EXPECT_DOUBLE_EQ(Variant(u"1.5E3").toDouble(), 1500);
  EXPECT_DOUBLE_EQ(Variant(u".5").toDouble(), 0.5);
  EXPECT_EQ(Variant(u"&HFF").toLong(), 255);
  EXPECT_EQ(Variant(u"&HFFFF").toLong(), -1);  // four digits are an Integer pattern
  EXPECT_EQ(Variant(u"&H80000000").toLong(), INT32_MIN);
  EXPECT_TRUE(Variant(u"true").toBool());
  EXPECT_FALSE(Variant(u"0").toBool());
  EXPECT_EQ(raisedNumber([] { Variant(u"1,5").toDouble(); }), 13);  // "." is the only decimal point
}

TEST(Variant, LeadingNumberReader) {
  EXPECT_EQ(readLeadingNumber(u"12abc"), 12);
  EXPECT_EQ(readLeadingNumber(u"abc"), 0);
  EXPECT_EQ(readLeadingNumber(u"  -3.5px"), -3.5);
  EXPECT_EQ(readLeadingNumber(u"1e3x"), 1000);
  EXPECT_EQ(readLeadingNumber(u"1e"), 1);
  EXPECT_EQ(readLeadingNumber(u".25"), 0.25);
  EXPECT_EQ(readLeadingNumber(u"-"), 0);
  EXPECT_EQ(readLeadingNumber(u""), 0);
}

TEST(Variant, NumbersPrintInTheHostsDefaultForm) {
  EXPECT_EQ(Variant(49.5f).toUtf8(), "49.5");
  EXPECT_EQ(Variant(-1.0f).toUtf8(), "-1");
  EXPECT_EQ(Variant(1e7f).toUtf8(), "1E+07");
  EXPECT_EQ(Variant(1234567.0f).toUtf8(), "1234567");
  EXPECT_EQ(Variant(0.1f).toUtf8(), "0.1");
  EXPECT_EQ(Variant(0.0001f).toUtf8(), "0.0001");
  EXPECT_EQ(Variant(0.00001f).toUtf8(), "1E-05");
  EXPECT_EQ(Variant(1.0 / 3).toUtf8(), "0.333333333333333");
  EXPECT_EQ(Variant(-2.5e-20).toUtf8(), "-2.5E-20");
  EXPECT_EQ(Variant(int32_t(-7)).toUtf8(), "-7");
  EXPECT_EQ(Variant(true).toUtf8(), "True");
  EXPECT_EQ(Variant().toUtf8(), "");
}

TEST(Variant, MissingEmptyNullAreDistinct) {
  EXPECT_TRUE(Variant::missing().isMissing());
  EXPECT_FALSE(Variant().isMissing());
  EXPECT_FALSE(Variant() == Variant::null());
  EXPECT_FALSE(Variant(1) == Variant(1.0));  // same value, other type
  EXPECT_EQ(typeName(Variant::nothing()), "Nothing");
}

TEST(Text, Utf16RoundTripAndCaseFolding) {
  std::string s = "Größe \xF0\x9F\x8E\xA8";  // a character outside the BMP
  EXPECT_EQ(toUtf16(s).size(), 8u);         // the emoji is two UTF-16 code units
  EXPECT_EQ(toUtf8(toUtf16(s)), s);
  EXPECT_TRUE(equalsIgnoreCase(u"Bold", u"BOLD"));
  EXPECT_FALSE(equalsIgnoreCase(u"ß", u"SS"));
  EXPECT_EQ(toUtf8(toUtf16("\xC3")), "\xEF\xBF\xBD");  // a broken sequence becomes U+FFFD
}

TEST(Variant, ArraysShareTheirItemsAndConvertToNothingElse) {
  const Variant a(std::vector<Variant>{Variant(1), Variant(u"2"), Variant(std::vector<Variant>{})});
  EXPECT_TRUE(a.isArray());
  EXPECT_EQ(static_cast<int>(a.type()), 8204);
  EXPECT_EQ(typeName(a), "Variant()");
  ASSERT_EQ(a.items().size(), 3u);
  EXPECT_EQ(a.items()[1].toLong(), 2);
  const Variant copy = a;
  EXPECT_EQ(&copy.items(), &a.items());  // shared, never copied
  EXPECT_TRUE(copy == a);
  EXPECT_FALSE(a == Variant(std::vector<Variant>{Variant(1)}));
  EXPECT_TRUE(Variant(1).items().empty());
  EXPECT_EQ(raisedNumber([&] { a.toLong(); }), rt::TypeMismatch);
  EXPECT_EQ(raisedNumber([&] { a.toString(); }), rt::TypeMismatch);
  EXPECT_EQ(raisedNumber([&] { a.toObject(); }), rt::TypeMismatch);
}
