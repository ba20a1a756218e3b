// Overflow-checked arithmetic and rounding that ignores the floating-point rounding mode.
#include <tessel/core/Checked.h>

#include <gtest/gtest.h>

#include "TestSupport.h"

#include <cfenv>
#include <cfloat>
#include <cmath>
#include <limits>

using namespace tessel;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

}  // namespace

TEST(Checked, SingleRangeAndOneRounding) {
  EXPECT_EQ(checkedSingle(1.5), 1.5f);
  EXPECT_EQ(checkedSingle(-static_cast<double>(FLT_MAX)), -FLT_MAX);
  EXPECT_EQ(raisedNumber([] { checkedSingle(static_cast<double>(FLT_MAX) * (1 + 1e-9)); }), 6);
  EXPECT_EQ(raisedNumber([] { checkedSingle(kInf); }), 6);
  EXPECT_EQ(raisedNumber([] { checkedSingle(kNaN); }), 6);

  inEveryRoundingMode([] {
    EXPECT_EQ(checkedSingle(16777217.0), 16777216.0f);  // 2^24 + 1: a tie, to the even neighbour
    EXPECT_EQ(checkedSingle(-16777219.0), -16777220.0f);
    EXPECT_EQ(checkedSingle(0.1), 0.1f);
    EXPECT_EQ(checkedSingle(1e-46), 0.0f);        // below half the smallest Single
    EXPECT_EQ(checkedSingle(1e-45), 1.4e-45f);    // nearer the smallest Single than zero
    EXPECT_EQ(narrowToSingle(3.5e38), HUGE_VALF);  // past FLT_MAX by more than half a unit
    EXPECT_EQ(narrowToSingle(static_cast<double>(FLT_MAX) * (1 + 1e-9)), FLT_MAX);
    EXPECT_TRUE(std::isnan(narrowToSingle(kNaN)));
    EXPECT_EQ(roundHalfEven(-kInf), -kInf);
  });
}

TEST(Checked, FiniteNumbersOnly) {
  EXPECT_EQ(checkedFinite(-1e308), -1e308);
  EXPECT_EQ(raisedNumber([] { checkedFinite(kInf); }), 6);
  EXPECT_EQ(raisedNumber([] { checkedFinite(-kInf); }), 6);
  EXPECT_EQ(raisedNumber([] { checkedFinite(kNaN); }), 6);
}

TEST(Checked, LongArithmeticOverflows) {
  constexpr int32_t kMax = std::numeric_limits<int32_t>::max();
  constexpr int32_t kMin = std::numeric_limits<int32_t>::min();
  EXPECT_EQ(checkedAdd(kMax, kMin), -1);
  EXPECT_EQ(checkedAdd(kMax - 5, 5), kMax);
  EXPECT_EQ(raisedNumber([] { checkedAdd(kMax, 1); }), 6);
  EXPECT_EQ(raisedNumber([] { checkedAdd(kMin, -1); }), 6);
  EXPECT_EQ(raisedNumber([] { checkedAdd(kMin, kMin); }), 6);
  EXPECT_EQ(checkedIncrement(-1), 0);
  EXPECT_EQ(checkedIncrement(kMax - 1), kMax);
  EXPECT_EQ(raisedNumber([] { checkedIncrement(kMax); }), 6);
}
