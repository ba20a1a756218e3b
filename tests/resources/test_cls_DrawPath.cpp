// Paths: one native path made by the first addition and freed once, figures that have the shapes
// they claim (filled into a bitmap and probed), bounds, hit tests, and bad input that changes
// nothing.
#include <tessel/core/Text.h>
#include <tessel/root/cls_DrawTool.h>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "TestSupport.h"
#include "resources/Canvas.h"

using namespace tessel;
namespace gp = tessel::mdl_GDIPlus;

namespace {

class Paths : public testing::Test {
 protected:
  void SetUp() override {
    mdl_Global::DRAW()->INIT();
    start_ = gp::PathHandle::live();
  }
  void TearDown() override { EXPECT_EQ(gp::PathHandle::live(), start_); }
  long start_ = 0;
};

Ref<cls_DrawPath> path() { return mdl_Global::DRAW()->PATH(); }
Variant rect(int x, int y, int w, int h) { return Variant(mdl_Global::DRAW()->RECT()->AUTO(x, y, w, h)); }
gp::GpPath* native(const Ref<cls_DrawPath>& p) { return reinterpret_cast<gp::GpPath*>(static_cast<intptr_t>(p->HANDLE())); }
int points(const Ref<cls_DrawPath>& p) {
  int n = 0;
  if (p->HANDLE() != 0) gp::GdipGetPointCount(native(p), &n);
  return n;
}

// The path filled black into a white 40 × 40 bitmap by the flat API itself: "#" for each probed
// pixel that is inked, "." for one that is not.
std::string filled(const Ref<cls_DrawPath>& p, std::initializer_list<std::pair<int, int>> probes) {
  Canvas canvas(40, 40);
  gp::GpSolidFill* fill = nullptr;
  gp::GdipCreateSolidFill(0xFF000000, &fill);
  gp::BrushHandle brush(fill);
  EXPECT_EQ(gp::GdipFillPath(canvas.graphics(), fill, native(p)), enm_Draw_Status::OK);
  std::string s;
  for (auto [x, y] : probes) s += (canvas.pixel(x, y) & 0xFF) < 128 ? '#' : '.';
  return s;
}

}  // namespace

TEST_F(Paths, OneNativePathMadeByTheFirstAdditionAndFreedOnce) {
  auto p = path();
  EXPECT_NE(p, path());  // a new one on every call
  p->START(true)->CLOSEFIGURE()->RESET()->ARC(rect(0, 0, 10, 10), 0, 0)->PIE(rect(0, 0, 10, 0), 0, 90);
  EXPECT_EQ(p->HANDLE(), 0);  // nothing added, nothing made
  p->LINE(0, 0, 10, 0)->LINE(10, 10, 0, 10);
  const int64_t handle = p->HANDLE();
  auto copy = p->CLONE();
  EXPECT_EQ(gp::PathHandle::live(), start_ + 2);
  p->RESET();  // emptied, the native path kept
  EXPECT_EQ(p->HANDLE(), handle);
  EXPECT_EQ(points(p), 0);
  EXPECT_EQ(points(copy), 4);
  p->DELETE()->DELETE();
  EXPECT_EQ(p->HANDLE(), 0);
  EXPECT_EQ(p->CLONE()->HANDLE(), 0);
  EXPECT_EQ(gp::PathHandle::live(), start_ + 1);
  p->ELLIPSE(rect(0, 0, 10, 10));  // reusable; the copy and the path are dropped with theirs
}

TEST_F(Paths, FiguresHaveTheShapesTheyClaim) {
  const Variant box = rect(4, 4, 32, 32);
  EXPECT_EQ(filled(path()->RECT(box, 10), {{5, 5}, {34, 34}, {20, 5}, {34, 20}}), "..##");  // rounded corners
  // (libgdiplus fills a path with its outline, a pixel past the far edges: probes keep clear.)
  EXPECT_EQ(filled(path()->RECT(box), {{5, 5}, {34, 34}, {3, 3}, {37, 37}}), "##..");
  EXPECT_EQ(filled(path()->RECT(box, 1000), {{6, 6}, {20, 5}}), ".#");  // a circle: clamped to 16
  EXPECT_EQ(filled(path()->POLYGON(u"(4,4), (36,4), (4,36)"), {{8, 8}, {30, 6}, {6, 30}, {30, 30}}), "###.");
  // Clockwise from the x-axis with y pointing down: a quarter from 0 to 90 degrees is bottom right.
  EXPECT_EQ(filled(path()->PIE(rect(0, 0, 40, 40), 0, 90), {{28, 28}, {10, 10}, {28, 10}, {10, 28}}), "#...");
  // Lines and arcs continue the figure unless START parts them; a figure inside another is a hole.
  EXPECT_EQ(filled(path()->LINE(4, 4, 36, 4)->LINE(36, 36, 4, 36), {{20, 20}}), "#");
  EXPECT_EQ(filled(path()->LINE(4, 4, 36, 4)->START()->LINE(36, 36, 4, 36), {{20, 20}}), ".");
  EXPECT_EQ(filled(path()->ARC(box, 180, 180)->LINE(36, 20, 4, 20), {{20, 8}, {20, 30}}), "#.");
  auto a = Variant(mdl_Global::DRAW()->POINT()->POINT(4, 20)), b = Variant(mdl_Global::DRAW()->POINT()->POINT(36, 20));
  EXPECT_EQ(filled(path()->BEZIER(a, 4, 36, b), {{20, 12}, {20, 30}}), "#.");  // (4, 0) and (36, 0) pull it up
  EXPECT_EQ(filled(path()->RECT(box)->ELLIPSE(rect(12, 12, 16, 16)), {{20, 20}, {6, 6}}), ".#");
}

TEST_F(Paths, BoundsAndHitTests) {
  auto p = path();
  EXPECT_EQ(p->BOUNDS()->INFO(), u"(0,0)-(-1,-1)");
  EXPECT_FALSE(p->HITTEST(5, 5));
  p->RECT(rect(10, 20, 100, 50));
  EXPECT_EQ(p->BOUNDS()->INFO(), u"(10,20)-(109,69)");  // the rectangle given
  // A point is tested as the pixel it names, so the rectangle's inclusive edges hold.
  EXPECT_TRUE(p->HITTEST(10, 20) && p->HITTEST(109, 69));
  EXPECT_FALSE(p->HITTEST(110, 69) || p->HITTEST(50));  // a loose point: (50, 0)
  EXPECT_FALSE(p->HITTEST(9, 40) || p->HITTEST(50, 19));  // both axes alike
  EXPECT_TRUE(p->HITTEST(Variant(mdl_Global::DRAW()->POINT()->POINT(50, 40))));
  EXPECT_TRUE(Invoke(p.get(), "HITTEST", InvokeKind::Method, {50, 40}).toBool());
  EXPECT_FALSE(p->RESET()->HITTEST(50, 40));
  EXPECT_EQ(p->ARC(rect(0, 0, 100, 100), 0, 90)->BOUNDS()->INFO(), u"(50,50)-(99,99)");
  auto b = path()->ARC(rect(0, 0, 1000, 1000), 30, 120)->BOUNDS();  // turns at the bottom, mid-curve
  EXPECT_NEAR(b->Y() + b->H(), 1000, 0.2);
  EXPECT_EQ(path()->LINES(u"(0,0),(50,-1e1),\t( 25 , 40.5 )")->BOUNDS()->INFO(), u"(0,-10)-(49,39.5)");
}

TEST_F(Paths, BadInputChangesNothing) {
  auto p = path()->RECT(rect(0, 0, 10, 10));
  const int64_t handle = p->HANDLE();
  const int before = points(p);
  for (const char16_t* bad : {u"", u"(1,2)", u"(1,2),", u"(1,2)(3,4)", u"(1,2),(3)", u"(1,2,3),(4,5)", u"(a,b),(1,2)",
                              u"1,2,3,4", u"((1,2),(3,4))", u"(1,2),(3,4"}) {
    Error e = raisedBy([&] { p->LINES(bad); });
    EXPECT_EQ(e.number(), objectError(5)) << toUtf8(bad);
    EXPECT_EQ(e.source(), "cls_DrawPath.LINES");
  }
  EXPECT_EQ(raisedNumber([&] { p->POLYGON(u"(0,0),(1,1)"); }), objectError(5));  // two points are no polygon
  EXPECT_EQ(raisedNumber([&] { p->LINE(0, 0, 1); }), objectError(5));            // two points or four numbers
  EXPECT_EQ(raisedNumber([&] { p->LINES(12); }), objectError(13));
  EXPECT_EQ(raisedNumber([&] { p->ELLIPSE(Variant(p)); }), objectError(13));
  const float nan = std::nanf("");
  for (auto bad : std::initializer_list<std::function<void()>>{
           [&] { p->LINES(u"(1e39,0),(0,0)"); }, [&] { p->LINE(Variant(nan), 0, 1, 1); },
           [&] { p->PIE(rect(0, 0, 9, 9), 0, INFINITY); }, [&] { p->RECT(rect(0, 0, 9, 9), nan); },
           [&] { p->BEZIER(1, 2, 3, Variant(1e300)); }, [&] { p->HITTEST(Variant(nan), 0); }})
    EXPECT_EQ(raisedNumber(bad), objectError(6));
  EXPECT_EQ(p->HANDLE(), handle);
  EXPECT_EQ(points(p), before);
  auto fresh = path();
  EXPECT_EQ(raisedNumber([&] { fresh->ARC(rect(0, 0, 10, 10), nan, 90); }), objectError(6));
  EXPECT_EQ(fresh->HANDLE(), 0);
}

TEST_F(Paths, TextOutlinesFollowFontAndFormat) {
  const long fonts = gp::FontHandle::live();
  auto left = path()->TEXT(u"HI", Variant(u"Arial,20,bold"), rect(0, 0, 40, 40));
  auto box = left->BOUNDS();
  EXPECT_LT(box->X(), 6);  // top left, glyphs about the em height high
  EXPECT_GT(box->H(), 10);
  EXPECT_LT(box->H(), 20);
  // The H's stems are inked, the gap between them is not.
  EXPECT_EQ(filled(left, {{static_cast<int>(box->X()) + 2, static_cast<int>(box->Y() + box->H() / 4)}}), "#");

  auto centred = path()->TEXT(u"HI", Variant(u"Arial,20,bold"), rect(0, 0, 40, 40), Variant(int32_t(5)));  // centre, top
  EXPECT_NEAR(centred->BOUNDS()->X() + centred->BOUNDS()->W() / 2, 20, 2);
  EXPECT_EQ(path()->TEXT(u"", Variant(u"Arial"), rect(0, 0, 40, 40))->HANDLE(), 0);
  Error e = raisedBy([&] { path()->TEXT(u"HI", Variant(int32_t(3)), rect(0, 0, 40, 40)); });  // no font
  EXPECT_EQ(e.number(), objectError(5));
  EXPECT_EQ(e.source(), "cls_DrawPath.TEXT");
  EXPECT_EQ(gp::FontHandle::live(), fonts);
}
