// The degenerate cases of the summaries and analyses of variance, and the W
// test against an independent translation; the order of the sums of the
// regular cases is pinned in tests/numerics/ExactNumericsTest.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "numerics/statistics/Anova.h"
#include "numerics/statistics/ShapiroWilk.h"
#include "numerics/statistics/UnivariateStatistics.h"
#include "support/RaisedMessages.h"

namespace tov {
namespace {

bool Says(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

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

// x(i) = the sum of (i * k) mod m over the multipliers, squared if asked,
// over div: exact floats, those given to the reference.
std::vector<float> Residues(int n, std::vector<int> multipliers, int m, bool square, float div) {
  std::vector<float> x;
  for (long long i = 1; i <= n; ++i) {
    long long v = 0;
    for (const int k : multipliers) v += (i * k) % m;
    x.push_back(static_cast<float>(square ? v * v : v) / div);
  }
  return x;
}

// W and P from Cdhc_royston of libgrass_cdhc (GRASS GIS 8.2.1), an
// independent double-precision translation of AS 181 with AS 177 scores,
// on the same floats: the tables of n up to 6 on both sides of y = 1.4,
// the short polynomials to n = 20 and the long ones beyond.
TEST(Statistics, ShapiroWilkMatchesAnIndependentTranslation) {
  const struct {
    std::vector<float> X;
    double W, P;
  } samples[] = {
      {{4.0f, 1.0f, 2.0f}, 0.9642857110495104, 0.636886831627809},
      {{1.0f, 2.0f, 2.5f, 6.0f}, 0.8725384007048457, 0.30367577163783965},
      {{0.0f, 0.25f, 0.75f, 1.0f}, 0.9506122239999999, 0.6899462584068091},
      {{0.5f, 1.0f, 1.25f, 2.0f, 7.0f}, 0.7379277681737588, 0.024851048614593148},
      {{0.0f, 0.25f, 0.5f, 0.75f, 1.75f}, 0.9031269208904108, 0.4239265929588414},
      {{0.0f, 0.25f, 0.5f, 0.75f, 1.0f, 2.25f}, 0.8876218198032788, 0.3024118152375131},
      {{-1.25f, -0.5f, -0.25f, 0.25f, 0.75f, 1.25f}, 0.9893688586118253, 0.9847422426730489},
      {Residues(7, {7919}, 1000, true, 64.0f), 0.9651643628337948, 0.8678070070956074},
      {Residues(20, {37}, 101, false, 8.0f), 0.9580552854247293, 0.5126007054790915},
      {Residues(21, {7919}, 1000, true, 64.0f), 0.931583466398746, 0.14459798187698647},
      {Residues(50, {37, 53, 71, 97}, 101, false, 8.0f), 0.9729295377604112, 0.47024086925614317},
      {Residues(200, {101, 211, 307, 401}, 509, false, 8.0f), 0.9601235610679516, 0.00027990837642045643},
      {Residues(2000, {101, 211, 307, 401}, 509, false, 8.0f), 0.9841106801356346, 0.0007814715082805868},
  };
  for (const auto& s : samples) {
    float w = -1.0f, p = -1.0f;
    int missing = -1;
    ASSERT_TRUE(SPWLK(static_cast<int>(s.X.size()), s.X.data(), w, p, missing)) << s.X.size();
    EXPECT_EQ(missing, 0);
    EXPECT_NEAR(w, s.W, 2.0e-6) << s.X.size();
    EXPECT_NEAR(p, s.P, 1.0e-6 + 2.0e-4 * s.P) << s.X.size();
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
