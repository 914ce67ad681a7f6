#include "numerics/statistics/Anova.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "support/RaisedMessages.h"

namespace tov {
namespace {

// Reference values: R 4.2, summary(aov(...)) for the sums of squares, DF,
// F and P; R-square, adjusted R-square, sqrt(MSE), mean and CV formed in R
// from those, in double precision.

void ExpectAov(const AovTable& aov, const double (&expected)[15]) {
  for (int k = 1; k <= 15; ++k)
    EXPECT_NEAR(aov(k), expected[k - 1], 2.0e-6 * (std::abs(expected[k - 1]) + 1.0)) << "AOV " << k;
}

TEST(AONEW, BalancedGroupsMatchReference) {
  const int ni[] = {3, 3, 3, 3};
  const float y[] = {10.5f, 12.0f, 11.25f, 14.0f, 15.5f, 13.75f, 9.0f, 8.5f, 10.25f, 12.5f, 12.0f, 13.0f};
  AovTable aov;
  AONEW(4, ni, y, aov);
  ExpectAov(aov, {3.0, 8.0, 11.0, 42.390625, 5.04166666666665, 47.4322916666666, 14.1302083333333,
                  0.630208333333331, 22.4214876033059, 3.00458099201354e-04, 89.3708136598221, 85.3848687822555,
                  0.793856620135734, 11.8541666666667, 6.69685725246314});
}

TEST(AONEW, GroupsOfUnequalSizeMatchReference) {
  const int ni[] = {2, 4, 3};
  const float y[] = {3.5f, 4.25f, 5.0f, 6.5f, 5.75f, 7.0f, 2.0f, 3.0f, 2.5f};
  AovTable aov;
  AONEW(3, ni, y, aov);
  ExpectAov(aov, {2.0, 6.0, 8.0, 22.4357638888888928, 3.0781250000000013, 25.5138888888888928,
                  11.2178819444444464, 0.5130208333333336, 21.8663282571911957, 0.0017560172462997,
                  87.9354926510615087, 83.9139902014153449, 0.7162547265696287, 4.3888888888888893,
                  16.3197279471560961});
}

// 0.1 is not a float: the group means of its float are not exactly it, so
// without care the sums of squares would be tiny but not 0.
TEST(AONEW, EqualResponsesGiveExactlyZeroSumsAndNoF) {
  const int ni[] = {7, 7, 7};
  const std::vector<float> y(21, 0.1f);
  AovTable aov;
  AONEW(3, ni, y.data(), aov);
  EXPECT_EQ(aov(4), 0.0f);
  EXPECT_EQ(aov(5), 0.0f);
  EXPECT_TRUE(std::isnan(aov(9)));
  EXPECT_TRUE(std::isnan(aov(10)));
  EXPECT_EQ(aov(1), 2.0f);
  EXPECT_EQ(aov(2), 18.0f);
}

TEST(AONEW, NoSpreadWithinGroupsGivesAnInfiniteFAndZeroP) {
  const int ni[] = {2, 2};
  const float y[] = {1.0f, 1.0f, 3.0f, 3.0f};
  AovTable aov;
  AONEW(2, ni, y, aov);
  EXPECT_EQ(aov(5), 0.0f);
  EXPECT_EQ(aov(4), 4.0f);
  EXPECT_TRUE(std::isinf(aov(9)) && aov(9) > 0.0f);
  EXPECT_EQ(aov(10), 0.0f);
}

// Responses with the replication fastest, then B, then A.
const int kSmallLevels[] = {3, 2, 2};
const float kSmall[] = {4.5f, 5.0f, 6.25f, 6.0f, 7.0f, 7.75f, 5.5f, 6.5f, 3.0f, 3.5f, 8.0f, 7.25f};

void ExpectEffect(const AnovaEffect& e, double df, double ss, double f, double p) {
  EXPECT_EQ(e.DF, static_cast<float>(df));
  EXPECT_NEAR(e.SS, ss, 2.0e-6 * (ss + 1.0));
  EXPECT_NEAR(e.F, f, 2.0e-6 * (f + 1.0));
  EXPECT_NEAR(e.P, p, 1.0e-7 + 2.0e-5 * p);
}

TEST(ANWAY, TwoFactorsWithInteractionMatchReference) {
  AovTable aov;
  TwoWayEffects effects;
  ASSERT_TRUE(ANWAY(kSmallLevels, kSmall, aov, effects));
  ExpectAov(aov, {5.0, 6.0, 11.0, 27.0885416666667, 1.34375, 28.4322916666667, 5.41770833333333,
                  0.223958333333333, 24.1906976744186, 6.56286662163109e-04, 95.2738596812603, 91.3354094156439,
                  0.473242362150023, 5.85416666666667, 8.08385529651284});
  ExpectEffect(effects.A, 2.0, 4.16666666666666, 9.30232558139535, 0.0145011389771841);
  ExpectEffect(effects.B, 1.0, 6.38020833333333, 28.4883720930233, 0.00176556611797511);
  ExpectEffect(effects.AxB, 2.0, 16.5416666666667, 36.9302325581396, 0.000424090208439781);
}

TEST(ANWAY, EverySubscriptNeedsTwoLevels) {
  const float y[8] = {1.0f, 2.0f, 3.0f, 4.0f, 5.0f, 6.0f, 7.0f, 8.0f};
  const int levels[][3] = {{1, 4, 2}, {4, 1, 2}, {2, 4, 1}};
  const char* texts[] = {"NL(1) = 1.  There must be at least two levels per factor.",
                         "NL(2) = 1.  There must be at least two levels per factor.",
                         "NL(3) = 1.  There must be at least two levels per factor."};
  for (int k = 0; k < 3; ++k) {
    AovTable aov;
    aov.Fill(-1.0f);
    TwoWayEffects effects;
    const std::string text = RaisedMessages([&] { EXPECT_FALSE(ANWAY(levels[k], y, aov, effects)); });
    EXPECT_NE(text.find(texts[k]), std::string::npos) << text;
    EXPECT_GE(N1RTY(1), SeverityFatal);
    EXPECT_EQ(aov(1), -1.0f);
  }
}

}  // namespace
}  // namespace tov
