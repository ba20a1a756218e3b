// Paths: one native path made by the first addition and freed once, figures that really have the
// shapes they claim (filled into a bitmap and probed), bounds and hit tests, point lists, and bad
// input that leaves a path as it was.
#include <tessel/core/Text.h>
#include <tessel/root/cls_DrawTool.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "TestSupport.h"

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
  static Ref<cls_DrawPath> path() { return mdl_Global::DRAW()->PATH(); }
  static Variant rect(int x, int y, int w, int h) { return Variant(mdl_Global::DRAW()->RECT()->AUTO(x, y, w, h)); }
  long start_ = 0;
};

gp::GpPath* native(const Ref<cls_DrawPath>& p) { return reinterpret_cast<gp::GpPath*>(static_cast<intptr_t>(p->HANDLE())); }

int pointCount(const Ref<cls_DrawPath>& p) {
  int n = 0;
  if (p->HANDLE() != 0) gp::GdipGetPointCount(native(p), &n);
  return n;
}

// The path filled black into a white 40 × 40 bitmap with the flat API itself; "#" where a probed
// pixel is inked, "." where not.
class Filled {
 public:
  explicit Filled(const Ref<cls_DrawPath>& p) {
    gp::GpBitmap* b = nullptr;
    EXPECT_EQ(gp::GdipCreateBitmapFromScan0(40, 40, 0, gp::PixelFormat32bppARGB, nullptr, &b), enm_Draw_Status::OK);
    bitmap_.reset(b);
    gp::GpGraphics* g = nullptr;
    gp::GdipGetImageGraphicsContext(b, &g);
    gp::GraphicsHandle graphics(g);
    gp::GdipGraphicsClear(g, 0xFFFFFFFF);
    gp::GpSolidFill* fill = nullptr;
    gp::GdipCreateSolidFill(0xFF000000, &fill);
    gp::BrushHandle brush(fill);
    EXPECT_EQ(gp::GdipFillPath(g, fill, native(p)), enm_Draw_Status::OK);
  }
  // One character a probe: "#" inked (mostly black), "." blank.
  std::string at(std::initializer_list<std::pair<int, int>> probes) const {
    std::string s;
    for (auto [x, y] : probes) {
      gp::ARGB c = 0;
      gp::GdipBitmapGetPixel(static_cast<gp::GpBitmap*>(bitmap_.get()), x, y, &c);
      s += (c & 0xFF) < 128 ? '#' : '.';
    }
    return s;
  }

 private:
  gp::ImageHandle bitmap_;
};

}  // namespace

TEST_F(Paths, OneNativePathMadeByTheFirstAdditionAndFreedOnce) {
  auto p = path();
  EXPECT_NE(p, path());  // a new path on every call, none kept by the root
  p->START(true)->CLOSEFIGURE()->RESET();
  EXPECT_EQ(p->HANDLE(), 0);  // nothing added, nothing made
  EXPECT_EQ(gp::PathHandle::live(), start_);

  p->LINE(0, 0, 10, 0)->LINE(10, 10, 0, 10);
  const int64_t handle = p->HANDLE();
  EXPECT_NE(handle, 0);
  EXPECT_EQ(gp::PathHandle::live(), start_ + 1);
  auto copy = p->CLONE();
  EXPECT_EQ(gp::PathHandle::live(), start_ + 2);
  EXPECT_NE(copy->HANDLE(), handle);
  EXPECT_EQ(pointCount(copy), 4);

  p->RESET();  // emptied, the native path kept
  EXPECT_EQ(p->HANDLE(), handle);
  EXPECT_EQ(pointCount(p), 0);
  EXPECT_EQ(pointCount(copy), 4);
  p->DELETE()->DELETE();
  EXPECT_EQ(p->HANDLE(), 0);
  EXPECT_EQ(path()->CLONE()->HANDLE(), 0);
  p->ELLIPSE(rect(0, 0, 10, 10));  // reusable
  EXPECT_EQ(gp::PathHandle::live(), start_ + 2);
  copy = nullptr;
  p = nullptr;
}

TEST_F(Paths, FiguresHaveTheShapesTheyClaim) {
  // Rounded corners stay blank where a square rectangle is inked.
  const Variant box = rect(4, 4, 32, 32);
  EXPECT_EQ(Filled(path()->RECT(box, 10)).at({{5, 5}, {34, 34}, {20, 5}, {34, 20}, {20, 20}}), "..###");
  // (libgdiplus fills a path with its outline, one pixel past the far edges: probes keep clear.)
  EXPECT_EQ(Filled(path()->RECT(box)).at({{5, 5}, {34, 34}, {3, 3}, {37, 37}}), "##..");
  EXPECT_EQ(Filled(path()->RECT(box, 1000)).at({{6, 6}, {20, 5}}), ".#");  // a circle: clamped to 16

  EXPECT_EQ(Filled(path()->POLYGON(u"(4,4), (36,4), (4,36)")).at({{8, 8}, {30, 6}, {6, 30}, {30, 30}}), "###.");
  // A quarter clockwise from the x-axis, y pointing down: the bottom-right quarter.
  EXPECT_EQ(Filled(path()->PIE(rect(0, 0, 40, 40), 0, 90)).at({{28, 28}, {10, 10}, {28, 10}, {10, 28}}), "#...");
  EXPECT_EQ(Filled(path()->ELLIPSE(rect(0, 0, 40, 40))).at({{20, 20}, {2, 2}, {37, 37}}), "#..");

  // Lines continue the figure: two lines make one quadrilateral, unless START parts them.
  EXPECT_EQ(Filled(path()->LINE(4, 4, 36, 4)->LINE(36, 36, 4, 36)).at({{20, 20}}), "#");
  EXPECT_EQ(Filled(path()->LINE(4, 4, 36, 4)->START()->LINE(36, 36, 4, 36)).at({{20, 20}}), ".");
  auto a = Variant(mdl_Global::DRAW()->POINT()->POINT(4, 20));
  auto b = Variant(mdl_Global::DRAW()->POINT()->POINT(36, 20));
  EXPECT_EQ(Filled(path()->ARC(rect(4, 4, 32, 32), 180, 180)->LINE(b, a)).at({{20, 8}, {20, 30}}), "#.");
  EXPECT_EQ(Filled(path()->BEZIER(a, Variant(4), Variant(36), b)->CLOSEFIGURE()).at({{20, 12}, {20, 30}}), "#.");

  // Overlapping figures fill by the alternate rule: a hole.
  EXPECT_EQ(Filled(path()->RECT(box)->ELLIPSE(rect(12, 12, 16, 16))).at({{20, 20}, {6, 6}}), ".#");
}

TEST_F(Paths, BoundsAndHitTests) {
  auto p = path();
  EXPECT_EQ(p->BOUNDS()->INFO(), u"(0,0)-(-1,-1)");  // all zero
  EXPECT_FALSE(p->HITTEST(5, 5));

  p->RECT(rect(10, 20, 100, 50));
  EXPECT_EQ(p->BOUNDS()->INFO(), u"(10,20)-(109,69)");  // the rectangle given
  // A point is tested as the pixel it names, so the rectangle's inclusive edges hold.
  EXPECT_TRUE(p->HITTEST(10, 20));
  EXPECT_TRUE(p->HITTEST(109, 69));
  EXPECT_FALSE(p->HITTEST(110, 69));
  EXPECT_TRUE(p->HITTEST(Variant(mdl_Global::DRAW()->POINT()->POINT(50, 40))));
  EXPECT_FALSE(p->HITTEST(50));  // a loose point: (50, 0)
  EXPECT_TRUE(Invoke(p.get(), "HITTEST", InvokeKind::Method, {50, 40}).toBool());
  p->RESET();
  EXPECT_FALSE(p->HITTEST(50, 40));
  EXPECT_EQ(p->BOUNDS()->W(), 0);

  p->ARC(rect(0, 0, 100, 100), 0, 90);  // from (100, 50) to (50, 100)
  auto b = p->BOUNDS();
  EXPECT_NEAR(b->X(), 50, 0.5);
  EXPECT_NEAR(b->Y(), 50, 0.5);
  EXPECT_NEAR(b->W(), 50, 0.5);
  EXPECT_NEAR(b->H(), 50, 0.5);
  EXPECT_EQ(path()->ELLIPSE(rect(0, 0, 100, 50))->BOUNDS()->INFO(), u"(0,0)-(99,49)");
  EXPECT_EQ(path()->PIE(rect(0, 0, 10, 10), 0, 360)->BOUNDS()->INFO(), u"(0,0)-(9,9)");  // the whole ellipse
}

TEST_F(Paths, PointListsAndTheirMistakes) {
  auto p = path()->LINES(u"(0,0), ( 50 , 0 ),\t(25,40.5)");
  EXPECT_EQ(pointCount(p), 3);
  EXPECT_FLOAT_EQ(p->BOUNDS()->H(), 40.5f);
  EXPECT_EQ(pointCount(path()->POLYGON(u"(1e1,0),(-2,&H10),(3,4)")), 4);  // closed back to the first

  const int64_t handle = p->HANDLE();
  for (const char16_t* bad : {u"", u"(1,2)", u"(1,2),", u"(1,2)(3,4)", u"(1,2),(3)", u"(1,2,3),(4,5)", u"(a,b),(1,2)",
                              u"1,2,3,4", u"((1,2),(3,4))", u"(1,2),(3,4"}) {
    SCOPED_TRACE(toUtf8(bad));
    Error e = raisedBy([&] { p->LINES(bad); });
    EXPECT_EQ(e.number(), objectError(5));
    EXPECT_EQ(e.source(), "cls_DrawPath.LINES");
    EXPECT_EQ(raisedNumber([&] { path()->POLYGON(bad); }), objectError(5));
  }
  EXPECT_EQ(raisedNumber([&] { p->POLYGON(u"(0,0),(1,1)"); }), objectError(5));  // two points are no polygon
  EXPECT_EQ(raisedNumber([&] { p->LINES(u"(1e39,0),(0,0)"); }), objectError(6));  // beyond a Single
  EXPECT_EQ(raisedNumber([&] { p->LINES(12); }), objectError(13));
  EXPECT_EQ(p->HANDLE(), handle);
  EXPECT_EQ(pointCount(p), 3);
}

TEST_F(Paths, BadNumbersAndArgumentsChangeNothing) {
  const float nan = std::numeric_limits<float>::quiet_NaN(), inf = std::numeric_limits<float>::infinity();
  auto fresh = path();
  EXPECT_EQ(raisedNumber([&] { fresh->ARC(rect(0, 0, 10, 10), nan, 90); }), objectError(6));
  EXPECT_EQ(fresh->HANDLE(), 0);  // refused before a native path was made

  auto p = path()->RECT(rect(0, 0, 10, 10));
  const int before = pointCount(p);
  const Variant box = rect(0, 0, 10, 10);
  EXPECT_EQ(raisedNumber([&] { p->LINE(Variant(std::nan("")), 0, 1, 1); }), objectError(6));
  EXPECT_EQ(raisedNumber([&] { p->PIE(box, 0, inf); }), objectError(6));
  EXPECT_EQ(raisedNumber([&] { p->RECT(box, nan); }), objectError(6));
  EXPECT_EQ(raisedNumber([&] { p->HITTEST(Variant(nan), 0); }), objectError(6));
  EXPECT_EQ(raisedNumber([&] { p->BEZIER(1, 2, 3, Variant(1e300)); }), objectError(6));
  EXPECT_EQ(raisedNumber([&] { p->ELLIPSE(Variant(1e300)); }), objectError(6));
  // LINE takes two points or four numbers; a rectangle argument must be a rectangle.
  Error e = raisedBy([&] { p->LINE(0, 0, 1); });
  EXPECT_EQ(e.number(), objectError(5));
  EXPECT_EQ(e.source(), "cls_DrawPath.LINE");
  EXPECT_EQ(raisedNumber([&] { Invoke(p.get(), "LINE", InvokeKind::Method, {u"abc", 0, 1, 1}); }), objectError(13));
  EXPECT_EQ(raisedNumber([&] { p->ELLIPSE(Variant(p)); }), objectError(13));
  EXPECT_EQ(raisedNumber([&] { p->ARC(Variant(u"(0,0,10,10)"), 0, 90); }), objectError(13));
  EXPECT_EQ(pointCount(p), before);

  // Empty rectangles add nothing, and are no fault.
  fresh->ELLIPSE(rect(5, 5, 0, 10))->ARC(rect(0, 0, 10, -1), 0, 90)->RECT(Variant(7))->PIE(box, 0, 0)->ARC(box, 0, 0);
  EXPECT_EQ(fresh->HANDLE(), 0);
  p->PIE(box, 90, 0);
  EXPECT_EQ(pointCount(p), before);
}
