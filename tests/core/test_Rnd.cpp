// The host's random sequence: the same numbers as the host's generator, one sequence per thread.
#include <tessel/core/Rnd.h>

#include <gtest/gtest.h>

#include <thread>

using namespace tessel;

TEST(Rnd, FollowsTheHostSequencePerThread) {
  RndSeed();
  EXPECT_DOUBLE_EQ(Rnd(), 0.7055475115776062);
  EXPECT_DOUBLE_EQ(Rnd(), 0.5334240198135376);
  RndSeed(0xFF000000u);  // only the low 24 bits count
  EXPECT_DOUBLE_EQ(Rnd(), 12820163.0 / (1 << 24));
  for (int i = 0; i < 100000; ++i) {
    const double r = Rnd();
    ASSERT_TRUE(r >= 0.0 && r < 1.0);
  }
  double other = -1;
  std::thread([&] { other = Rnd(); }).join();
  EXPECT_DOUBLE_EQ(other, 0.7055475115776062);  // a new thread starts where every thread starts
}
