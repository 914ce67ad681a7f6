// The cases of the mapping that the exact-bit scans and the end-to-end
// mapping projects do not reach: the bad cases of the two-group test, the
// ends of the pair numbering, flagging at the edges, the stepwise branch of
// the R-square of the flagged markers, and the method codes of the tables.

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "mapping/AdditiveScan.h"
#include "mapping/MarkerEffects.h"
#include "mapping/SelectedRSquare.h"
#include "mapping/TwoGroupTest.h"

namespace tov {
namespace {

TEST(Mapping, TwoGroupTestBadCases) {
  const struct {
    std::string Codes;
    std::vector<float> Y;
    float LOD, MeanA, MeanB, FreqA;  // NAN where NaN is expected
  } cases[] = {
      {"XAX", {1, 2, 3}, NAN, 2, NAN, 1},             // one typed line: variances 0 / 0
      {"ABXAB", {4, 4, 7, 4, 4}, NAN, 4, 4, 0.5f},    // constant: variance 0, density NaN
      {"AAXA", {1, 2, 5, 4}, 0, 7.0f / 3, NAN, 1},    // no 'B' line: the models coincide
      {"XX", {1, 2}, 0, NAN, NAN, NAN},               // nothing typed: empty sums
      {"ABAB", {1, NAN, 2, 3}, NAN, 1.5f, NAN, 0.5f}, // a NaN value on a typed line
      {"X-\x01?xAB", {NAN, INFINITY, 1e30f, -1e30f, NAN, 1, 3}, NAN, 1, 3, 0.5f},  // one line each
  };
  for (const auto& c : cases) {
    float lod;
    FixedArray<float, 2> means, freqs;
    TwoGroupTest(static_cast<int>(c.Codes.size()), c.Codes.data(), c.Y.data(), lod, means, freqs);
    const float expected[] = {c.LOD, c.MeanA, c.MeanB, c.FreqA}, actual[] = {lod, means(1), means(2), freqs(1)};
    for (int k = 0; k < 4; ++k) {
      if (std::isnan(expected[k])) {
        EXPECT_TRUE(std::isnan(actual[k])) << c.Codes << " " << k;
      } else {
        EXPECT_EQ(actual[k], expected[k]) << c.Codes << " " << k;
      }
    }
  }
}

TEST(Mapping, PairNumbersAndTheirEnds) {
  int c = 0;
  for (int p = 1; p < 5; ++p)
    for (int q = p + 1; q <= 5; ++q) {
      const MarkerPair pair = PairOfNumber(5, ++c);
      EXPECT_TRUE(pair.First == p && pair.Second == q) << c;
    }
  for (const auto& [n, number, first, second] : {std::array<int, 4>{5, 0, 0, 1}, {5, -4, 0, 1}, {5, 11, 5, 6}}) {
    EXPECT_EQ(PairOfNumber(n, number).First, first) << number;
    EXPECT_EQ(PairOfNumber(n, number).Second, second) << number;
  }
}

MarkerTestTable TableOf(int code, const std::vector<float>& lods) {
  MarkerTestTable table;
  table.NumTests = static_cast<int>(lods.size());
  AllocMarkerTests(code, table);
  for (int m = 1; m <= table.NumTests; ++m) {
    table.Test(m).MarkerIndex = m;
    table.Test(m).LOD(1) = lods[m - 1];
    table.Test(m).GroupMean(1) = 2.0f * static_cast<float>(m);
    table.Test(m).GroupFreq(1) = table.Test(m).GroupFreq(2) = 0.5f;
  }
  return table;
}

TEST(Mapping, FlagsStrictlyAboveTheThresholdWithoutNaN) {
  MarkerTestTable table = TableOf(SingleMarkerMapping, {2.5f, std::nextafter(2.5f, 3.0f), 9, NAN, INFINITY, 9});
  table.Test(3).GroupMean(2) = NAN;
  table.Test(6).GroupFreq(2) = NAN;
  MarkSignificant(2.5f, table);
  const std::int32_t expected[] = {0, -1, 0, 0, -1, 0};
  for (int m = 1; m <= 6; ++m) EXPECT_EQ(table.Test(m).Significant, expected[m - 1]) << m;
  MarkSignificant(100.0f, table);
  EXPECT_EQ(table.Test(2).Significant, LogicalTrue) << "a later pass clears nothing";
  float mean, add;
  GenotypeEffects(table.Test(4).GroupMean, mean, add);
  EXPECT_TRUE(mean == 4.0f && add == 4.0f);
  table.Test(4).GroupMean(2) = NAN;
  GenotypeEffects(table.Test(4).GroupMean, mean, add);
  EXPECT_TRUE(mean == 0.0f && add == 0.0f) << "a NaN mean gives no effect";
  EXPECT_EQ(MarkerGeneticVariance(table.Test(4).GroupFreq, table.Test(4).GroupMean), 0.0f);
}

// Marker 1 carries the effect; markers 2 to 4 are typed at two lines each
// on lines of equal values, so that the determinant of the leading block,
// about (2/59)^3, is below 0.0001 and the stepwise branch admits marker 1
// alone: R2 = r2 ((N - 1) / N)^2 with r2 its squared correlation.
TEST(Mapping, RSquareOfFlaggedMarkersTakesTheStepwiseBranch) {
  constexpr int N = 60;
  Array<char, 2> genotype(4, N);
  std::vector<float> y;
  double sx = 0, sy = 0, sxy = 0, sxx = 0, syy = 0;
  for (int l = 1; l <= N; ++l) {
    genotype(1, l) = l % 2 == 1 ? 'A' : 'B';
    for (int m = 2; m <= 4; ++m) genotype(m, l) = 'X';
    const double x = l % 2 == 1 ? 1.0 : -1.0;
    y.push_back(10.0f + 2.0f * static_cast<float>(x) + (l <= 11 && l % 2 == 1 ? 0.0f : 1.5f * std::sin(static_cast<float>(l))));
    sx += x, sy += y.back(), sxy += x * y.back(), sxx += x * x, syy += double(y.back()) * y.back();
  }
  for (int m = 2; m <= 4; ++m) genotype(m, 4 * m - 7) = 'A', genotype(m, 4 * m - 5) = 'B';
  const double r2 = std::pow(sxy - sx * sy / N, 2) / ((sxx - sx * sx / N) * (syy - sy * sy / N));
  MarkerTestTable table = TableOf(SingleMarkerMapping, {1, 1, 1, 1});
  EXPECT_EQ(SelectedRSquare(N, genotype, y.data(), table), 0.0f) << "nothing flagged";
  MarkSignificant(0.5f, table);
  EXPECT_NEAR(SelectedRSquare(N, genotype, y.data(), table), r2 * std::pow((N - 1.0) / N, 2), 2e-5);
}

TEST(Mapping, TablesKnowTheirMethodCodes) {
  for (const int code : {10911, 10912, 10913, 10921, 10922, 10923, 10910, 10914, 10920, 10924, 10931}) {
    MarkerTestTable table;
    table.NumTests = 3;
    AllocMarkerTests(code, table);
    const bool known = code % 10 >= 1 && code % 10 <= 3 && code / 10 != 1093;
    ASSERT_EQ(table.Test.IsAllocated(), known) << code;
    if (known) {
      EXPECT_TRUE(table.Test(3).MarkerIndex == 0 && table.Test(3).LOD(1) == 0.0f);
    }
    FreeMarkerTests(table);
  }
}

}  // namespace
}  // namespace tov
