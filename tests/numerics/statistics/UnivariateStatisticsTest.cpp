#include "numerics/statistics/UnivariateStatistics.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "support/RaisedMessages.h"

namespace tov {
namespace {

// Rows 1..8 and 10 in the order mean, variance, std. dev., skewness,
// excess kurtosis, minimum, maximum, range, count.
struct Expected {
  double Row[8];
  int Count;
};

// Reference values: numpy 1.24 mean, var(ddof=1), std(ddof=1) and scipy
// 1.10 stats.skew(bias=True), stats.kurtosis(fisher=True, bias=True), in
// double precision on the same float values.
void ExpectStatistics(const std::vector<float>& x, const Expected& e, double relative) {
  UnivariateStatistics stat;
  UVSTA(static_cast<int>(x.size()), x.data(), 95.0f, 95.0f, stat);
  for (int row = 1; row <= 8; ++row)
    EXPECT_NEAR(stat(row), e.Row[row - 1], relative * (std::abs(e.Row[row - 1]) + 1.0)) << "row " << row;
  EXPECT_EQ(stat(10), static_cast<float>(e.Count));
}

// Values that are not a number are skipped.
TEST(UVSTA, MomentsOfASmallSampleMatchReference) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  ExpectStatistics({nan, 2.5f, -1.0f, 4.0f, nan, 3.25f, 10.0f, 0.5f},
                   {{3.2083333333333335, 14.460416666666665, 3.8026854546052933, 0.8726463523726465,
                     -0.13546449221784806, -1.0, 10.0, 11.0},
                    6},
                   2.0e-7);
}

// A mean of 10000 beside a spread of 12.5: raw power sums in single
// precision would lose the higher moments entirely.
TEST(UVSTA, UpdatingFormulasKeepTheMomentsOfALargeMean) {
  std::vector<float> x;
  for (int i = 1; i <= 200; ++i) x.push_back(10000.0f + static_cast<float>((i * 37) % 101) / 8.0f);
  ExpectStatistics(x,
                   {{10006.2725, 13.269277638190957, 3.642701969443967, 0.006309610841088071, -1.2050306610550099,
                     10000.0, 10012.5, 12.5},
                    200},
                   5.0e-7);
}

TEST(UVSTA, OneValueGivesItsMeanAndExtremesOnly) {
  UnivariateStatistics stat;
  const float x[] = {7.25f};
  const std::string text = RaisedMessages([&] { UVSTA(1, x, 95.0f, 95.0f, stat); });
  EXPECT_EQ(stat(1), 7.25f);
  for (int row = 2; row <= 5; ++row) EXPECT_TRUE(std::isnan(stat(row))) << row;
  EXPECT_EQ(stat(6), 7.25f);
  EXPECT_EQ(stat(7), 7.25f);
  EXPECT_EQ(stat(8), 0.0f);
  EXPECT_EQ(stat(10), 1.0f);
  EXPECT_EQ(N1RTY(1), SeverityWarningRepaired);
  EXPECT_NE(text.find("Fewer than two valid observations are present for variable 1."), std::string::npos) << text;
}

TEST(UVSTA, ConstantValuesGiveExactZeros) {
  UnivariateStatistics stat;
  const std::vector<float> x(41, 0.1f);
  const std::string text = RaisedMessages([&] { UVSTA(41, x.data(), 95.0f, 95.0f, stat); });
  for (int row = 2; row <= 5; ++row) EXPECT_EQ(stat(row), 0.0f) << row;
  EXPECT_EQ(stat(8), 0.0f);
  EXPECT_EQ(N1RTY(1), SeverityWarningRepaired);
  EXPECT_NE(text.find("The observations on variable 1 are constant."), std::string::npos) << text;
}

// The limits are the square, cube and fourth roots of the smallest normal
// float: about 1.1E-19, 2.3E-13 and 3.3E-10.  Skewness and kurtosis do not
// depend on the scale: those of {0, 1, 3} are 0.3818017741606064 and
// -1.5 (scipy, as above).
TEST(UVSTA, VerySmallRangesLoseTheHigherMomentsInTurn) {
  struct Case {
    float Scale;
    bool Variance;
    bool Skewness;
    bool Kurtosis;
  };
  const Case cases[] = {
      {1.0e-9f, true, true, true},
      {1.0e-11f, true, true, false},
      {1.0e-15f, true, false, false},
      {1.0e-20f, false, false, false},
  };
  for (const Case& c : cases) {
    const float x[] = {0.0f, c.Scale, 3.0f * c.Scale};
    UnivariateStatistics stat;
    const std::string text = RaisedMessages([&] { UVSTA(3, x, 95.0f, 95.0f, stat); });
    EXPECT_EQ(std::isnan(stat(2)), !c.Variance) << c.Scale;
    EXPECT_EQ(std::isnan(stat(4)), !c.Skewness) << c.Scale;
    EXPECT_EQ(std::isnan(stat(5)), !c.Kurtosis) << c.Scale;
    if (c.Variance) {
      EXPECT_NEAR(stat(2) / (c.Scale * c.Scale), 2.3333333333333335, 1.0e-5) << c.Scale;
    }
    if (c.Skewness) {
      EXPECT_NEAR(stat(4), 0.3818017741606064, 1.0e-5) << c.Scale;
    }
    if (c.Kurtosis) {
      EXPECT_NEAR(stat(5), -1.5, 1.0e-5) << c.Scale;
    }
    const bool warned = text.find("Since the range of variable 1 is very small, the higher") != std::string::npos;
    EXPECT_EQ(warned, !c.Kurtosis) << text;
    EXPECT_EQ(stat(8), 3.0f * c.Scale);
  }
}

}  // namespace
}  // namespace tov
