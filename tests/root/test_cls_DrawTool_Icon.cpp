// The root's icons: drawn inside their box in the colour asked for, names matched loosely,
// flags honoured, badges with their glyph cut out, the surface's smoothing put back.
#include <tessel/tessel.h>

#include <gtest/gtest.h>

#include "TestSupport.h"
#include "resources/Canvas.h"

using namespace tessel;
namespace gp = tessel::mdl_GDIPlus;

namespace {

constexpr gp::ARGB kWhite = 0xFFFFFFFF;

// A 60 × 60 white bitmap with a surface on it, as a registered device context.
class Target : public Canvas {
 public:
  Target() : Canvas(60, 60), g(make<cls_DrawGraphics>()) {
    gp::RegisterHDC(graphics());
    g->CONNECTDC(1, reinterpret_cast<intptr_t>(graphics()));
  }
  ~Target() {
    g->RELEASE();
    gp::UnregisterHDC(graphics());
  }
  // Pixels that are not white inside (x0..x1, y0..y1), and those of exactly `colour`.
  int ink(int x0, int y0, int x1, int y1) const { return count(x0, y0, x1, y1, [](gp::ARGB c) { return c != kWhite; }); }
  int exactly(gp::ARGB colour) const { return count(0, 0, 59, 59, [&](gp::ARGB c) { return c == colour; }); }

  Ref<cls_DrawGraphics> g;

 private:
  template <class F>
  int count(int x0, int y0, int x1, int y1, F&& is) const {
    int n = 0;
    for (int y = y0; y <= y1; ++y)
      for (int x = x0; x <= x1; ++x) n += is(peek(x, y));
    return n;
  }
};

Ref<cls_DrawTool> draw() { return mdl_Global::DRAW(); }
Variant rect(int x, int y, int w, int h) { return Variant(draw()->RECT()->RECT(Variant(x), y, w, h)); }

class Icons : public testing::Test {
 protected:
  void SetUp() override { draw()->INIT(); }
};

}  // namespace

TEST_F(Icons, KnownNamesDrawInsideTheirBoxUnknownOnesNothing) {
  for (const char16_t* name : {u"close", u"Arrow-Up", u"ARROW_LEFT", u"menu", u"search", u"info", u"warning",
                               u"error", u"restore", u"check"}) {
    Target t;
    EXPECT_TRUE(draw()->ICON(t.g, name, rect(10, 10, 40, 40))) << toUtf8(name);
    EXPECT_GT(t.ink(10, 10, 49, 49), 40) << toUtf8(name);
    EXPECT_EQ(t.ink(0, 0, 59, 8) + t.ink(0, 51, 59, 59) + t.ink(0, 0, 8, 59) + t.ink(51, 0, 59, 59), 0)
        << toUtf8(name);
  }
  Target t;
  EXPECT_FALSE(draw()->ICON(t.g, u"teapot", rect(10, 10, 40, 40)));
  EXPECT_FALSE(draw()->ICON(t.g, u"", rect(10, 10, 40, 40)));
  EXPECT_EQ(t.ink(0, 0, 59, 59), 0);
  EXPECT_EQ(raisedNumber([&] { draw()->ICON(nullptr, u"close", rect(0, 0, 10, 10)); }), objectError(rt::ObjectNotSet));

  // A surface that cannot draw: the name is still known, nothing fails.
  EXPECT_TRUE(draw()->ICON(make<cls_DrawGraphics>(), u"plus", rect(0, 0, 10, 10)));
}

TEST_F(Icons, ColourDefaultsToTheLineColourAndFlagsOverride) {
  Target plain, coloured, flagged;
  draw()->ICON(plain.g, u"maximize", rect(0, 0, 60, 60));
  EXPECT_GT(plain.exactly(0xFF000000), 100);  // COLOR2, opaque black
  draw()->ICON(coloured.g, u"maximize", rect(0, 0, 60, 60), Variant(u"#FF0000"));
  EXPECT_GT(coloured.exactly(0xFFFF0000), 100);
  auto flags = make<cls_DrawFlags>();
  flags->SETFLAG(u"COLOR", Variant(u"#0000FF"))->SETFLAG(u"STROKE", 1.0);
  draw()->ICON(flagged.g, u"maximize", rect(0, 0, 60, 60), Variant(u"#FF0000"), flags);
  EXPECT_EQ(flagged.exactly(0xFFFF0000), 0);
  EXPECT_GT(flagged.ink(0, 0, 59, 59), 0);
  EXPECT_LT(flagged.ink(0, 0, 59, 59), plain.ink(0, 0, 59, 59) / 2);  // a thinner stroke
}

TEST_F(Icons, WidthAndHeightSizeTheIconInsideItsBox) {
  Target square, stretched;
  auto small = make<cls_DrawFlags>();
  small->SETFLAG(u"WIDTH", int32_t(24));
  draw()->ICON(square.g, u"maximize", rect(0, 0, 60, 60), Variant::missing(), small);
  EXPECT_EQ(square.ink(0, 0, 59, 15) + square.ink(0, 44, 59, 59), 0);  // 24 square, centred: 18 to 41
  EXPECT_GT(square.ink(18, 18, 41, 41), 0);

  auto wide = make<cls_DrawFlags>();
  wide->SETFLAG(u"WIDTH", int32_t(60))->SETFLAG(u"HEIGHT", int32_t(24));
  draw()->ICON(stretched.g, u"maximize", rect(0, 0, 60, 60), Variant::missing(), wide);
  EXPECT_EQ(stretched.ink(0, 0, 59, 15) + stretched.ink(0, 44, 59, 59), 0);
  EXPECT_GT(stretched.ink(0, 18, 14, 41), 0);  // reaches out to the sides

  auto bad = make<cls_DrawFlags>();
  bad->SETFLAG(u"STROKE", -1);
  EXPECT_EQ(raisedNumber([&] { draw()->ICON(square.g, u"plus", rect(0, 0, 10, 10), Variant::missing(), bad); }),
            objectError(rt::InvalidCall));
}

TEST_F(Icons, BadgesCutTheirGlyphOutAndSmoothingIsPutBack) {
  Target t;
  t.g->SMOOTHING(enm_Draw_SmoothingMode::ID_Draw_SmoothingHighSpeed);
  const auto before = t.g->SMOOTHING();
  draw()->ICON(t.g, u"info", rect(0, 0, 48, 48), Variant(u"#000000"));
  EXPECT_EQ(t.g->SMOOTHING(), before);
  EXPECT_EQ(t.peek(6, 24), 0xFF000000u);  // the disc
  EXPECT_EQ(t.peek(24, 28), kWhite);      // the bar of the "i", cut out
  EXPECT_EQ(t.peek(24, 15), kWhite);      // its dot
}
