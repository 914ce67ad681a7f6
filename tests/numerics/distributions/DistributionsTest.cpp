#include "numerics/distributions/Distributions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "numerics/basic/ErrorPolicy.h"

namespace tov {
namespace {

// Single-precision agreement: relative in the lower tail, a few float
// spacings near 1.
void ExpectProbability(float value, double reference) {
  const double tolerance = reference < 0.5 ? 2e-6 * reference : 2e-7;
  EXPECT_NEAR(value, reference, tolerance);
}

struct TCase {
  float t, df;
  double cdf;  // scipy.stats.t.cdf(t, df), scipy 1.10.1
};

TEST(TDF, AgreesWithTheTDistributionOnEveryBranch) {
  const TCase cases[] = {
      // Whole df below 20, small and large t.
      {1.5f, 5.0f, 0.9030481598787634},
      {-0.7f, 1.0f, 0.3055998903324628},
      {-1.9f, 10.0f, 0.04331123046112779},
      {-3.0f, 15.0f, 0.004486368738611661},
      {4.2f, 19.0f, 0.9997573416583697},
      // Fractional or large df: the normal approximation.
      {1.3f, 25.0f, 0.8972701317693161},
      {-2.1f, 7.5f, 0.03561854088442408},
      {2.0f, 1000.0f, 0.9771148267533741},
      {0.9f, 20.0f, 0.8105851690014867},
      // df not above t squared: the incomplete beta.
      {-2.5f, 3.0f, 0.04385332350403277},
      {10.0f, 1.0f, 0.9682744825694464},
      {-1.0f, 1.0f, 0.24999999999999978},
      {2.0f, 4.0f, 0.9419417382415922},
  };
  for (const TCase& c : cases) {
    SCOPED_TRACE(std::to_string(c.t) + " " + std::to_string(c.df));
    ExpectProbability(TDF(c.t, c.df), c.cdf);
  }
  // The approximation is coarse at a small fractional df: 0.20733 against
  // the exact 0.2084498; the error of the method, not of the code.
  EXPECT_NEAR(TDF(-1.1f, 1.5f), 0.20844980842885724, 1.5e-3);
}

TEST(TDF, DfBelowOneIsATerminalErrorWithNaN) {
  ERSET(0, 1, 0);
  ClearLastError();
  ::testing::internal::CaptureStderr();
  const float p = TDF(1.0f, 0.5f);
  const std::string printed = ::testing::internal::GetCapturedStderr();
  EXPECT_TRUE(std::isnan(p));
  EXPECT_EQ(N1RTY(1), SeverityTerminal);
  EXPECT_EQ(printed, "TDF: The input number of degrees of freedom, DF = 0.5, must be at least 1.\n");
  ClearLastError();
  ERSET(0, 2, 2);
  // Under the default policy a terminal error ends the process.
  EXPECT_EXIT(TDF(1.0f, 0.0f), ::testing::ExitedWithCode(0), "DF = 0, must be at least 1");
}

TEST(ANORDF, AgreesWithTheNormalDistribution) {
  // scipy.stats.norm.cdf(x), scipy 1.10.1.
  const double reference[][2] = {
      {-8.0, 6.22096057427174e-16}, {-3.0, 0.0013498980316300933}, {-1.5, 0.06680720126885807},
      {-0.3, 0.3820885732645503},   {0.0, 0.5},                     {0.7, 0.75803634405457},
      {2.0, 0.9772498680518208},    {5.0, 0.9999997133484281},
  };
  for (const auto& r : reference) ExpectProbability(ANORDF(static_cast<float>(r[0])), r[1]);
}

TEST(ERFC, AgreesWithTheComplementaryErrorFunction) {
  // scipy.special.erfc(x), scipy 1.10.1.
  const double reference[][2] = {
      {-2.0, 1.9953222650189528}, {-0.5, 1.5204998778130465},    {0.0, 1.0},
      {0.25, 0.7236736098317631}, {1.0, 0.15729920705028516},    {3.0, 2.2090496998585445e-05},
      {9.0, 4.137031746513811e-37},
  };
  for (const auto& r : reference) EXPECT_NEAR(ERFC(static_cast<float>(r[0])), r[1], 2e-7 * r[1]) << r[0];
}

TEST(BETAI, AgreesWithTheRegularisedIncompleteBeta) {
  // scipy.special.betainc(a, b, x), scipy 1.10.1; the large parameters are
  // those of F tests with many lines.
  struct Case {
    float x, a, b;
    double value;
  };
  const Case cases[] = {
      {0.3f, 2.0f, 3.0f, 0.3483000210285187},          {0.9f, 0.5f, 0.5f, 0.7951672100038704},
      {0.05f, 10.0f, 1.5f, 3.5303301765251645e-13},    {0.7f, 50.0f, 20.0f, 0.3825091660574373},
      {0.999f, 200.0f, 0.5f, 0.5272467673618995},      {0.4f, 1000.0f, 1500.0f, 0.501086091539986},
      {0.6f, 1000.0f, 1500.0f, 0.9999999999999999},    {0.2f, 0.5f, 7.0f, 0.9175821246820574},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::to_string(c.x) + " " + std::to_string(c.a) + " " + std::to_string(c.b));
    ExpectProbability(BETAI(c.x, c.a, c.b), c.value);
  }
}

TEST(BETAI, EndsAndOutOfRange) {
  EXPECT_EQ(BETAI(0.0f, 2.0f, 3.0f), 0.0f);
  EXPECT_EQ(BETAI(1.0f, 2.0f, 3.0f), 1.0f);
  EXPECT_TRUE(std::isnan(BETAI(1.5f, 2.0f, 3.0f)));
  EXPECT_TRUE(std::isnan(BETAI(-0.1f, 2.0f, 3.0f)));
  EXPECT_TRUE(std::isnan(BETAI(0.5f, 0.0f, 3.0f)));
  EXPECT_TRUE(std::isnan(BETAI(NAN, 2.0f, 3.0f)));
}

}  // namespace
}  // namespace tov
