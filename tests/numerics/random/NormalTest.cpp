#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "numerics/basic/ErrorPolicy.h"
#include "numerics/random/Random.h"

namespace tov {
namespace {

TEST(RNNOA, FirstDeviatesFromAFixedSeed) {
  // From an independent python3 model of the method in numpy.float32
  // (numpy's float32 log and exp).  Seed 13 reaches every region within
  // these 24 values: region 4 at the 3rd, 5 at the 8th and 13th, the tail
  // at the 9th, region 3 at the 22nd; 57 uniforms in all.
  const float expected[] = {
      -0.6424148082733154f,  1.9794185161590576f,  -1.1558129787445068f,  1.6937378644943237f,
      0.3464471399784088f,   1.448461651802063f,   0.4506842792034149f,   -0.42013120651245117f,
      4.719663619995117f,    0.34811532497406006f, -0.056225258857011795f, -0.07802388072013855f,
      0.23444463312625885f,  -0.1978217512369156f, 0.1929074227809906f,   1.659238338470459f,
      0.027466101571917534f, 0.5317458510398865f,  1.055400013923645f,    -0.5758464932441711f,
      0.6428158283233643f,   -2.1585872173309326f, 0.7079689502716064f,   -1.0838565826416016f,
  };
  StartStreamForTesting(13);
  float r[24];
  RNNOA(24, r);
  for (int i = 0; i < 24; ++i) EXPECT_FLOAT_EQ(r[i], expected[i]) << i;
  // The 57th state after seed 13: the draw order and the rejection loops.
  EXPECT_EQ(StreamStateForTesting(), 697343730);
}

TEST(RNNOA, NegativeCandidateInTheLastRegionStartsTheRoundAgain) {
  // Seed 19: the 4th deviate falls in the last region and its first pair
  // gives a negative candidate, which must be drawn again (python3 model as
  // above; 15 uniforms in all).
  const float expected[] = {-1.1093780994415283f, 0.2606106102466583f,  -1.5537163019180298f,
                            -0.30909112095832825f, 1.7089941501617432f, -0.5345575213432312f};
  StartStreamForTesting(19);
  float r[6];
  RNNOA(6, r);
  for (int i = 0; i < 6; ++i) EXPECT_FLOAT_EQ(r[i], expected[i]) << i;
  EXPECT_EQ(StreamStateForTesting(), 33868106);
}

TEST(RNNOA, LongRunIsStandardNormal) {
  constexpr int kCount = 1000000;
  std::vector<float> r(kCount);
  StartStreamForTesting(123457);
  RNNOA(kCount, r.data());
  // Every acceptance decision of a million deviates shows in the number of
  // uniforms used: 2161010, ending in this state (python3 model as above).
  EXPECT_EQ(StreamStateForTesting(), 1829062073);
  double sum = 0.0;
  double sumOfSquares = 0.0;
  for (float v : r) {
    sum += v;
    sumOfSquares += static_cast<double>(v) * v;
  }
  const double mean = sum / kCount;
  const double variance = sumOfSquares / kCount - mean * mean;
  // Standard errors: 0.001 for the mean, 0.0014 for the variance.
  EXPECT_NEAR(mean, 0.0, 0.005);
  EXPECT_NEAR(variance, 1.0, 0.007);
  // Fractions below z against the normal distribution function
  // (scipy.stats.norm.cdf); the points cut the regions of the method.
  const double points[][2] = {{-3.0, 0.0013498980316300933}, {-2.216, 0.013345751071706949},
                              {-1.5, 0.06680720126885807},   {-0.5, 0.3085375387259869},
                              {0.0, 0.5},                    {0.48, 0.6843863034837774},
                              {1.2, 0.8849303297782918},     {2.5, 0.9937903346742238}};
  for (const auto& point : points) {
    int below = 0;
    for (float v : r) below += v < point[0];
    const double p = point[1];
    EXPECT_NEAR(static_cast<double>(below) / kCount, p, 5.0 * std::sqrt(p * (1.0 - p) / kCount)) << point[0];
  }
}

TEST(RNNOA, CountBelowOneIsATerminalError) {
  ERSET(0, 1, 0);
  ClearLastError();
  StartStreamForTesting(99);
  float r[1] = {7.0f};
  ::testing::internal::CaptureStderr();
  RNNOA(0, r);
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "RNNOA: NR = 0.  NR must be greater than or equal to 1.\n");
  EXPECT_EQ(N1RTY(1), SeverityTerminal);
  EXPECT_EQ(r[0], 7.0f);
  EXPECT_EQ(StreamStateForTesting(), 99);
  ClearLastError();
  ERSET(0, 2, 2);
}

}  // namespace
}  // namespace tov
