#include <gtest/gtest.h>

#include <cmath>

#include "numerics/basic/Basic.h"

namespace tov {
namespace {

TEST(GuardedDivide, ZeroOverZeroIsNaNAndOneOverZeroIsInfinity) {
  EXPECT_TRUE(std::isnan(GuardedDivide(0.0f, 0.0f)));
  EXPECT_EQ(GuardedDivide(1.0f, 0.0f), INFINITY);
  EXPECT_EQ(GuardedDivide(-1.0f, 0.0f), -INFINITY);
  EXPECT_EQ(GuardedDivide(1.0f, -0.0f), -INFINITY);
  EXPECT_EQ(GuardedDivide(-3.0f, -0.0f), INFINITY);
}

TEST(GuardedDivide, VanishingQuotientIsFlushedToZero) {
  // 2e-38 / 4 = 5e-39 is subnormal; the guard flushes it to 0.0.
  EXPECT_EQ(GuardedDivide(2.0e-38f, 4.0f), 0.0f);
  EXPECT_EQ(GuardedDivide(1.0e-30f, 1.0e10f), 0.0f);
  // 5e-38 is not below 4 times the smallest normal: divided normally.
  EXPECT_EQ(GuardedDivide(5.0e-38f, 4.0f), 5.0e-38f / 4.0f);
}

TEST(GuardedDivide, OverflowingQuotientIsAnInfinityOfTheQuotientsSign) {
  EXPECT_EQ(GuardedDivide(1.0e30f, 1.0e-10f), INFINITY);
  EXPECT_EQ(GuardedDivide(-1.0e30f, 1.0e-10f), -INFINITY);
  EXPECT_EQ(GuardedDivide(1.0e30f, -1.0e-10f), -INFINITY);
  // |a| equal to |b| times the largest float is not below it: infinity,
  // although the plain quotient would be the largest float.
  EXPECT_EQ(GuardedDivide(0x1.fffffep126f, 0.5f), INFINITY);
  EXPECT_EQ(GuardedDivide(0x1.fffffcp126f, 0.5f), 0x1.fffffcp127f);
}

}  // namespace
}  // namespace tov
