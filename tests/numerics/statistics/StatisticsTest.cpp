// Degenerate summaries and analyses of variance, and the W test against an
// independent translation.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "numerics/statistics/Anova.h"
#include "numerics/statistics/ShapiroWilk.h"
#include "numerics/statistics/UnivariateStatistics.h"
#include "support/CaseTable.h"
#include "support/RaisedMessages.h"

namespace tov {
namespace {

TEST(Statistics, AnalysesOfVarianceWithoutSpread) {
  AovTable aov;
  const int ni[] = {7, 7, 7};
  const std::vector<float> same(21, 0.1f);  // group means of 0.1f need not be 0.1f
  AONEW(3, ni, same.data(), aov);
  EXPECT_TRUE(aov(2) == 18.0f && aov(4) == 0.0f && aov(5) == 0.0f && std::isnan(aov(9)) && std::isnan(aov(10)));
  const int pairs[] = {2, 2};
  const float steps[] = {1.0f, 1.0f, 3.0f, 3.0f};
  AONEW(2, pairs, steps, aov);
  EXPECT_TRUE(aov(9) == INFINITY && aov(10) == 0.0f && aov(12) == 100.0f);

  G1AOV(4.0f, 2.0f, 10.0f, 40.0f, 1.0f, aov);
  EXPECT_EQ(aov(12), 0.0f) << "error mean square above the total one";
  G1AOV(1.0f, 2.0f, 2.0f, 2.0f, 1.0f, aov);
  EXPECT_EQ(aov(12), 25.0f);
  G1AOV(2.0f, 10.0f, 0.0f, 0.0f, 5.0f, aov);
  for (const int k : {8, 9, 10, 12, 13, 15}) EXPECT_TRUE(std::isnan(aov(k))) << k;
  EXPECT_EQ(aov(11), 100.0f);
  G1AOV(1.0f, 8.0f, 5.0f, 5.0f, 0.0f, aov);
  EXPECT_EQ(aov(15), INFINITY);

  const float y[8] = {1, 2, 3, 4, 5, 6, 7, 8};
  const int levels[][3] = {{1, 4, 2}, {4, 1, 2}, {2, 4, 1}};
  for (int k = 0; k < 3; ++k) {
    aov.Fill(-1.0f);
    TwoWayEffects effects;
    const std::string text = RaisedMessages([&] { EXPECT_FALSE(ANWAY(levels[k], y, aov, effects)); });
    EXPECT_TRUE(Says(text, "NL(" + std::to_string(k + 1) + ") = 1.  There must be at least two levels per factor."))
        << text;
    EXPECT_EQ(aov(1), -1.0f);
  }
}

// The moments need ranges of at least the 2nd, 3rd and 4th roots of the
// smallest normal float: about 1.1E-19, 2.3E-13 and 3.3E-10.  (One value,
// constant values and their messages are met by the end-to-end projects of
// trait statistics.)
TEST(Statistics, UVSTAOfTinyValues) {
  UnivariateStatistics stat;
  const struct {
    float Scale;
    int Formed;  // variance, skewness, kurtosis formed in turn
  } cases[] = {{1.0e-9f, 3}, {1.0e-11f, 2}, {1.0e-15f, 1}, {1.0e-20f, 0}};
  for (const auto& c : cases) {
    const float x[] = {0.0f, c.Scale, 3.0f * c.Scale};
    const std::string text = RaisedMessages([&] { UVSTA(3, x, 95.0f, 95.0f, stat); });
    EXPECT_EQ(!std::isnan(stat(2)), c.Formed >= 1) << c.Scale;
    EXPECT_EQ(!std::isnan(stat(4)), c.Formed >= 2) << c.Scale;
    EXPECT_EQ(!std::isnan(stat(5)), c.Formed >= 3) << c.Scale;
    EXPECT_EQ(Says(text, "Since the range of variable 1 is very small, the higher"), c.Formed < 3) << c.Scale;
  }
}

std::vector<float> Residues(int n, std::vector<int> multipliers, int m, bool square, float div) {
  std::vector<float> x;
  for (long long i = 1; i <= n; ++i) {
    long long v = 0;
    for (const int k : multipliers) v += (i * k) % m;
    x.push_back(static_cast<float>(square ? v * v : v) / div);
  }
  return x;
}

// Samples given or formed by Residues (data/shapiro_wilk.txt tells how).
TEST(Statistics, ShapiroWilkMatchesAnIndependentTranslation) {
  for (const auto& s : testing_support::ReadCaseTable("numerics/statistics/data/shapiro_wilk.txt")) {
    using testing_support::Words;
    const std::vector<float> x =
        s.size() == 3 ? Words<float>(s[0])
                      : Residues(std::stoi(s[0]), Words<int>(s[1]), std::stoi(s[2]), s[3] == "squared", std::stof(s[4]));
    const double W = std::stod(s[s.size() - 2]), P = std::stod(s.back());
    float w = -1.0f, p = -1.0f;
    int missing = -1;
    ASSERT_TRUE(SPWLK(static_cast<int>(x.size()), x.data(), w, p, missing)) << x.size();
    EXPECT_EQ(missing, 0);
    EXPECT_NEAR(w, W, 2.0e-6) << x.size();
    EXPECT_NEAR(p, P, 1.0e-6 + 2.0e-4 * P) << x.size();
  }
}

TEST(Statistics, ShapiroWilkDropsRefusesAndTies) {
  float w = 0.5f, p = 0.5f, cleanW = 0.0f, cleanP = 0.0f;
  int missing = 0, none = 0;
  const std::vector<float> x = {5.0f, NAN, 0.125f, 3.5f, 12.0f, 7.25f, NAN, 1.0f, 2.0f, 9.5f, 4.0f, 6.0f};
  const std::vector<float> clean = {0.125f, 1.0f, 2.0f, 3.5f, 4.0f, 5.0f, 6.0f, 7.25f, 9.5f, 12.0f};
  ASSERT_TRUE(SPWLK(12, x.data(), w, p, missing));
  ASSERT_TRUE(SPWLK(10, clean.data(), cleanW, cleanP, none));
  EXPECT_TRUE(missing == 2 && w == cleanW && p == cleanP) << "NaN dropped, the rest sorted";

  const std::vector<float> many(2001, 1.0f);
  std::string text = RaisedMessages([&] { EXPECT_FALSE(SPWLK(2, many.data(), w, p, missing)); });
  EXPECT_TRUE(Says(text, "NOBS = 2.  NOBS must be greater than or equal to 3 and less than or equal to 2000.")) << text;
  text = RaisedMessages([&] { EXPECT_FALSE(SPWLK(2001, many.data(), w, p, missing)); });
  EXPECT_TRUE(Says(text, "NOBS = 2001.  NOBS must be")) << text;
  const float gaps[] = {1.0f, NAN, 2.0f, NAN};
  text = RaisedMessages([&] { EXPECT_FALSE(SPWLK(4, gaps, w, p, missing)); });
  EXPECT_TRUE(Says(text, "After removing the missing observations only 2 observations remain.  The test cannot proceed."));
  for (const int n : {3, 40, 2000}) {
    text = RaisedMessages([&] { EXPECT_TRUE(SPWLK(n, many.data(), w, p, missing)); });
    EXPECT_TRUE(w == 0.0f && p == 1.0f && Says(text, "All observations in X are tied.")) << n;
  }
}

}  // namespace
}  // namespace tov
