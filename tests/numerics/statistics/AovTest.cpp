#include <gtest/gtest.h>

#include <cmath>

#include "numerics/basic/Basic.h"

namespace tov {
namespace {

TEST(G1AOV, FillsAllFifteenElements) {
  // Elements other than P from python3/numpy.float32 step by step; P from
  // scipy.stats.f.sf(8.022038459777832, 3, 16) = 0.0017333336292481895.
  AovTable aov;
  G1AOV(3.0f, 45.5f, 16.0f, 30.25f, 12.5f, aov);
  EXPECT_EQ(aov(1), 3.0f);
  EXPECT_EQ(aov(2), 16.0f);
  EXPECT_EQ(aov(3), 19.0f);
  EXPECT_EQ(aov(4), 45.5f);
  EXPECT_EQ(aov(5), 30.25f);
  EXPECT_EQ(aov(6), 75.75f);
  EXPECT_EQ(aov(7), 15.166666984558105f);
  EXPECT_EQ(aov(8), 1.890625f);
  EXPECT_EQ(aov(9), 8.022038459777832f);
  EXPECT_NEAR(aov(10), 0.0017333336292481895, 0.0017333336 * 2e-6);
  EXPECT_EQ(aov(11), 60.06600570678711f);
  EXPECT_EQ(aov(12), 52.57838439941406f);
  EXPECT_EQ(aov(13), 1.375f);
  EXPECT_EQ(aov(14), 12.5f);
  EXPECT_EQ(aov(15), 11.0f);
}

TEST(G1AOV, AdjustedRSquareIsZeroWhenTheErrorMeanSquareExceedsTheTotal) {
  // Error MS 40/10 = 4 against total MS 42/14 = 3: q = 4/3 > 1.
  AovTable aov;
  G1AOV(4.0f, 2.0f, 10.0f, 40.0f, 1.0f, aov);
  EXPECT_EQ(aov(12), 0.0f);
  // At q = 1 exactly (error MS equal to total MS) the value is 100 (1 - 1) = 0
  // by the formula, and just below it stays positive.
  G1AOV(1.0f, 1.0f, 2.0f, 2.0f, 1.0f, aov);
  EXPECT_EQ(aov(12), 0.0f);
  G1AOV(1.0f, 2.0f, 2.0f, 2.0f, 1.0f, aov);
  EXPECT_FLOAT_EQ(aov(12), 25.0f);  // 100 (1 - 1 / (4/3))
}

TEST(G1AOV, NaNErrorMeanSquareLeavesDeviationAndCoefficientNaN) {
  // No error degrees of freedom: error MS = 0/0.
  AovTable aov;
  G1AOV(2.0f, 10.0f, 0.0f, 0.0f, 5.0f, aov);
  EXPECT_TRUE(std::isnan(aov(8)));
  EXPECT_TRUE(std::isnan(aov(9)));
  EXPECT_TRUE(std::isnan(aov(10)));
  EXPECT_TRUE(std::isnan(aov(12)));
  EXPECT_TRUE(std::isnan(aov(13)));
  EXPECT_TRUE(std::isnan(aov(15)));
  EXPECT_EQ(aov(11), 100.0f);
  EXPECT_EQ(aov(14), 5.0f);
}

TEST(G1AOV, PerfectFitHasInfiniteFAndZeroP) {
  AovTable aov;
  G1AOV(1.0f, 8.0f, 5.0f, 0.0f, 0.0f, aov);
  EXPECT_EQ(aov(8), 0.0f);
  EXPECT_EQ(aov(9), INFINITY);
  EXPECT_EQ(aov(10), 0.0f);
  EXPECT_EQ(aov(12), 100.0f);
  EXPECT_EQ(aov(13), 0.0f);
  // Coefficient of variation 0 / mean 0 is 0/0.
  EXPECT_TRUE(std::isnan(aov(15)));
  G1AOV(1.0f, 8.0f, 5.0f, 5.0f, 0.0f, aov);
  EXPECT_EQ(aov(15), INFINITY);
}

TEST(FProbability, AgreesWithTheFDistribution) {
  // scipy.stats.f.sf(F, dfr, dfe), scipy 1.10.1.
  struct Case {
    float f, dfr, dfe;
    double p;
  };
  const Case cases[] = {
      {3.5f, 2.0f, 20.0f, 0.04973502207609711},  {0.8f, 5.0f, 30.0f, 0.558492258953146},
      {12.0f, 1.0f, 8.0f, 0.008516263370901282}, {2.0f, 10.0f, 100.0f, 0.04098813977040335},
      {0.0f, 3.0f, 10.0f, 1.0},                  {150.0f, 2.0f, 3.0f, 0.0009851853368415735},
  };
  for (const Case& c : cases)
    EXPECT_NEAR(FProbability(c.f, c.dfr, c.dfe), c.p, 2e-6 * c.p) << c.f << " " << c.dfr << " " << c.dfe;
}

TEST(FProbability, UndefinedCases) {
  EXPECT_TRUE(std::isnan(FProbability(NAN, 2.0f, 3.0f)));
  EXPECT_TRUE(std::isnan(FProbability(2.0f, 0.0f, 3.0f)));
  EXPECT_TRUE(std::isnan(FProbability(2.0f, 2.0f, -1.0f)));
  EXPECT_EQ(FProbability(INFINITY, 2.0f, 3.0f), 0.0f);
}

}  // namespace
}  // namespace tov
