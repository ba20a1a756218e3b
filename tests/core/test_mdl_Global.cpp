// The parameter language: the order in which PARADECODE tries its rules, what it leaves alone,
// UNHEX and its overflow, and the late-bound path with ByRef results.
#include <tessel/core/Text.h>
#include <tessel/core/TypeLib.h>
#include <tessel/core/mdl_Global.h>

#include <gtest/gtest.h>

#include <thread>

#include "core/ErrorCapture.h"

using namespace tessel;

namespace {

struct Decoded {
  int32_t type = 99;
  Variant v[4];
};

// Decodes with recognisable values already in the cells, so untouched ones show.
Decoded decode(std::u16string text) {
  Decoded d;
  for (auto& v : d.v) v = Variant(u"untouched");
  mdl_Global::PARADECODE(text, d.type, d.v[0], d.v[1], d.v[2], d.v[3]);
  return d;
}

const Variant kUntouched(u"untouched");

}  // namespace

TEST(ParaDecode, HexColoursReadPairsWith255ForAbsentOnes) {
  Decoded d = decode(u"#00FF00");
  EXPECT_EQ(d.type, 1);
  EXPECT_EQ(d.v[0], Variant(0));
  EXPECT_EQ(d.v[1], Variant(255));
  EXPECT_EQ(d.v[2], Variant(0));
  EXPECT_EQ(d.v[3], Variant(255));

  d = decode(u"#0a1B2c80");
  EXPECT_EQ(d.v[0], Variant(10));
  EXPECT_EQ(d.v[1], Variant(27));
  EXPECT_EQ(d.v[2], Variant(44));
  EXPECT_EQ(d.v[3], Variant(128));

  d = decode(u"#");
  EXPECT_EQ(d.type, 1);
  for (auto& v : d.v) EXPECT_EQ(v, Variant(255));

  d = decode(u"#F");  // a single digit is read alone
  EXPECT_EQ(d.v[0], Variant(15));
  EXPECT_EQ(d.v[1], Variant(255));

  d = decode(u"#zz12");  // no rejection: other characters are zero digits
  EXPECT_EQ(d.type, 1);
  EXPECT_EQ(d.v[0], Variant(0));
  EXPECT_EQ(d.v[1], Variant(18));
  EXPECT_EQ(decode(u"#123456789ABC").v[3], Variant(0x78));  // characters after the fourth pair are ignored
}

TEST(ParaDecode, ParenthesisedListsByItemCount) {
  Decoded d = decode(u"(10,20)");
  EXPECT_EQ(d.type, 2);
  EXPECT_EQ(d.v[0], Variant(10.0));
  EXPECT_EQ(d.v[1], Variant(20.0));
  EXPECT_EQ(d.v[2], Variant(0.0));  // beyond the count: read as 0, not left alone
  EXPECT_EQ(d.v[3], Variant(0.0));

  d = decode(u"(255,0,0)");
  EXPECT_EQ(d.type, 1);
  EXPECT_EQ(d.v[0], Variant(255.0));
  EXPECT_EQ(d.v[1], Variant(0.0));
  EXPECT_EQ(d.v[2], Variant(0.0));
  EXPECT_EQ(d.v[3], Variant(int16_t(255)));

  d = decode(u"( 1.5 , -2e1)");  // items keep their blanks; number reading skips leading ones
  EXPECT_EQ(d.v[0], Variant(1.5));
  EXPECT_EQ(d.v[1], Variant(-20.0));

  for (const char16_t* t : {u"(1,2,3,4)", u"(5)", u"()", u"(,,,)"}) {
    d = decode(t);
    EXPECT_EQ(d.type, -1) << toUtf8(t);
    for (auto& v : d.v) EXPECT_EQ(v, kUntouched) << toUtf8(t);
  }
  // Without the closing bracket it is no list; the leading "(" is no number, so a name.
  EXPECT_EQ(decode(u"(1,2").type, 4);
}

TEST(ParaDecode, SuffixesAreCaseSensitiveAndComeBeforePlainNumbers) {
  Decoded d = decode(u"3px");
  EXPECT_EQ(d.type, 6);
  EXPECT_EQ(d.v[0], Variant(3.0));
  EXPECT_EQ(d.v[1], kUntouched);

  d = decode(u"12pt");
  EXPECT_EQ(d.type, 0);
  EXPECT_EQ(d.v[0], Variant(12.0));

  d = decode(u"10PX");  // falls through to the plain-number rule
  EXPECT_EQ(d.type, 0);
  EXPECT_EQ(d.v[0], Variant(10.0));

  d = decode(u"px");
  EXPECT_EQ(d.type, 6);
  EXPECT_EQ(d.v[0], Variant(0.0));
}

TEST(ParaDecode, PlainNumbersUseTheLeadingNumberWhateverTheLocale) {
  EXPECT_EQ(decode(u"12").v[0], Variant(12.0));
  Decoded d = decode(u"0.5");
  EXPECT_EQ(d.type, 0);
  EXPECT_EQ(d.v[0], Variant(0.5));
  d = decode(u"0");
  EXPECT_EQ(d.type, 0);
  EXPECT_EQ(d.v[0], Variant(0.0));
  d = decode(u"12abc");
  EXPECT_EQ(d.type, 0);
  EXPECT_EQ(d.v[0], Variant(12.0));
  // A zero that is not exactly "0" is no number: "0.0" has a point and so is a file.
  EXPECT_EQ(decode(u"0.0").type, 3);
  EXPECT_EQ(decode(u"00").type, 4);
}

TEST(ParaDecode, StylesFilesAndNames) {
  Decoded d = decode(u"bold");
  EXPECT_EQ(d.type, 5);
  EXPECT_EQ(d.v[0], Variant(u"bold"));  // as given, not upper-cased
  EXPECT_EQ(decode(u"Italic").type, 5);
  EXPECT_EQ(decode(u"UNDERLINE").type, 5);
  EXPECT_EQ(decode(u"bolder").type, 4);

  d = decode(u"Tahoma");
  EXPECT_EQ(d.type, 4);
  EXPECT_EQ(d.v[0], Variant(u"Tahoma"));
  EXPECT_EQ(d.v[1], kUntouched);

  d = decode(u"C:\\x.png");
  EXPECT_EQ(d.type, 3);
  EXPECT_EQ(d.v[0], Variant(u"C:\\x.png"));

  d = decode(u"\"Segoe UI\"");
  EXPECT_EQ(d.type, 4);
  EXPECT_EQ(d.v[0], Variant(u"Segoe UI"));
  d = decode(u"\"Mr. Font\"");  // a quoted name with a point is a file
  EXPECT_EQ(d.type, 3);
  EXPECT_EQ(d.v[0], Variant(u"Mr. Font"));
  // Quotes protect neither style words nor numbers: those rules come first.
  EXPECT_EQ(decode(u"\"bold\"").type, 4);
  EXPECT_EQ(decode(u"\"bold\"").v[0], Variant(u"bold"));
  EXPECT_EQ(decode(u"12\"").type, 0);

  d = decode(u"\"");  // a lone quote is no pair
  EXPECT_EQ(d.type, 4);
  EXPECT_EQ(d.v[0], Variant(u"\""));
  d = decode(u"");
  EXPECT_EQ(d.type, 4);
  EXPECT_EQ(d.v[0], Variant(u""));
}

TEST(ParaTypeText, NamesEveryCodeAndNothingElse) {
  const char16_t* names[] = {u"Unknown", u"Size", u"Color", u"Coord", u"File", u"Name", u"Style", u"Width"};
  for (int32_t code = -1; code <= 6; ++code) EXPECT_EQ(mdl_Global::PARATYPETEXT(code), names[code + 1]);
  EXPECT_EQ(mdl_Global::PARATYPETEXT(7), u"");
  EXPECT_EQ(mdl_Global::PARATYPETEXT(-2), u"");
  EXPECT_EQ(mdl_Global::PARATYPETEXT(INT32_MIN), u"");
}

TEST(Unhex, DigitsDefaultsAndNoClamping) {
  EXPECT_EQ(mdl_Global::UNHEX(u"FF", 0), 255);
  EXPECT_EQ(mdl_Global::UNHEX(u"ff", 0), 255);
  EXPECT_EQ(mdl_Global::UNHEX(u"FFF", 0), 4095);
  EXPECT_EQ(mdl_Global::UNHEX(u"zz", 255), 0);
  EXPECT_EQ(mdl_Global::UNHEX(u"1g", 0), 16);  // a zero digit, still shifting
  EXPECT_EQ(mdl_Global::UNHEX(u"", 7), 7);
  EXPECT_EQ(mdl_Global::UNHEX(u" ", 7), 0);  // not empty: one zero digit
  EXPECT_EQ(mdl_Global::UNHEX(u"7FFFFFFF", 0), INT32_MAX);
  EXPECT_EQ(mdl_Global::UNHEX(u"000000000001", 0), 1);  // leading zeros never overflow
}

TEST(Unhex, OverflowIsAParameterErrorOfUnhex) {
  ErrorCapture quiet;
  for (const char16_t* t : {u"80000000", u"FFFFFFFF", u"123456789", u"1zzzzzzzz"}) {
    try {
      mdl_Global::UNHEX(t, 0);
      ADD_FAILURE() << "no overflow for " << toUtf8(t);
    } catch (const Error& e) {
      EXPECT_EQ(e.number(), static_cast<int32_t>(0x80040006));
      EXPECT_EQ(e.description(), "Ungültiger Parameter (6)");
      EXPECT_EQ(e.source(), "mdl_Global.UNHEX");
    }
  }
  EXPECT_TRUE(quiet.shown.empty());
}

TEST(ParaDecode, ReachableLateBoundWithByRefResults) {
  Ref<Object> module = TypeLib::findClass("mdl_Global")->instance();
  ASSERT_TRUE(module);
  std::vector<Variant> args{Variant(u"(3,4)"), Variant(int16_t(0)), Variant(), Variant(), Variant(),
                            Variant(u"keep")};
  Invoke(module.get(), "paradecode", InvokeKind::Method, std::span<Variant>(args));
  EXPECT_EQ(args[1], Variant(2));
  EXPECT_EQ(args[2], Variant(3.0));
  EXPECT_EQ(args[3], Variant(4.0));
  EXPECT_EQ(args[5], Variant(0.0));

  std::vector<NamedArg> named{{"pType", Variant()}, {"pValue1", Variant()}, {"pValue2", Variant(u"keep")},
                              {"pValue3", Variant()}, {"pValue4", Variant()}, {"pText", Variant(u"Arial")}};
  Invoke(module.get(), "PARADECODE", InvokeKind::Method, {}, std::span<NamedArg>(named));
  EXPECT_EQ(named[0].value, Variant(4));
  EXPECT_EQ(named[1].value, Variant(u"Arial"));
  EXPECT_EQ(named[2].value, Variant(u"keep"));

  EXPECT_EQ(Invoke(module.get(), "PARATYPETEXT", InvokeKind::Method, {Variant(6)}), Variant(u"Width"));
  EXPECT_EQ(Invoke(module.get(), "UNHEX", InvokeKind::Method, {Variant(u"1F"), Variant(0)}), Variant(31));
}

TEST(ParaDecode, EachThreadHasItsOwnSplitter) {
  // Two threads decoding lists at once must not see each other's items.
  auto work = [](std::u16string text, double first, int* wrong) {
    for (int i = 0; i < 2000; ++i) {
      Decoded d = decode(text);
      if (d.type != 2 || !(d.v[0] == Variant(first))) ++*wrong;
    }
  };
  int wrongA = 0, wrongB = 0;
  std::thread a(work, u"(1,2)", 1.0, &wrongA), b(work, u"(7,8)", 7.0, &wrongB);
  a.join();
  b.join();
  EXPECT_EQ(wrongA + wrongB, 0);
}
