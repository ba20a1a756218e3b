// The core-library services: the splitter, host-colour translation with system colours,
// the theme, colour names, and the two enumerations in the type library.
#include <tessel/core/Error.h>
#include <tessel/core/Text.h>
#include <tessel/core/TypeLib.h>
#include <tessel/core/mdl_Basalt.h>

#include <gtest/gtest.h>

#include "TestSupport.h"

#include <algorithm>

using namespace tessel;
using namespace tessel::mdl_Basalt;

namespace {

using Items = std::vector<std::u16string>;

// The way pen and font descriptions are split.
Items splitDescription(std::u16string_view text) { return Split(text, u',', u"(", u")", u'"'); }

int32_t rgb(int r, int g, int b) { return r + g * 256 + b * 65536; }

}  // namespace

TEST(Splitter, PlainSplittingKeepsBlanksAndEmptyItems) {
  EXPECT_EQ(Split(u"a, b ,,c", u','), (Items{u"a", u" b ", u"", u"c"}));
  EXPECT_EQ(Split(u",", u','), (Items{u"", u""}));
  EXPECT_EQ(Split(u"abc", u','), (Items{u"abc"}));
  EXPECT_TRUE(Split(u"", u',').empty());
  // Without bracket characters brackets are ordinary: the parameter language splits so.
  EXPECT_EQ(Split(u"(1,2),3", u','), (Items{u"(1", u"2)", u"3"}));
}

TEST(Splitter, BracketsNestAndQuotesProtect) {
  EXPECT_EQ(splitDescription(u"(255,0,0),3px"), (Items{u"(255,0,0)", u"3px"}));
  EXPECT_EQ(splitDescription(u"((1,2),(3,4)),x"), (Items{u"((1,2),(3,4))", u"x"}));
  EXPECT_EQ(splitDescription(u"\"Font, Inc.\",12pt"), (Items{u"\"Font, Inc.\"", u"12pt"}));
  // Brackets inside quotes do not count, and quotes inside brackets still protect.
  EXPECT_EQ(splitDescription(u"\"(\",a,b"), (Items{u"\"(\"", u"a", u"b"}));
  EXPECT_EQ(splitDescription(u"(\")\",1),2"), (Items{u"(\")\",1)", u"2"}));
  // Doubled quotes close and reopen: the text stays protected.
  EXPECT_EQ(splitDescription(u"\"a\"\",b\",c"), (Items{u"\"a\"\",b\"", u"c"}));
  // Several bracket pairs, each closing only its own kind.
  EXPECT_EQ(Split(u"[a,(b],c)],d", u',', u"([", u")]"), (Items{u"[a,(b],c)]", u"d"}));
}

TEST(Splitter, UnbalancedInputNeverLosesText) {
  EXPECT_EQ(splitDescription(u"a),b"), (Items{u"a)", u"b"}));       // a stray close is ordinary
  EXPECT_EQ(splitDescription(u"(a,b"), (Items{u"(a,b"}));           // an open bracket runs to the end
  EXPECT_EQ(splitDescription(u"\"a,b"), (Items{u"\"a,b"}));          // so does an open quote
  EXPECT_EQ(splitDescription(u"a,\"b,(c"), (Items{u"a", u"\"b,(c"}));
  // A NUL in the text is no quote when no quote character is given.
  std::u16string withNul = u"a";
  withNul += char16_t(0);
  withNul += u",b";
  EXPECT_EQ(Split(withNul, u','), (Items{std::u16string(u"a") + char16_t(0), u"b"}));
}

TEST(Splitter, ListReadsByPositionAndIsEmptyBeyondTheCount) {
  SplitList list(u"x,(1,2)", u',', u"(", u")");
  EXPECT_EQ(list.count(), 2);
  EXPECT_EQ(list.item(1), u"x");
  EXPECT_EQ(list.item(2), u"(1,2)");
  EXPECT_EQ(list.item(3), u"");
  EXPECT_EQ(list.item(0), u"");
  EXPECT_EQ(list.item(-5), u"");
  list.split(u"only", u',');
  EXPECT_EQ(list.count(), 1);
  EXPECT_EQ(list.item(2), u"");
  EXPECT_EQ(SplitList().count(), 0);
}

TEST(HostColours, PlainColoursPassAndSplitRedLowByte) {
  EXPECT_EQ(TranslateColor(rgb(1, 2, 3)), rgb(1, 2, 3));
  EXPECT_EQ(TranslateColor(0xFFFFFF), 0xFFFFFF);
  int32_t r = -1, g = -1, b = -1;
  SplitRGB(16711680, r, g, b);  // the host's vbBlue
  EXPECT_EQ(r, 0);
  EXPECT_EQ(g, 0);
  EXPECT_EQ(b, 255);
  SplitRGB(static_cast<int32_t>(0xFF102030), r, g, b);  // a high byte is not a channel
  EXPECT_EQ(r, 0x30);
  EXPECT_EQ(g, 0x20);
  EXPECT_EQ(b, 0x10);
}

TEST(HostColours, SystemReferencesTranslateThroughTheTheme) {
  const int32_t sys = static_cast<int32_t>(0x80000000);
  EXPECT_EQ(TranslateColor(sys + 13), SysColor(enm_SysColor::ID_SysColor_Highlight));
  EXPECT_EQ(SysColor(enm_SysColor::ID_SysColor_Highlight), rgb(10, 36, 106));
  EXPECT_EQ(TranslateColor(sys + 5), rgb(255, 255, 255));  // window
  EXPECT_EQ(TranslateColor(sys + 8), rgb(0, 0, 0));        // window text
  EXPECT_EQ(TranslateColor(sys + 15), rgb(212, 208, 200)); // button face
  EXPECT_EQ(TranslateColor(sys + 24), rgb(255, 255, 225)); // tooltip background
  EXPECT_EQ(TranslateColor(sys + 30), rgb(212, 208, 200)); // menu bar
}

TEST(HostColours, InvalidValuesRaiseInvalidCall) {
  const int32_t sys = static_cast<int32_t>(0x80000000);
  EXPECT_EQ(raisedNumber([&] { TranslateColor(sys + 31); }), rt::InvalidCall);
  EXPECT_EQ(raisedNumber([&] { TranslateColor(sys + 25); }), rt::InvalidCall);  // no colour 25
  EXPECT_EQ(raisedNumber([&] { TranslateColor(sys + 0x1000000 - 1); }), rt::InvalidCall);
  EXPECT_EQ(raisedNumber([] { TranslateColor(0x01000000); }), rt::InvalidCall);  // palette-style values
  EXPECT_EQ(raisedNumber([] { TranslateColor(-1); }), rt::InvalidCall);
  EXPECT_EQ(raisedNumber([] { SysColor(static_cast<enm_SysColor>(-1)); }), rt::InvalidCall);
  EXPECT_EQ(raisedNumber([] { SysColor(static_cast<enm_SysColor>(31)); }), rt::InvalidCall);
  EXPECT_EQ(raisedNumber([] { SysColor(static_cast<enm_SysColor>(25)); }), rt::InvalidCall);
}

TEST(ColourNames, CssNamesInAnyCaseWithRedLow) {
  const int32_t magenta = 16711935;
  EXPECT_EQ(ColorFromName(u"red", magenta), rgb(255, 0, 0));
  EXPECT_EQ(ColorFromName(u"RebeccaPurple", magenta), rgb(0x66, 0x33, 0x99));
  EXPECT_EQ(ColorFromName(u"LIGHTGOLDENRODYELLOW", magenta), rgb(0xFA, 0xFA, 0xD2));
  EXPECT_EQ(ColorFromName(u"aliceblue", magenta), rgb(0xF0, 0xF8, 0xFF));   // ends of the search
  EXPECT_EQ(ColorFromName(u"yellowgreen", magenta), rgb(0x9A, 0xCD, 0x32));
  EXPECT_EQ(ColorFromName(u"darkslategrey", 0), ColorFromName(u"DarkSlateGray", 0));
  EXPECT_EQ(ColorFromName(u"green", 0), rgb(0, 128, 0));  // not the X11 green
  EXPECT_EQ(ColorFromName(u" navy\t", 0), rgb(0, 0, 128));
  EXPECT_EQ(ColorFromName(u"black", magenta), 0);
}

TEST(ColourNames, UnknownNamesGiveTheDefault) {
  const int32_t magenta = 16711935;
  for (const char16_t* t : {u"", u"   ", u"redd", u"re", u"transparent", u"#FF0000", u"dark gray",
                            u"lightgoldenrodyellowx", u"r\u00E9d", u"\u0130ndigo"})
    EXPECT_EQ(ColorFromName(t, magenta), magenta) << toUtf8(t);
  EXPECT_EQ(ColorFromName(u"nothing", 42), 42);
}

TEST(Enumerations, RegisteredWithTheirValues) {
  auto find = [](std::string_view name) -> const EnumInfo* {
    for (auto& e : TypeLib::enums())
      if (e.name == name) return &e;
    return nullptr;
  };
  const EnumInfo* align = find("enm_TextAlign");
  ASSERT_NE(align, nullptr);
  ASSERT_EQ(align->members.size(), 12u);
  // value / 4 is the row, value mod 4 the column; names say so.
  const char* rows[] = {"Middle", "Top", "Bottom"};
  const char* cols[] = {"Left", "Center", "Right", "Block"};
  for (auto& [name, value] : align->members)
    EXPECT_EQ(name, std::string("ID_TextAlign_") + cols[value % 4] + rows[value / 4]);

  const EnumInfo* sys = find("enm_SysColor");
  ASSERT_NE(sys, nullptr);
  EXPECT_EQ(sys->members.size(), 30u);
  for (auto& [name, value] : sys->members) EXPECT_NO_THROW(SysColor(static_cast<enm_SysColor>(value))) << name;
}
