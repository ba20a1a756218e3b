// The flat API's records made from rectangles and points.
#include <tessel/geometry/mdl_GDIPlus_Geometry.h>

#include <gtest/gtest.h>

#include "TestSupport.h"

using namespace tessel;
namespace gp = tessel::mdl_GDIPlus;

TEST(GDIPRecords, RectanglesAsSizeOrEdgesRoundedHalfToEven) {
  auto r = make<cls_DrawRect>()->MOVE(2.5f, 3.5f, 10.5f, 4);
  const gp::GpRect size = gp::GDIPRectL(r, true);
  EXPECT_EQ((std::vector<int32_t>{size.X, size.Y, size.Width, size.Height}), (std::vector<int32_t>{2, 4, 10, 4}));
  const gp::GpRect edges = gp::GDIPRectL(r, false);  // x2 = 12, y2 = 6.5
  EXPECT_EQ((std::vector<int32_t>{edges.Width, edges.Height}), (std::vector<int32_t>{12, 6}));
  const gp::GpRectF f = gp::GDIPRectF(r, false);
  EXPECT_EQ((std::vector<float>{f.X, f.Y, f.Width, f.Height}), (std::vector<float>{2.5f, 3.5f, 12, 6.5f}));

  r->MOVE(3e9f, 0);
  Error e = raisedBy([&] { gp::GDIPRectL(r, true); });
  EXPECT_EQ(e.number(), objectError(6));
  EXPECT_EQ(e.source(), "mdl_GDIPlus.GDIPRectL");
  EXPECT_EQ(gp::GDIPRectF(r, true).X, 3e9f);
  EXPECT_EQ(raisedBy([] { gp::GDIPRectF(nullptr, true); }).number(), objectError(91));
}

TEST(GDIPRecords, PointsNarrowToSingle) {
  const gp::GpPointF p = gp::GDIPPointF(make<cls_DrawPoint>()->MOVE(0.1, -7));
  EXPECT_EQ(p.X, 0.1f);
  EXPECT_EQ(p.Y, -7.0f);
  Error e = raisedBy([] { gp::GDIPPointF(make<cls_DrawPoint>()->MOVE(1e39, 0)); });
  EXPECT_EQ(e.number(), objectError(6));
  EXPECT_EQ(e.source(), "mdl_GDIPlus.GDIPPointF");
}
