// The two-group likelihood ratio test of one marker.  Exact values come
// from reference/two_group_test.py, which follows the stated steps in
// numpy float32 with the C library's log10f, one log density per line; the
// random-data checks use the closed form of the LOD of two normal models,
// n/2 log10(RSS0/RSS1), computed here in 64 bits.

#include "mapping/TwoGroupTest.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "mapping/LogDensity.h"

namespace tov {
namespace {

const float NaN = std::numeric_limits<float>::quiet_NaN();

struct Result {
  float LOD = 0.0f;
  FixedArray<float, 2> Means;
  FixedArray<float, 2> Freqs;
};

Result RunTest(const std::string& codes, const std::vector<float>& y) {
  Result r;
  TwoGroupTest(static_cast<int>(codes.size()), codes.data(), y.data(), r.LOD, r.Means, r.Freqs);
  return r;
}

bool SameBits(float a, float b) { return std::memcmp(&a, &b, sizeof a) == 0; }

// n/2 log10(RSS0/RSS1) over the 'A' and 'B' lines, in 64 bits.
double ClosedFormLod(const std::string& codes, const std::vector<float>& y) {
  double sum = 0, sumA = 0, sumB = 0;
  int nA = 0, nB = 0;
  for (std::size_t i = 0; i < codes.size(); ++i) {
    if (codes[i] == 'A') sumA += y[i], ++nA;
    if (codes[i] == 'B') sumB += y[i], ++nB;
  }
  sum = sumA + sumB;
  const double m0 = sum / (nA + nB), mA = sumA / nA, mB = sumB / nB;
  double rss0 = 0, rss1 = 0;
  for (std::size_t i = 0; i < codes.size(); ++i) {
    if (codes[i] != 'A' && codes[i] != 'B') continue;
    rss0 += (y[i] - m0) * (y[i] - m0);
    const double m = codes[i] == 'A' ? mA : mB;
    rss1 += (y[i] - m) * (y[i] - m);
  }
  return (nA + nB) / 2.0 * std::log10(rss0 / rss1);
}

TEST(LogDensity10, MatchesTheNormalDensityAndTheStatedOrder) {
  // log10 of the normal density at 1.5 with mean 0.25, variance 2.0, in 64 bits.
  const double exact = std::log10(std::exp(-1.25 * 1.25 / 4.0) / std::sqrt(2.0 * M_PI * 2.0));
  EXPECT_NEAR(LogDensity10(1.5f, 0.25f, 2.0f), exact, 1e-6);
  // The exact single-precision value of the stated order (reference script).
  EXPECT_EQ(LogDensity10(1.5f, 0.25f, 2.0f), -0x1.7041b00000000p-1f);
}

TEST(LogDensity10, VarianceNotPositiveGivesNaN) {
  EXPECT_TRUE(std::isnan(LogDensity10(1.0f, 0.0f, 0.0f)));
  EXPECT_TRUE(std::isnan(LogDensity10(1.0f, 0.0f, -0.0f)));
  EXPECT_TRUE(std::isnan(LogDensity10(1.0f, 0.0f, -2.0f)));
  EXPECT_TRUE(std::isnan(LogDensity10(1.0f, 0.0f, NaN)));
  EXPECT_TRUE(std::isnan(LogDensity10(1.0f, NaN, 1.0f)));
  EXPECT_FALSE(std::isnan(LogDensity10(1.0f, 0.0f, 1.0e-30f)));
}

TEST(TwoGroupTest, ExactSinglePrecisionValues) {
  // 'X' lines carry wild values that must play no part.
  const Result mixed = RunTest("AABXBABAXABA", {3.1f, 2.7f, 1.2f, 99.0f, 0.4f, 2.2f, 1.9f, 3.3f, -5.0f, 0.8f, 1.1f, 2.9f});
  EXPECT_EQ(mixed.LOD, 0x1.4e07800000000p+0f);
  EXPECT_EQ(mixed.Means(1), 0x1.4000000000000p+1f);
  EXPECT_EQ(mixed.Means(2), 0x1.2666660000000p+0f);
  EXPECT_EQ(mixed.Freqs(1), 0x1.3333340000000p-1f);  // 6 of 10
  EXPECT_EQ(mixed.Freqs(2), 0x1.99999a0000000p-2f);  // 4 of 10

  const Result strong = RunTest("AAAAABBBBB", {10.25f, 11.5f, 9.75f, 10.5f, 10.0f, 7.5f, 8.25f, 7.0f, 8.0f, 7.75f});
  EXPECT_EQ(strong.LOD, 0x1.1a5bb20000000p+2f);
  EXPECT_EQ(strong.Means(1), 0x1.4ccccc0000000p+3f);
  EXPECT_EQ(strong.Means(2), 0x1.eccccc0000000p+2f);
}

TEST(TwoGroupTest, EqualMeansGiveZero) {
  const Result r = RunTest("ABABABABAB", {0.1f, 0.5f, 0.2f, 0.4f, 0.3f, 0.3f, 0.4f, 0.2f, 0.5f, 0.1f});
  EXPECT_EQ(r.Means(1), r.Means(2));
  EXPECT_TRUE(SameBits(r.LOD, 0.0f));
  EXPECT_EQ(r.Freqs(1), 0.5f);
  EXPECT_EQ(r.Freqs(2), 0.5f);
}

TEST(TwoGroupTest, UntypedLinesChangeNothing) {
  const std::string codes = "ABBAABABBA";
  const std::vector<float> y = {1.5f, 0.25f, 0.75f, 2.0f, 1.25f, -0.5f, 1.75f, 0.5f, 0.0f, 2.5f};
  const Result plain = RunTest(codes, y);
  // The same lines with untyped lines of every kind in between, carrying
  // NaN, infinities and huge values.
  const std::string untypedCodes = "X-\x01?xab";
  const float untypedValues[] = {NaN, std::numeric_limits<float>::infinity(), 1e30f, -1e30f, NaN, 7.0f, -7.0f};
  std::string padded;
  std::vector<float> paddedY;
  for (std::size_t i = 0; i < codes.size(); ++i) {
    padded += untypedCodes[i % untypedCodes.size()];
    paddedY.push_back(untypedValues[i % untypedCodes.size()]);
    padded += codes[i];
    paddedY.push_back(y[i]);
  }
  const Result withUntyped = RunTest(padded, paddedY);
  EXPECT_TRUE(SameBits(plain.LOD, withUntyped.LOD));
  EXPECT_TRUE(SameBits(plain.Means(1), withUntyped.Means(1)));
  EXPECT_TRUE(SameBits(plain.Means(2), withUntyped.Means(2)));
  EXPECT_TRUE(SameBits(plain.Freqs(1), withUntyped.Freqs(1)));
  EXPECT_TRUE(SameBits(plain.Freqs(2), withUntyped.Freqs(2)));
  EXPECT_EQ(plain.Freqs(1) + plain.Freqs(2), 1.0f);
}

TEST(TwoGroupTest, BadCasesEndAsNaN) {
  // One typed line: both variances 0/0.
  const Result one = RunTest("XAX", {1.0f, 2.0f, 3.0f});
  EXPECT_TRUE(std::isnan(one.LOD));
  // Constant among the typed lines: v0 = 0.0 and the density is NaN.
  const Result constant = RunTest("ABXAB", {4.0f, 4.0f, 7.0f, 4.0f, 4.0f});
  EXPECT_TRUE(std::isnan(constant.LOD));
  EXPECT_EQ(constant.Means(1), 4.0f);
  // No 'B' line: the 'B' mean is 0/0, the models coincide, LOD 0.0.
  const Result noB = RunTest("AAXA", {1.0f, 2.0f, 5.0f, 4.0f});
  EXPECT_TRUE(std::isnan(noB.Means(2)));
  EXPECT_EQ(noB.LOD, 0.0f);
  EXPECT_EQ(noB.Freqs(1), 1.0f);
  EXPECT_EQ(noB.Freqs(2), 0.0f);
  // No typed line at all.
  const Result none = RunTest("XX", {1.0f, 2.0f});
  EXPECT_TRUE(std::isnan(none.Means(1)));
  EXPECT_TRUE(std::isnan(none.Freqs(1)));
  // A NaN value on a typed line reaches the LOD.
  const Result nanValue = RunTest("ABAB", {1.0f, NaN, 2.0f, 3.0f});
  EXPECT_TRUE(std::isnan(nanValue.LOD));
}

TEST(TwoGroupTest, AgreesWithTheClosedFormOnRandomData) {
  std::mt19937 random(20240601u);
  std::normal_distribution<float> normal(0.0f, 1.0f);
  for (int trial = 0; trial < 200; ++trial) {
    const int n = 5 + static_cast<int>(random() % 196u);
    std::string codes(static_cast<std::size_t>(n), 'X');
    std::vector<float> y(static_cast<std::size_t>(n));
    const float effect = static_cast<float>(trial % 5) * 0.3f;
    for (int i = 0; i < n; ++i) {
      const unsigned r = random() % 10u;
      codes[static_cast<std::size_t>(i)] = r < 5u ? 'A' : r < 9u ? 'B' : 'X';
      y[static_cast<std::size_t>(i)] = 20.0f + normal(random) + (codes[static_cast<std::size_t>(i)] == 'A' ? effect : 0.0f);
    }
    codes[0] = 'A';
    codes[1] = 'B';
    const Result r = RunTest(codes, y);
    const double expected = ClosedFormLod(codes, y);
    // Sums of n log densities of about 1 in 32 bits.
    const double tolerance = 4.0 * n * std::numeric_limits<float>::epsilon() * 2.0;
    EXPECT_NEAR(r.LOD, expected < 0.0 ? 0.0 : expected, tolerance) << "trial " << trial << ", n " << n;
  }
}

}  // namespace
}  // namespace tov
