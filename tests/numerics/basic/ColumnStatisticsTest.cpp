#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "numerics/basic/Basic.h"

namespace tov {
namespace {

constexpr float kMissing = -9999.0f;

TEST(IsMissingValue, MissingCodeAndNaNOnly) {
  EXPECT_TRUE(IsMissingValue(-9999.0f));
  EXPECT_TRUE(IsMissingValue(NAN));
  // -9999.001 is the neighbouring float -9999.0009765625, 0.00098 away.
  EXPECT_FALSE(IsMissingValue(-9999.001f));
  EXPECT_FALSE(IsMissingValue(-9998.999f));
  EXPECT_FALSE(IsMissingValue(9999.0f));
  EXPECT_FALSE(IsMissingValue(0.0f));
  EXPECT_FALSE(IsMissingValue(-INFINITY));
}

TEST(MeanOfValid, SkipsMissingAndCountsThem) {
  const float x[] = {1.0f, 2.0f, NAN, kMissing, 6.0f};
  int missing = -1;
  EXPECT_EQ(MeanOfValid(5, x, &missing), 3.0f);
  EXPECT_EQ(missing, 2);
  const float none[] = {kMissing, NAN};
  EXPECT_TRUE(std::isnan(MeanOfValid(2, none, &missing)));
  EXPECT_EQ(missing, 2);
  EXPECT_TRUE(std::isnan(MeanOfValid(0, x)));
}

TEST(ColumnVariance, SampleVarianceWithDivisorMMinusOne) {
  // numpy.var([2,4,4,4,5,5,7,9], ddof=1) = 4.571428571428571 (= 32/7).
  const float x[] = {2.0f, 4.0f, kMissing, 4.0f, 4.0f, 5.0f, 5.0f, 7.0f, 9.0f};
  int missing = -1;
  EXPECT_FLOAT_EQ(ColumnVariance(9, x, &missing), 4.571428571428571f);
  EXPECT_EQ(missing, 1);
}

TEST(ColumnVariance, NotANumberForAtMostOneValue) {
  const float one[] = {kMissing, 3.5f, NAN};
  int missing = -1;
  EXPECT_TRUE(std::isnan(ColumnVariance(3, one, &missing)));
  EXPECT_EQ(missing, 2);
  EXPECT_TRUE(std::isnan(ColumnVariance(0, one)));
}

TEST(ColumnVariance, OnePassFormulaKeepsItsLossOfDigitsWithLargeMeans) {
  // Expected value from python3/numpy.float32, step by step: sums of x and
  // x*x from 0.0 in order, mean = s/M, ((q/M - mean*mean) * M) / (M - 1).
  // The exact sample variance is 2.6224446...; other orders give
  // 2.6 ((q - s*mean)/(M-1)), 2.5500002 (q/M - mean^2 times M/(M-1)) and
  // 2.6224446 (two-pass); the missing entries must not move it.
  const float x[] = {996.13f, kMissing, 1000.06f, 999.89f, NAN, 999.09f, 996.86f, 998.81f};
  int missing = -1;
  EXPECT_EQ(ColumnVariance(8, x, &missing), 2.549999952316284f);
  EXPECT_EQ(missing, 2);
}

// Two columns around 1000 and 500; expected values from python3/numpy.float32
// step by step (sums from 0.0 in order, E(xy) - E(x)E(y)).  Exact values:
// covariance -1.2748125, correlation -0.39913809; other orders of the
// covariance give -1.2916666 ((sxy - sx*my)/M) and -1.3125
// (sxy/M - sx*sy/M^2); sqrt(vx)*sqrt(vy) in the correlation gives -0.39998573.
const std::vector<float> kColumnX = {999.41f, 996.66f, NAN, 999.97f, 998.67f, 1003.5f, 1001.96f, 1000.0f};
const std::vector<float> kColumnY = {499.93f, 502.01f, 500.0f, 498.98f, 503.16f, 499.98f, 501.75f, kMissing};

TEST(ColumnCovariance, OnePassFormulaSkippingIncompletePairs) {
  int missing = -1;
  EXPECT_EQ(ColumnCovariance(8, kColumnX.data(), kColumnY.data(), &missing), -1.28125f);
  EXPECT_EQ(missing, 2);
}

TEST(ColumnCovariance, DivisorIsMAndOnePairGivesZero) {
  // Population covariance of (1,2),(2,4),(3,9): numpy.cov(..., ddof=0) = 2.3333333.
  const float x[] = {1.0f, 2.0f, 3.0f};
  const float y[] = {2.0f, 4.0f, 9.0f};
  EXPECT_FLOAT_EQ(ColumnCovariance(3, x, y), 2.3333333f);
  EXPECT_EQ(ColumnCovariance(1, x, y), 0.0f);
  const float gone[] = {kMissing, kMissing, kMissing};
  int missing = -1;
  EXPECT_TRUE(std::isnan(ColumnCovariance(3, x, gone, &missing)));
  EXPECT_EQ(missing, 3);
}

TEST(CorrelationOfValid, OnePassFormulaSkippingIncompletePairs) {
  int missing = -1;
  EXPECT_EQ(CorrelationOfValid(8, kColumnX.data(), kColumnY.data(), &missing), -0.3999857008457184f);
  EXPECT_EQ(missing, 2);
}

TEST(CorrelationOfValid, SmallExactCaseAndConstantColumn) {
  // numpy.corrcoef([1,2,3,4], [2,1,4,3])[0,1] = 0.6.
  const float x[] = {1.0f, 2.0f, 3.0f, 4.0f};
  const float y[] = {2.0f, 1.0f, 4.0f, 3.0f};
  EXPECT_FLOAT_EQ(CorrelationOfValid(4, x, y), 0.6f);
  // A constant column has variance 0: 0/0, not a number, and no trap.
  const float c[] = {5.0f, 5.0f, 5.0f, 5.0f};
  EXPECT_TRUE(std::isnan(CorrelationOfValid(4, x, c)));
  EXPECT_TRUE(std::isnan(CorrelationOfValid(0, x, c)));
}

}  // namespace
}  // namespace tov
