// The colour value and its derivations: packing, clamping, protection, the caches and what
// empties them, brightness, contrast colours, mixing and the free-form setter.
#include <tessel/tessel.h>

#include <gtest/gtest.h>

#include <climits>
#include <random>

#include "color/Probes.h"

using namespace tessel;

namespace {

Ref<cls_DrawColor> color(int32_t r, int32_t g, int32_t b, int32_t a = -1) {
  auto c = make<cls_DrawColor>();
  c->RGB(r, g, b, a);
  return c;
}
Variant grey(int v) { return Variant(color(v, v, v)); }

}  // namespace

TEST(DrawColor, PackedHostAndTextForms) {
  auto c = make<cls_DrawColor>();
  EXPECT_EQ(rgba(c), (Channels{0, 0, 0, 255}));
  EXPECT_EQ(c->ATOM(), -16777216);
  EXPECT_EQ(c->BASIC(), 0);
  EXPECT_EQ(c->HTML(), u"#000000");
  c->RGB(1, 2, 3, 4);
  EXPECT_EQ(c->ATOM(), 0x04010203);
  EXPECT_EQ(c->BASIC(), 1 + 2 * 256 + 3 * 65536);
  EXPECT_EQ(color(10, 255, 0)->HTML(), u"#0AFF00");
  const auto held = c->refCount();
  c->INFO();  // no display here: no window, nothing held
  EXPECT_EQ(c->refCount(), held);
  c->ATOM(static_cast<int32_t>(0x80FF0000u));  // the word's alpha is discarded
  EXPECT_EQ(rgba(c), (Channels{255, 0, 0, 255}));
  EXPECT_EQ(rgba(c->COPY(color(1, 2, 3, 4))), (Channels{1, 2, 3, 4}));
  EXPECT_EQ(raisedBy([&] { c->COPY(nullptr); }).source(), "cls_DrawColor.COPY");
}

TEST(DrawColor, RgbClampsAndTreatsMinusOneAsKeepAlpha) {
  auto c = color(0, 0, 0, 77);
  EXPECT_EQ(rgba(c->RGB(300, -5, 128)), (Channels{255, 0, 128, 77}));
  EXPECT_EQ(rgba(c->RGB(1, 2, 3, -2)), (Channels{1, 2, 3, 0}));
  EXPECT_EQ(rgba(c->RGB(INT_MIN, INT_MAX, 0, 300)), (Channels{0, 255, 0, 255}));
  RndSeed();  // 0.7055475, 0.5334240, 0.5795186 times 256, to nearest
  EXPECT_EQ(rgba(color(0, 0, 0, 33)->RANDOM()), (Channels{181, 137, 148, 33}));
}

TEST(DrawColor, ProtectionIgnoresEveryWriterButAtomStillFlushes) {
  auto c = color(10, 20, 30, 40);
  c->PROTECTED(true);
  c->PROTECTED(false);
  EXPECT_TRUE(c->PROTECTED());
  RndSeed();
  c->R(5);
  c->RGB(1, 1, 1, 1);
  c->COPY(color(9, 9, 9));
  c->RANDOM();
  c->SOLID(u"#FFFFFF");
  c->SOLID(255);
  c->SYSCOLOR(enm_SysColor::ID_SysColor_Window);
  c->BASIC(0xFFFFFF);
  EXPECT_EQ(c->MIX(255, u"#FFFFFF", true)->HTML(), u"#FFFFFF");  // a new colour instead
  Ref<cls_DrawColor> contrast = c->CONTRAST();
  c->ATOM(0x00FFFFFF);
  EXPECT_EQ(rgba(c), (Channels{10, 20, 30, 40}));
  EXPECT_NE(c->CONTRAST().get(), contrast.get());
  EXPECT_DOUBLE_EQ(Rnd(), 11837123.0 / (1 << 24));  // RANDOM drew nothing
}

TEST(DrawColor, ChangesEmptyTheCachesExceptBasicLet) {
  auto c = color(100, 100, 100);
  auto first = c->CONTRAST();
  c->R(100);  // the same value: no flush
  EXPECT_EQ(c->CONTRAST().get(), first.get());
  c->RGB(100, 100, 100);  // RGB flushes even when nothing changed
  EXPECT_NE(c->CONTRAST().get(), first.get());
  auto onBlack = c->CONTRASTCOLOR(grey(0));
  c->G(101);
  EXPECT_NE(c->CONTRASTCOLOR(grey(0)).get(), onBlack.get());

  // BASIC let leaves brightness and derived colours describing the old colour (intended).
  auto k = make<cls_DrawColor>();
  EXPECT_EQ(k->BRIGHTNESS(), 0);
  auto kContrast = k->CONTRAST();
  k->BASIC(0xFFFFFF);
  EXPECT_EQ(rgba(k), (Channels{255, 255, 255, 255}));
  EXPECT_EQ(k->BRIGHTNESS(), 0);
  EXPECT_EQ(k->CONTRAST().get(), kContrast.get());
  k->B(254);
  EXPECT_EQ(k->BRIGHTNESS(), 255);

  int32_t r, g, b;  // a system-colour reference is translated
  mdl_Basalt::SplitRGB(mdl_Basalt::SysColor(enm_SysColor::ID_SysColor_Highlight), r, g, b);
  k->BASIC(static_cast<int32_t>(0x8000000Du));
  EXPECT_EQ(rgba(k), (Channels{r, g, b, 255}));
  Error e = raisedBy([&] { k->BASIC(0x01000000); });
  EXPECT_EQ(e.number(), objectError(5));
  EXPECT_EQ(e.source(), "cls_DrawColor.BASIC.LET");
  EXPECT_EQ(rgba(k), (Channels{r, g, b, 255}));
}

TEST(DrawColor, DerivationsLeaveTheOriginalAlone) {
  auto c = color(10, 20, 30, 100);
  c->PROTECTED(true);  // does not matter for derivations
  EXPECT_EQ(rgba(c->MODIFYA(-1)), (Channels{10, 20, 30, 255}));  // a new colour starts opaque
  EXPECT_EQ(rgba(c->MODIFYR(300)), (Channels{255, 20, 30, 100}));
  EXPECT_EQ(rgba(c->MODIFYB(7)), (Channels{10, 20, 7, 100}));
  EXPECT_FALSE(c->CLONE()->PROTECTED());
  EXPECT_EQ(rgba(c->BRIGHTER(240)), (Channels{250, 255, 255, 100}));
  EXPECT_EQ(rgba(c->DARKER(15)), (Channels{0, 5, 15, 100}));
  EXPECT_EQ(rgba(c), (Channels{10, 20, 30, 100}));
  EXPECT_EQ(rgba(make<cls_DrawColor>()->BRIGHTER(INT_MAX)), (Channels{255, 255, 255, 255}));
  Error e = raisedBy([&] { c->BRIGHTER(INT_MAX); });
  EXPECT_EQ(e.number(), objectError(6));
  EXPECT_EQ(e.source(), "cls_DrawColor.BRIGHTER");
  EXPECT_EQ(raisedBy([&] { c->DARKER(INT_MIN); }).source(), "cls_DrawColor.DARKER");
}

TEST(DrawColor, BrightnessAndContrast) {
  EXPECT_EQ(color(255, 0, 0)->BRIGHTNESS(), 76);
  EXPECT_EQ(color(0, 255, 0)->BRIGHTNESS(), 128);  // 127.5 to even
  EXPECT_EQ(color(0, 0, 255)->BRIGHTNESS(), 51);
  EXPECT_EQ(color(255, 255, 255, 0)->BRIGHTNESS(), 255);
  EXPECT_EQ(color(0, 1, 0)->BRIGHTNESS(), 0);  // 0.5 to even
  auto at150 = color(150, 150, 150, 60);
  ASSERT_EQ(at150->BRIGHTNESS(), 150);
  EXPECT_EQ(rgba(at150->CONTRAST()), (Channels{255, 255, 255, 60}));
  EXPECT_EQ(at150->CONTRAST().get(), at150->CONTRAST().get());
  EXPECT_EQ(rgba(color(151, 151, 151)->CONTRAST()), (Channels{0, 0, 0, 255}));
}

TEST(DrawColor, ContrastColorMixesTowardTheFactorysWhiteOrBlack) {
  auto white = color(255, 255, 255);
  EXPECT_EQ(rgba(color(0, 0, 0)->CONTRASTCOLOR(u"#000000")), (Channels{128, 128, 128, 255}));
  EXPECT_EQ(rgba(white->CONTRASTCOLOR(u"white")), (Channels{127, 127, 127, 255}));
  auto clone = white->CONTRASTCOLOR(grey(0));  // contrast enough already
  EXPECT_EQ(rgba(clone), rgba(white));
  EXPECT_NE(clone.get(), white.get());
  // Darker than a dark background: 200 toward white; brighter than a light one: 200 toward black.
  auto blue = color(0, 0, 100, 77);
  auto onGrey = blue->CONTRASTCOLOR(grey(100));
  EXPECT_EQ(rgba(onGrey), (Channels{200, 200, 222, 77}));
  EXPECT_EQ(rgba(white->CONTRASTCOLOR(grey(200))), (Channels{55, 55, 55, 255}));
  // Equal brightness shares the cached answer, whatever the hue.
  EXPECT_EQ(blue->CONTRASTCOLOR(Variant(color(50, 140, 75))).get(), onGrey.get());

  auto factory = mdl_Global::DRAW()->COLOR();
  auto savedWhite = factory->WHITE();
  factory->WHITE(color(255, 0, 0));
  EXPECT_EQ(rgba(color(0, 0, 0)->CONTRASTCOLOR(u"#000000")), (Channels{128, 0, 0, 255}));
  factory->WHITE(nullptr);
  EXPECT_EQ(raisedBy([&] { color(0, 0, 0)->CONTRASTCOLOR(u"#000000"); }).source(), "cls_DrawColor.CONTRASTCOLOR");
  factory->WHITE(savedWhite);
  EXPECT_EQ(raisedBy([&] { blue->CONTRASTCOLOR(Variant::null()); }).number(), objectError(94));
}

TEST(DrawColor, ContrastColorNeverEvictsTheFifthSlot) {
  auto c = color(0, 0, 0);
  std::array<Ref<cls_DrawColor>, 5> firstFive;
  for (int i = 0; i < 5; ++i) firstFive[i] = c->CONTRASTCOLOR(grey(10 + i));
  RndSeed();  // the next draw is 0.7055…: slot 3 goes
  c->CONTRASTCOLOR(grey(100));
  for (int i : {4, 0, 1, 3}) EXPECT_EQ(c->CONTRASTCOLOR(grey(10 + i)).get(), firstFive[i].get()) << i;
  EXPECT_NE(c->CONTRASTCOLOR(grey(12)).get(), firstFive[2].get());
  for (int v = 150; v < 250; ++v) c->CONTRASTCOLOR(grey(v));
  EXPECT_EQ(c->CONTRASTCOLOR(grey(14)).get(), firstFive[4].get());
}

TEST(DrawColor, MixExtrapolatesClampsAndNeverMixesAlpha) {
  auto black = color(0, 0, 0, 40);
  EXPECT_EQ(rgba(black->MIX(255, u"#FF0000")), (Channels{255, 0, 0, 40}));
  auto g = color(100, 100, 100);
  EXPECT_EQ(rgba(g->MIX(510, u"#FFFFFF")), (Channels{255, 255, 255, 255}));
  EXPECT_EQ(rgba(g->MIX(-255, u"#FFFFFF")), (Channels{0, 0, 0, 255}));
  EXPECT_EQ(rgba(g->MIX(128, u"#000064")), (Channels{50, 50, 100, 255}));  // 49.8 to nearest
  // Any object with R, G and B mixes in, whatever the types of its values.
  auto probe = make<cls_ChannelProbe>(Variant(u"12"), Variant(1000.0), Variant(-3), Variant());
  EXPECT_EQ(rgba(black->MIX(255, Variant(probe))), (Channels{12, 255, 0, 40}));
  EXPECT_EQ(black->MIX(255, u"#FFFFFF", true).get(), black.get());
  EXPECT_EQ(rgba(black), (Channels{255, 255, 255, 40}));
  Error e = raisedBy([&] { black->MIX(10, Variant(make<cls_DrawToolColor>())); });
  EXPECT_EQ(e.number(), objectError(438));
  EXPECT_EQ(e.source(), "cls_DrawColor.MIX");
}

TEST(DrawColor, SolidReadsHexTextNamesNumbersAndObjects) {
  auto c = color(9, 9, 9, 9);
  EXPECT_EQ(rgba(c->SOLID(u"#0080FF")), (Channels{0, 128, 255, 255}));
  EXPECT_EQ(rgba(c->SOLID(u"#0080ff40")), (Channels{0, 128, 255, 64}));
  EXPECT_EQ(rgba(c->SOLID(u"#F")), (Channels{15, 255, 255, 255}));  // missing pieces read 255
  c->A(7);
  EXPECT_EQ(rgba(c->SOLID(u"Red")), (Channels{255, 0, 0, 7}));
  EXPECT_EQ(rgba(c->SOLID(u"")), (Channels{255, 0, 255, 7}));  // no "#": an unknown name
  EXPECT_EQ(rgba(c->SOLID(Variant(u"255"))), (Channels{255, 0, 255, 7}));  // a text is never a number
  EXPECT_EQ(rgba(c->SOLID(255)), (Channels{255, 0, 0, 7}));
  EXPECT_EQ(rgba(c->SOLID(16711680.4)), (Channels{0, 0, 255, 7}));
  EXPECT_EQ(rgba(c->SOLID(static_cast<int32_t>(0x80000005u))), (Channels{5, 0, 0, 7}));  // no system lookup
  EXPECT_EQ(rgba(c->SOLID(Variant())), (Channels{0, 0, 0, 7}));
  auto probe = make<cls_ChannelProbe>(Variant(1), Variant(2.0), Variant(u"3"), Variant(uint8_t(4)));
  EXPECT_EQ(rgba(c->SOLID(Variant(probe))), (Channels{1, 2, 3, 4}));

  // Channel by channel: a text naming the current colour flushes nothing.
  c->SOLID(u"#0080FF");
  auto contrast = c->CONTRAST();
  c->SOLID(u"#0080FF");
  EXPECT_EQ(c->CONTRAST().get(), contrast.get());

  for (const Variant& bad : {Variant::null(), Variant::missing(), Variant(1e12), Variant(make<cls_DrawToolColor>()),
                             Variant(make<cls_ChannelProbe>(Variant(300), Variant(), Variant(), Variant()))})
    EXPECT_EQ(raisedBy([&] { c->SOLID(bad); }).source(), "cls_DrawColor.SOLID") << typeName(bad);

  std::mt19937 gen(7);
  const std::u16string alphabet = u"#0123456789abcdefABCDEFxyz -\u00e9";
  for (int i = 0; i < 3000; ++i) {
    std::u16string s(u"#");
    for (int n = gen() % 12; n > 0; --n) s += alphabet[gen() % alphabet.size()];
    EXPECT_NO_THROW(c->SOLID(s)) << toUtf8(s);
  }
}

TEST(DrawColor, SysColorKeepsAlphaAndRejectsUnknownIndices) {
  int32_t r, g, b;
  mdl_Basalt::SplitRGB(mdl_Basalt::SysColor(enm_SysColor::ID_SysColor_Window), r, g, b);
  auto c = color(0, 0, 0, 12);
  EXPECT_EQ(rgba(c->SYSCOLOR(enm_SysColor::ID_SysColor_Window)), (Channels{r, g, b, 12}));
  EXPECT_EQ(raisedBy([&] { c->SYSCOLOR(static_cast<enm_SysColor>(25)); }).number(), objectError(5));
}

TEST(DrawColor, ReachableByName) {
  auto c = TypeLib::findClass("cls_DrawColor")->create();
  EXPECT_EQ(Invoke(c.get(), "rgb", InvokeKind::Method, {1, 2, 3}).obj(), c.get());
  std::vector<Variant> args{Variant(255), Variant(u"#FFFFFF")};
  std::vector<NamedArg> named{{"pSetSelf", Variant(true)}};
  Invoke(c.get(), "MIX", InvokeKind::Method, std::span<Variant>(args), std::span<NamedArg>(named));
  EXPECT_EQ(Invoke(c.get(), "ATOM", InvokeKind::Get), Variant(-1));
  EXPECT_EQ(raisedBy([&] { Invoke(c.get(), "R", InvokeKind::Let, {300}); }).source(), "cls_DrawColor.R.LET");
}
