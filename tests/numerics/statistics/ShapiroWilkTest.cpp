#include "numerics/statistics/ShapiroWilk.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "support/RaisedMessages.h"
#include "numerics/basic/ErrorPolicy.h"

namespace tov {
namespace {

// Reference values: Cdhc_royston of libgrass_cdhc (GRASS GIS 8.2.1, Debian
// package grass-core), an independent double-precision C translation of
// AS 181 with AS 177 scores and AS 241 quantiles, called through ctypes on
// the same float values.  For n = 3, R 4.2 shapiro.test gives the same
// W = 0.96428571 and p = 0.6368868 (its later algorithm is exact there and
// differs from AS 181 for n > 3).

struct Sample {
  const char* Name;
  std::vector<float> X;
  double W;
  double P;
};

// x(i) = ((i * mult) mod m), optionally squared, over div, i = 1..n: exact
// floats, identical to the values the reference was given.
std::vector<float> Residues(int n, int mult, int m, bool square, float div) {
  std::vector<float> x;
  for (int i = 1; i <= n; ++i) {
    long long v = (static_cast<long long>(i) * mult) % m;
    if (square) v *= v;
    x.push_back(static_cast<float>(v) / div);
  }
  return x;
}

// Sums of four residue sequences over 8: near normal.
std::vector<float> ResidueSums(int n, int a, int b, int c, int d, int m) {
  std::vector<float> x;
  for (int i = 1; i <= n; ++i) {
    const long long v = (1LL * i * a) % m + (1LL * i * b) % m + (1LL * i * c) % m + (1LL * i * d) % m;
    x.push_back(static_cast<float>(v) / 8.0f);
  }
  return x;
}

void ExpectMatches(const Sample& s) {
  float w = -1.0f;
  float p = -1.0f;
  int missing = -1;
  ASSERT_TRUE(SPWLK(static_cast<int>(s.X.size()), s.X.data(), w, p, missing)) << s.Name;
  EXPECT_EQ(missing, 0) << s.Name;
  EXPECT_NEAR(w, s.W, 2.0e-6) << s.Name;
  EXPECT_NEAR(p, s.P, 1.0e-6 + 2.0e-4 * s.P) << s.Name;
}

// n = 4..6 have samples on both sides of y = 1.4: "skew" falls in the low
// group, "near" (close to normal) in the high group, "edge" just below 1.4.
TEST(SPWLK, SmallSamplesFromTablesMatchReference) {
  const Sample samples[] = {
      {"n3", {4.0f, 1.0f, 2.0f}, 0.9642857110495104, 0.636886831627809},
      {"n4 skew", {1.0f, 2.0f, 2.5f, 6.0f}, 0.8725384007048457, 0.30367577163783965},
      {"n4 near", {-1.0f, -0.25f, 0.5f, 1.0f}, 0.9791347472108843, 0.8687054426784568},
      {"n4 edge", {0.0f, 0.25f, 0.75f, 1.75f}, 0.9203376420869566, 0.5251272535999488},
      {"n4 above", {0.0f, 0.25f, 0.75f, 1.0f}, 0.9506122239999999, 0.6899462584068091},
      {"n5 skew", {0.5f, 1.0f, 1.25f, 2.0f, 7.0f}, 0.7379277681737588, 0.024851048614593148},
      {"n5 near", {-1.25f, -0.5f, 0.0f, 0.5f, 1.0f}, 0.9889794756147542, 0.9657630968585379},
      {"n5 edge", {0.0f, 0.25f, 0.5f, 0.75f, 1.75f}, 0.9031269208904108, 0.4239265929588414},
      {"n5 above", {0.0f, 0.25f, 0.5f, 0.75f, 1.5f}, 0.9427483188679244, 0.6932901248128711},
      {"n6 skew", {3.0f, 3.5f, 3.25f, 4.0f, 9.0f, 5.0f}, 0.7578685078773009, 0.02400530652598627},
      {"n6 near", {-1.25f, -0.5f, -0.25f, 0.25f, 0.75f, 1.25f}, 0.9893688586118253, 0.9847422426730489},
      {"n6 edge", {0.0f, 0.25f, 0.5f, 0.75f, 1.0f, 2.25f}, 0.8876218198032788, 0.3024118152375131},
      {"n6 above", {0.0f, 0.25f, 0.5f, 0.75f, 1.0f, 2.0f}, 0.9223672702500001, 0.5180333729779897},
  };
  for (const Sample& s : samples) ExpectMatches(s);
}

// 7..20 use n - 1 in the extreme weight and the short polynomials; from 21
// on, n and the long ones.
TEST(SPWLK, SamplesWithApproximateScoresMatchReference) {
  const Sample samples[] = {
      {"7", Residues(7, 37, 101, false, 8.0f), 0.9671261159544279, 0.8819135311441657},
      {"7 sq", Residues(7, 7919, 1000, true, 64.0f), 0.9651643628337948, 0.8678070070956074},
      {"10 sq", Residues(10, 7919, 1000, true, 64.0f), 0.9414702250408891, 0.5530053629457077},
      {"20", Residues(20, 37, 101, false, 8.0f), 0.9580552854247293, 0.5126007054790915},
      {"20 sq", Residues(20, 7919, 1000, true, 64.0f), 0.9384406431503811, 0.2353214985067814},
      {"21", Residues(21, 37, 101, false, 8.0f), 0.9638167318082996, 0.5836447588115972},
      {"21 sq", Residues(21, 7919, 1000, true, 64.0f), 0.931583466398746, 0.14459798187698647},
      {"25", ResidueSums(25, 37, 53, 71, 97, 101), 0.9678394192556938, 0.5996458808028265},
      {"50", Residues(50, 37, 101, false, 8.0f), 0.9406882247764051, 0.021803871230745956},
      {"50 sums", ResidueSums(50, 37, 53, 71, 97, 101), 0.9729295377604112, 0.47024086925614317},
      {"200 sums", ResidueSums(200, 37, 53, 71, 97, 101), 0.9818552763511115, 0.44908503357377455},
      {"200 sums b", ResidueSums(200, 101, 211, 307, 401, 509), 0.9601235610679516, 0.00027990837642045643},
      {"1000 sums b", ResidueSums(1000, 101, 211, 307, 401, 509), 0.9844179837529433, 0.1553096581966008},
      {"2000 sums b", ResidueSums(2000, 101, 211, 307, 401, 509), 0.9841106801356346, 0.0007814715082805868},
  };
  for (const Sample& s : samples) ExpectMatches(s);
}

TEST(SPWLK, DropsNotANumberAndSortsBeforeTesting) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const std::vector<float> x = {5.0f, nan, 0.125f, 3.5f, 12.0f, 7.25f, nan, 1.0f, 2.0f, 9.5f, 4.0f, 6.0f};
  std::vector<float> clean = {0.125f, 1.0f, 2.0f, 3.5f, 4.0f, 5.0f, 6.0f, 7.25f, 9.5f, 12.0f};
  float w = 0.0f, p = 0.0f, cleanW = 0.0f, cleanP = 0.0f;
  int missing = 0, cleanMissing = 0;
  ASSERT_TRUE(SPWLK(12, x.data(), w, p, missing));
  ASSERT_TRUE(SPWLK(10, clean.data(), cleanW, cleanP, cleanMissing));
  EXPECT_EQ(missing, 2);
  EXPECT_EQ(w, cleanW);
  EXPECT_EQ(p, cleanP);
  // The -9999.0 code is an ordinary value here, not a missing one.
  clean[0] = -9999.0f;
  ASSERT_TRUE(SPWLK(10, clean.data(), cleanW, cleanP, cleanMissing));
  EXPECT_EQ(cleanMissing, 0);
  EXPECT_LT(cleanW, 0.5f);
}

TEST(SPWLK, RefusesSampleSizesOutsideThreeTo2000) {
  const std::vector<float> x(2001, 1.0f);
  float w = 0.5f, p = 0.5f;
  int missing = 0;
  std::string text = RaisedMessages([&] { EXPECT_FALSE(SPWLK(2, x.data(), w, p, missing)); });
  EXPECT_EQ(N1RTY(1), SeverityTerminal);
  EXPECT_NE(text.find("NOBS = 2.  NOBS must be greater than or equal to 3 and less than or equal to 2000."),
            std::string::npos)
      << text;
  text = RaisedMessages([&] { EXPECT_FALSE(SPWLK(2001, x.data(), w, p, missing)); });
  EXPECT_NE(text.find("NOBS = 2001.  NOBS must be"), std::string::npos) << text;
  EXPECT_EQ(w, 0.5f);
  EXPECT_EQ(p, 0.5f);
  text = RaisedMessages([&] { EXPECT_TRUE(SPWLK(2000, x.data(), w, p, missing)); });
  EXPECT_EQ(text.find("NOBS"), std::string::npos) << text;
}

TEST(SPWLK, RefusesWhenFewerThanThreeValuesRemain) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float x[] = {1.0f, nan, 2.0f, nan};
  float w = 0.5f, p = 0.5f;
  int missing = 0;
  const std::string text = RaisedMessages([&] { EXPECT_FALSE(SPWLK(4, x, w, p, missing)); });
  EXPECT_NE(text.find("After removing the missing observations only 2 observations remain.  The test cannot proceed."),
            std::string::npos)
      << text;
  EXPECT_GE(N1RTY(1), SeverityFatal);
  EXPECT_EQ(w, 0.5f);
}

TEST(SPWLK, AllTiedGivesZeroWAndUnitPWithAWarning) {
  for (int n : {3, 5, 40}) {
    const std::vector<float> x(static_cast<std::size_t>(n), 0.1f);
    float w = -1.0f, p = -1.0f;
    int missing = -1;
    const std::string text = RaisedMessages([&] { EXPECT_TRUE(SPWLK(n, x.data(), w, p, missing)); });
    EXPECT_EQ(w, 0.0f) << n;
    EXPECT_EQ(p, 1.0f) << n;
    EXPECT_EQ(N1RTY(1), SeverityWarning);
    EXPECT_NE(text.find("All observations in X are tied."), std::string::npos) << text;
  }
}

}  // namespace
}  // namespace tov
