// What the surface draws: shapes with their defaults and empty resources, clipping, clearing,
// rendering modes, text (plain, outlined, turned, measured), projection and images. Drawn on a
// registered device context, whose one graphics keeps its state between calls, and read back
// pixel by pixel.
#include <tessel/color/cls_DrawColor.h>
#include <tessel/geometry/cls_DrawPoint.h>
#include <tessel/graphics/cls_DrawGraphics.h>
#include <tessel/images/cls_DrawImage.h>
#include <tessel/resources/cls_DrawFont.h>
#include <tessel/resources/cls_DrawPath.h>
#include <tessel/root/cls_DrawTool.h>

#include <gtest/gtest.h>

#include <cmath>

#include "TestSupport.h"
#include "resources/Canvas.h"

using namespace tessel;
namespace gp = tessel::mdl_GDIPlus;

namespace {

constexpr gp::ARGB kWhite = 0xFFFFFFFF, kBlack = 0xFF000000, kRed = 0xFFFF0000, kBlue = 0xFF0000FF;

// A bitmap of w × h whose graphics is registered as a device context, with a surface on it.
class Target : public Canvas {
 public:
  Target(int w, int h) : Canvas(w, h), g(make<cls_DrawGraphics>()) {
    gp::RegisterHDC(graphics());
    auto flags = make<cls_DrawFlags>();
    flags->SETFLAG(u"WIDTH", int32_t(w))->SETFLAG(u"HEIGHT", int32_t(h));
    g->CONNECTDC(1, reinterpret_cast<intptr_t>(graphics()), flags);
  }
  ~Target() {
    g->RELEASE();
    gp::UnregisterHDC(graphics());
  }
  // Pixels of the rectangle (x0..x1, y0..y1 inclusive) that are `colour`.
  int count(gp::ARGB colour, int x0, int y0, int x1, int y1) const {
    int n = 0;
    for (int y = y0; y <= y1; ++y)
      for (int x = x0; x <= x1; ++x) n += peek(x, y) == colour;
    return n;
  }
  int ink(int x0, int y0, int x1, int y1) const {
    return (x1 - x0 + 1) * (y1 - y0 + 1) - count(kWhite, x0, y0, x1, y1);
  }

  Ref<cls_DrawGraphics> g;
};

Ref<cls_DrawTool> draw() { return mdl_Global::DRAW(); }
Variant rect(float x, float y, float w, float h) { return Variant(draw()->RECT()->RECT(Variant(x), y, w, h)); }
Variant point(double x, double y) { return Variant(draw()->POINT()->POINT(x, y)); }
Variant brush(const char16_t* colour) { return Variant(draw()->BRUSH()->SOLID(Variant(colour))); }
Variant pen(const char16_t* colour, float width = 1) { return Variant(draw()->PEN()->SOLID(Variant(colour), width)); }
Variant noBrush() { return Variant(draw()->BRUSH()->NONE()); }
Variant noPen() { return Variant(draw()->PEN()->NONE()); }
std::string info(const Ref<Object>& o) { return Invoke(o.get(), "INFO", InvokeKind::Method).toUtf8(); }
std::string xy(const Ref<Object>& point) {
  auto* p = dynamic_cast<cls_DrawPoint*>(point.get());
  return p ? "(" + std::to_string(std::lround(p->X())) + "," + std::to_string(std::lround(p->Y())) + ")" : "none";
}

class Drawing : public testing::Test {
 protected:
  void SetUp() override { draw()->INIT(); }
};

}  // namespace

TEST_F(Drawing, ShapesFillInsideAndOutlineOnTheEdgeOverTheFill) {
  Target t(40, 40);
  t.g->RECTANGLE(rect(10, 10, 20, 20), brush(u"#FF0000"), pen(u"#0000FF"));
  EXPECT_EQ(t.peek(20, 20), kRed);
  EXPECT_EQ(t.peek(10, 10), kBlue);  // the outline lies on the fill's first row
  EXPECT_EQ(t.peek(30, 20), kBlue);  // and one past its last column: a pen draws W + 1 wide
  EXPECT_EQ(t.peek(9, 20), kWhite);
  EXPECT_EQ(t.peek(31, 20), kWhite);

  // Omitted: the surface's white brush and black pen; a replaced default is used from then on.
  gp::GdipGraphicsClear(t.graphics(), kBlue);
  t.g->ELLIPSE(rect(0, 0, 39, 39));
  EXPECT_EQ(t.peek(20, 20), kWhite);
  EXPECT_EQ(t.peek(0, 20), kBlack);
  t.g->BRUSH(draw()->BRUSH()->SOLID(Variant(u"#FF0000")));
  t.g->PIE(rect(0, 0, 39, 39), 0, 90);
  EXPECT_EQ(t.peek(28, 28), kRed);   // the quarter below right
  EXPECT_EQ(t.peek(12, 12), kWhite);  // the ellipse from before
}

TEST_F(Drawing, EmptyResourcesSkipTheirStep) {
  Target t(30, 30);
  t.g->RECTANGLE(rect(5, 5, 20, 20), brush(u"#FF0000"), noPen());
  EXPECT_EQ(t.peek(5, 5), kRed);
  EXPECT_EQ(t.count(kBlack, 0, 0, 29, 29), 0);
  t.g->RECTANGLE(Variant(u"(5,5,20,20)"), Variant(u"None"), pen(u"#0000FF"));  // "none" in any case
  EXPECT_EQ(t.peek(15, 15), kRed);  // the fill from before, untouched
  EXPECT_EQ(t.peek(5, 15), kBlue);

  // FILL with an empty brush draws nothing at all, not even the default outline.
  t.g->FILL(noBrush());
  EXPECT_EQ(t.peek(0, 0), kWhite);
  t.g->FILL(brush(u"#00FF00"));
  EXPECT_EQ(t.count(0xFF00FF00, 0, 0, 29, 29), 30 * 30);  // grown by 1: its outline lies outside
}

TEST_F(Drawing, AnEllipseIsFilledWhereItIsAndOutlinedWhereItRounds) {
  Target t(40, 20);
  t.g->ELLIPSE(rect(2.5f, 2, 30, 15), brush(u"#FF0000"), noPen());
  Target u(40, 20);
  u.g->ELLIPSE(rect(2, 2, 30, 15), brush(u"#FF0000"), noPen());
  Target v(40, 20);
  v.g->ELLIPSE(rect(2.5f, 2, 30, 15), noBrush(), pen(u"#0000FF"));
  Target w(40, 20);
  w.g->ELLIPSE(rect(2, 2, 30, 15), noBrush(), pen(u"#0000FF"));
  int fillsDiffer = 0, outlinesDiffer = 0;
  for (int y = 0; y < 20; ++y)
    for (int x = 0; x < 40; ++x) {
      fillsDiffer += t.peek(x, y) != u.peek(x, y);
      outlinesDiffer += v.peek(x, y) != w.peek(x, y);
    }
  EXPECT_GT(fillsDiffer, 0);
  EXPECT_EQ(outlinesDiffer, 0);  // 2.5 rounds to 2
}

TEST_F(Drawing, LinesRunFromCornerToCornerEvenWithAnEmptyPen) {
  Target t(20, 20);
  t.g->LINES(rect(2, 2, 15, 1), pen(u"#0000FF"));
  EXPECT_EQ(t.count(kBlue, 0, 2, 19, 2), 15);  // (2,2) to (16,2)
  t.g->LINES(rect(2, 10, 15, 1), noPen());     // refused by the platform, silently
  EXPECT_EQ(t.count(kWhite, 0, 3, 19, 19), 20 * 17);
}

TEST_F(Drawing, ClipsNarrowUntilReset) {
  Target t(40, 40);
  auto left = make<cls_DrawPath>();
  left->RECT(rect(0, 0, 25, 40));
  t.g->CLIP(Variant(left));
  t.g->CLIP(rect(15, 0, 25, 40));  // a rectangle clips as itself
  t.g->FILL(brush(u"#FF0000"));
  EXPECT_EQ(t.count(kRed, 0, 0, 39, 0), 10);  // 15 to 24 only
  t.g->CLIPRESET();
  t.g->FILL(brush(u"#0000FF"));
  EXPECT_EQ(t.count(kBlue, 0, 0, 39, 39), 40 * 40);

  // A loose path goes to a path's default member, which it has not.
  EXPECT_EQ(raisedNumber([&] { t.g->CLIP(Variant(u"(0,0,10,10)")); }), objectError(rt::NoSuchMember));
}

TEST_F(Drawing, ClearTakesAColourObjectOnly) {
  Target t(10, 10);
  auto colour = make<cls_DrawColor>();
  colour->RGB(0, 0, 255, 255);
  t.g->CLEAR(Variant(colour));
  EXPECT_EQ(t.peek(5, 5), kBlue);
  // A loose colour becomes a point, which has no ATOM (kept as it is).
  EXPECT_EQ(raisedNumber([&] { t.g->CLEAR(Variant(int32_t(255))); }), objectError(rt::NoSuchMember));
  EXPECT_EQ(raisedNumber([&] { t.g->CLEAR(Variant(u"#FF0000")); }), objectError(rt::TypeMismatch));
  EXPECT_EQ(t.peek(5, 5), kBlue);
}

TEST_F(Drawing, RenderingModesPassAsTheirLetsSayAndReadWhatThePlatformHolds) {
  Target t(10, 10);
  using S = enm_Draw_SmoothingMode;
  t.g->SMOOTHING(S::ID_Draw_SmoothingHighSpeed);
  const S speed = t.g->SMOOTHING();
  t.g->SMOOTHING(S::ID_Draw_SmoothingNone);  // passed as HighSpeed
  EXPECT_EQ(t.g->SMOOTHING(), speed);
  t.g->SMOOTHING(S::ID_Draw_SmoothingHighQuality);
  const S quality = t.g->SMOOTHING();
  t.g->SMOOTHING(S::ID_Draw_SmoothingAntiAlias);  // passed as HighQuality
  EXPECT_EQ(t.g->SMOOTHING(), quality);
  EXPECT_NE(quality, speed);

  using C = enm_Draw_CompositingQuality;
  t.g->CompositingQuality(C::ID_Draw_CompositingQualityHighQuality);
  int stored = -1;
  gp::GdipGetCompositingQuality(t.g->graphics(), &stored);
  EXPECT_EQ(stored, 2);
  EXPECT_EQ(t.g->CompositingQuality(), C::ID_Draw_CompositingQualityDefault);  // and resets it
  gp::GdipGetCompositingQuality(t.g->graphics(), &stored);
  EXPECT_EQ(stored, 0);

  t.g->interpolation(enm_Draw_InterpolationMode::ID_Draw_InterpolationModeNearestNeighbor);
  EXPECT_EQ(t.g->interpolation(), enm_Draw_InterpolationMode::ID_Draw_InterpolationModeNearestNeighbor);

  auto closed = make<cls_DrawGraphics>();
  closed->SMOOTHING(S::ID_Draw_SmoothingAntiAlias);
  EXPECT_EQ(closed->SMOOTHING(), S::ID_Draw_SmoothingDefault);
  EXPECT_EQ(closed->interpolation(), enm_Draw_InterpolationMode::ID_Draw_InterpolationModeDefault);
}

TEST_F(Drawing, TextDrawsWithTheDefaultsAndOutlinesThroughAPath) {
  Target t(120, 40);
  t.g->CLEAR(Variant(draw()->COLOR()->AUTO(Variant(u"#000000"))));
  t.g->TEXT(u"Tessel", rect(0, 0, 120, 40));
  EXPECT_GT(120 * 40 - t.count(kBlack, 0, 0, 119, 39), 30);  // the default brush is white, no outline

  // With a pen behind, the fill covers the stroke's inner half: less of the pen shows.
  const Variant font(draw()->FONT()->AUTO(Variant(u"Arial,40pt,bold")));
  auto penShown = [&](bool behind) {
    Target u(200, 60);
    u.g->TEXT(u"Tessel", rect(0, 0, 200, 60), font, brush(u"#FF0000"), pen(u"#0000FF", 2), Variant::missing(), 0,
              behind);
    EXPECT_GT(u.count(kRed, 0, 0, 199, 59), 20);
    return u.count(kBlue, 0, 0, 199, 59);
  };
  const int behind = penShown(true), inFront = penShown(false);
  EXPECT_GT(behind, 0);
  EXPECT_LT(behind, inFront);

  // An empty pen takes the plain path.
  Target v(120, 40);
  v.g->TEXT(u"Tessel", rect(0, 0, 120, 40), font, brush(u"#FF0000"), noPen());
  EXPECT_GT(v.count(kRed, 0, 0, 119, 39), 20);

  // A failing step is skipped, without an error, and the rotation is still undone.
  Target w(120, 40);
  w.g->TEXT(u"Tessel", rect(0, 0, 120, 40), rect(0, 0, 1, 1), brush(u"#FF0000"), Variant::missing(),
            Variant::missing(), 30);
  EXPECT_EQ(w.ink(0, 0, 119, 39), 0);
  EXPECT_EQ(xy(w.g->REPROJECT(point(7, 9))), "(7,9)");
}

TEST_F(Drawing, TurnedTextLandsInItsRectangleAndTheProjectionIsRestored) {
  Target t(60, 140);
  t.g->TEXT(u"Turned", rect(20, 10, 30, 120), Variant(draw()->FONT()->AUTO(Variant(u"Arial,14pt"))),
            brush(u"#000000"), Variant::missing(), Variant::missing(), 90);
  EXPECT_GT(t.ink(20, 10, 49, 129), 40);
  EXPECT_EQ(t.ink(0, 0, 19, 139), 0);
  EXPECT_EQ(t.ink(51, 0, 59, 139), 0);
  EXPECT_EQ(xy(t.g->PROJECT(point(7, 9))), "(7,9)");

  // Laid out in the box of the corners turned back, one wider and taller than their extent:
  // the box's width is the rectangle's height, so a line that fits across 120 is not wrapped.
  const int columns = [&] {
    int n = 0;
    for (int y = 10; y <= 129; ++y) n += t.ink(20, y, 49, y) > 0;
    return n;
  }();
  EXPECT_GT(columns, 40);
}

TEST_F(Drawing, TextMeasuresAndRemembersItsMeasurements) {
  Target t(200, 50);
  const Variant font(draw()->FONT()->AUTO(Variant(u"Arial,12pt")));
  Ref<cls_DrawRect> first = t.g->TEXTMEASURE(u"Hello", rect(0, 0, 200, 50), font);
  ASSERT_TRUE(first);
  EXPECT_GT(first->W(), 20);
  EXPECT_LT(first->W(), 80);
  EXPECT_EQ(info(t.g->TEXTMEASURE(u"Hello", rect(0, 0, 200, 50), font)), info(first));
  EXPECT_EQ(t.g->TEXTMEASURE(u"", rect(0, 0, 200, 50), font)->W(), 0);
  // A changed font is measured anew, not served from what was remembered.
  static_cast<cls_DrawFont*>(font.obj())->SIZE(24);
  EXPECT_GT(t.g->TEXTMEASURE(u"Hello", rect(0, 0, 200, 50), font)->W(), first->W() * 1.5f);

  auto closed = make<cls_DrawGraphics>();
  EXPECT_FALSE(closed->TEXTMEASURE(u"Hello", rect(0, 0, 200, 50)));
}

TEST_F(Drawing, TextDirectDrawsWhatTextToUnicodePrepared) {
  auto g = make<cls_DrawGraphics>();
  const std::u16string wide = g->TEXT2UNICODE(u"Aé€");
  EXPECT_EQ(wide, (std::u16string{u'A', 0, 0xE9, 0, 0xAC, 0x20}));

  Target plain(100, 30), direct(100, 30);
  plain.g->TEXT(u"Tessel €", rect(0, 0, 100, 30), Variant::missing(), brush(u"#000000"));
  direct.g->TEXTDIRECT(g->TEXT2UNICODE(u"Tessel €"), rect(0, 0, 100, 30), Variant::missing(), brush(u"#000000"));
  int differ = 0;
  for (int y = 0; y < 30; ++y)
    for (int x = 0; x < 100; ++x) differ += plain.peek(x, y) != direct.peek(x, y);
  EXPECT_EQ(differ, 0);
  EXPECT_GT(plain.ink(0, 0, 99, 29), 20);
}

TEST_F(Drawing, ProjectionComposesInCallOrderAndMapsBothWays) {
  Target t(40, 40);
  t.g->OFFSET(point(10, 20));
  EXPECT_EQ(xy(t.g->PROJECT(point(15, 25))), "(5,5)");
  EXPECT_EQ(xy(t.g->REPROJECT(point(5, 5))), "(15,25)");
  t.g->RECTANGLE(rect(0, 0, 5, 5), brush(u"#FF0000"), noPen());
  EXPECT_EQ(t.peek(10, 20), kRed);
  EXPECT_EQ(t.peek(9, 19), kWhite);

  // Scaling, then an offset that acts after it; a loose point goes through the factory.
  t.g->RESETPROJECTION();
  t.g->SCALING(point(2, 2));
  t.g->OFFSET(point(10, 0));
  EXPECT_EQ(xy(t.g->REPROJECT(point(1, 0))), "(12,0)");
  EXPECT_EQ(xy(t.g->PROJECT(Variant(int32_t(12)))), "(1,0)");
  // A rectangle's corner is mapped, its size kept.
  EXPECT_EQ(info(t.g->PROJECT(rect(30, 8, 10, 10))), "(10,4)-(19,13)");
  t.g->OFFSET(point(10, 0), -1);
  EXPECT_EQ(xy(t.g->REPROJECT(point(1, 0))), "(2,0)");
  t.g->RESETPROJECTION();
  EXPECT_EQ(xy(t.g->PROJECT(point(3, 4))), "(3,4)");
}

TEST_F(Drawing, RenderWindowCollectsTheUnionAndDrawsNothing) {
  Target t(40, 40);
  t.g->RENDERWINDOW(rect(0, 0, 10, 10));
  EXPECT_EQ(info(t.g->REDRAWAREA()), "(0,0)-(9,9)");
  t.g->RENDERWINDOW(rect(20, 20, 5, 5));
  EXPECT_EQ(info(t.g->REDRAWAREA()), "(0,0)-(24,24)");
  EXPECT_EQ(t.ink(0, 0, 39, 39), 0);
  t.g->REFRESH();  // a bare device context: nothing to ask, no error
}

TEST_F(Drawing, ImagesAtTheirSizeFittedPartedAndWarpedUnderTheProjection) {
  auto image = make<cls_DrawImage>();
  image->CREATE(10, 5, Variant(u"#FF0000"));
  Target t(60, 60);
  t.g->OFFSET(point(5, 5));
  t.g->Image(Variant(image), 0, 0);
  EXPECT_EQ(t.count(kRed, 0, 0, 59, 59), 50);
  EXPECT_EQ(t.peek(5, 5), kRed);
  EXPECT_EQ(t.peek(14, 9), kRed);

  // Fitted into 40 × 40 keeping its proportions: 40 × 20, centred, so rows 10 to 29 (+5).
  Target f(60, 60);
  f.g->IMAGEFIT(Variant(image), rect(0, 0, 40, 40));
  EXPECT_EQ(f.peek(20, 20), kRed);
  EXPECT_EQ(f.peek(20, 5), kWhite);
  EXPECT_EQ(f.peek(20, 35), kWhite);
  // Stretched, one side kept (which the platform alone would not scale at all), to the edges in
  // full colour (where the platform alone would fade them).
  f.g->IMAGEFIT(Variant(image), rect(0, 45, 10, 15), false, enm_TextAlign::ID_TextAlign_LeftTop);
  EXPECT_EQ(f.count(kRed, 0, 45, 9, 59), 10 * 15);
  EXPECT_EQ(f.count(kRed, 10, 45, 59, 59), 0);

  // A part: the right half of a red and blue image, stretched over 20 × 20.
  auto halves = make<cls_DrawImage>();
  halves->CREATE(10, 10, Variant(u"#FF0000"));
  for (int y = 0; y < 10; ++y)
    for (int x = 5; x < 10; ++x) halves->PIXEL(x, y, static_cast<int32_t>(kBlue));
  Target p(30, 30);
  p.g->IMAGEADV(Variant(halves), rect(0, 0, 20, 20), rect(5, 0, 5, 10));
  EXPECT_EQ(p.count(kRed, 0, 0, 29, 29), 0);
  EXPECT_EQ(p.count(kBlue, 0, 0, 19, 19), 20 * 20);
  EXPECT_EQ(p.ink(21, 0, 29, 29), 0);

  // Scaled under a projection and a clip: the clip stays where it was set.
  Target c(60, 60);
  c.g->OFFSET(point(30, 40));
  c.g->CLIP(rect(0, 0, 10, 10));
  c.g->IMAGEFIT(Variant(image), rect(-20, -20, 60, 60), false);
  EXPECT_EQ(c.count(kRed, 30, 40, 39, 49), 100);
  EXPECT_EQ(c.count(kRed, 0, 0, 59, 59), 100);

  // Warped onto a parallelogram, under an offset, and faded by image attributes.
  Target w(60, 60);
  w.g->OFFSET(point(20, 0));
  w.g->IMAGEWARP(Variant(image), point(0, 10), point(10, 20), point(0, 15));
  EXPECT_EQ(w.ink(0, 0, 19, 59), 0);
  EXPECT_GT(w.ink(20, 10, 31, 30), 20);
  Target a(20, 20);
  a.g->Image(Variant(image), 0, 0, Variant(0.5f));
  const gp::ARGB faded = a.peek(2, 2);
  EXPECT_NEAR(int((faded >> 8) & 0xFF), 128, 3);  // red over white at half strength
  EXPECT_EQ(faded >> 16 & 0xFF, 0xFFu);
}
