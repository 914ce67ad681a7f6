// Functions whose inner arithmetic is free: single-precision agreement with
// scipy 1.10.1 (norm.cdf, special.erfc, special.betainc); the stated
// branches of TDF and the normal scores are pinned bit for bit in
// tests/numerics/ExactNumericsTest.

#include "numerics/distributions/Distributions.h"

#include <gtest/gtest.h>

#include <cmath>

#include "numerics/distributions/NormalScores.h"
#include "support/RaisedMessages.h"

namespace tov {
namespace {

TEST(Distributions, AgreeWithScipy) {
  struct Case {
    char function;  // 'N' ANORDF(x), 'E' ERFC(x), 'B' BETAI(x, a, b)
    float x, a, b;
    double value;
  } cases[] = {
      {'N', -8.0f, 0, 0, 6.22096057427174e-16},  {'N', -1.5f, 0, 0, 0.06680720126885807},
      {'N', 0.7f, 0, 0, 0.75803634405457},       {'N', 5.0f, 0, 0, 0.9999997133484281},
      {'E', -2.0f, 0, 0, 1.9953222650189528},    {'E', 0.25f, 0, 0, 0.7236736098317631},
      {'E', 3.0f, 0, 0, 2.2090496998585445e-05}, {'E', 9.0f, 0, 0, 4.137031746513811e-37},
      {'B', 0.3f, 2, 3, 0.3483000210285187},     {'B', 0.9f, 0.5f, 0.5f, 0.7951672100038704},
      {'B', 0.05f, 10, 1.5f, 3.5303301765251645e-13}, {'B', 0.999f, 200, 0.5f, 0.5272467673618995},
      {'B', 0.4f, 1000, 1500, 0.501086091539986}, {'B', 0.2f, 0.5f, 7, 0.9175821246820574},
  };
  for (const Case& c : cases) {
    const float value = c.function == 'N' ? ANORDF(c.x) : c.function == 'E' ? ERFC(c.x) : BETAI(c.x, c.a, c.b);
    EXPECT_NEAR(value, c.value, c.value < 0.5 ? 2e-6 * c.value : 2e-7) << c.function << " " << c.x;
  }
}

TEST(Distributions, EndsAndRefusals) {
  EXPECT_EQ(BETAI(0.0f, 2.0f, 3.0f), 0.0f);
  EXPECT_EQ(BETAI(1.0f, 2.0f, 3.0f), 1.0f);
  for (const float x : {1.5f, -0.1f, NAN}) EXPECT_TRUE(std::isnan(BETAI(x, 2.0f, 3.0f))) << x;
  EXPECT_TRUE(std::isnan(BETAI(0.5f, 0.0f, 3.0f)));
  for (const float df : {1.0f, 7.5f, 30.0f}) EXPECT_EQ(TDF(0.0f, df), 0.5f) << df;
  EXPECT_EQ(InverseNormal(0.0f), 0.0f);
  EXPECT_EQ(InverseNormal(1.0f), 0.0f);
  EXPECT_EQ(RaisedMessages([] { EXPECT_TRUE(std::isnan(TDF(1.0f, 0.5f))); }),
            "TDF: The input number of degrees of freedom, DF = 0.5, must be at least 1.\n");
  EXPECT_EXIT(TDF(1.0f, 0.0f), testing::ExitedWithCode(0), "DF = 0, must be at least 1");
}

}  // namespace
}  // namespace tov
