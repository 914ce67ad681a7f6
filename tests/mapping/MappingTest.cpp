// The cases of the mapping that the exact-bit scans and the end-to-end
// mapping projects do not reach.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "mapping/AdditiveScan.h"
#include "mapping/FourGroupTest.h"
#include "mapping/MarkerEffects.h"
#include "mapping/MarkerTables.h"
#include "mapping/PairEffects.h"
#include "mapping/SelectedRSquare.h"
#include "mapping/TwoGroupTest.h"
#include "support/ScratchFile.h"

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
    for (int k = 0; k < 4; ++k)
      EXPECT_TRUE(actual[k] == expected[k] || (std::isnan(actual[k]) && std::isnan(expected[k])))
          << c.Codes << " " << k << ": " << actual[k];
  }
}

TEST(Mapping, PairNumbersAndTheirEnds) {
  for (const auto& [n, pairs] : {std::pair{1, 0}, {2, 1}, {1000, 499500}}) EXPECT_EQ(NumPairs(n), pairs) << n;
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
  // A pair record is passed over for a NaN anywhere, LODtotal included.
  PairTestTable pairs;
  pairs.NumTests = 3;
  AllocPairTests(EpistaticMapping, pairs);
  for (PairTest& test : pairs.Test) test.LOD = {{9.0f, 9.0f}};
  pairs.Test(2).LOD(2) = NAN;
  pairs.Test(3).CellFreq(4) = NAN;
  MarkSignificantPairs(2.5f, pairs);
  for (int p = 1; p <= 3; ++p) EXPECT_EQ(pairs.Test(p).Significant, p == 1 ? LogicalTrue : LogicalFalse) << p;
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
  for (const int code : {10910, 10911, 10912, 10913, 10914, 10920, 10921, 10922, 10923, 10924, 10931}) {
    MarkerTestTable markers;
    PairTestTable pairs;
    markers.NumTests = pairs.NumTests = 3;
    AllocMarkerTests(code, markers);
    AllocPairTests(code, pairs);
    ASSERT_EQ(markers.Test.IsAllocated(), code % 10 >= 1 && code % 10 <= 3 && code < 10930) << code;
    EXPECT_EQ(pairs.Test.IsAllocated(), code == 10931) << code;
    EXPECT_TRUE(!markers.Test.IsAllocated() || (markers.Test(3).MarkerIndex == 0 && markers.Test(3).LOD(1) == 0));
  }
}

TEST(WriteMarkerTables, MeanPassAndSharesThatCannotBeFormed) {
  // Two environments; kept markers 2, 5, 9, 11, 12 of 12.
  RunData run;
  run.NumEnvs = 2;
  run.MarkerName.Allocate(12);
  for (int id = 1; id <= 12; ++id) run.MarkerName(id) = std::string("m").append(std::to_string(id));
  run.KeptMarker.Allocate(5);
  MarkerTestTable table;
  table.NumTests = 5;
  AllocMarkerTests(SingleMarkerMapping, table);
  const int kept[] = {2, 5, 9, 11, 12};
  const MarkerTest records[] = {
      {0, 1, {{3.5f}}, {{12.0f, 8.0f}}, {{0.5f, 0.5f}}},    // VG = 0.5*144 + 0.5*64 - 100 = 4
      {0, 2, {{1.0f}}, {{9.0f, 11.0f}}, {{0.25f, 0.75f}}},  // VG = 111 - 10.5^2 = 0.75
      {0, 3, {{6.0f}}, {{NAN, 11.0f}}, {{0.0f, 1.0f}}},     // monomorphic: no row anywhere
      {0, 4, {{4.0f}}, {{7.0f, 13.0f}}, {{0.5f, 0.5f}}},    // VG = 0.5*49 + 0.5*169 - 100 = 9
      {0, 5, {{0.0f}}, {{10.0f, 10.0f}}, {{0.5f, 0.5f}}},   // LOD 0.0 with both groups: a row
  };
  for (int m = 1; m <= 5; ++m) run.KeptMarker(m) = kept[m - 1];
  std::copy(std::begin(records), std::end(records), table.Test.begin());
  MarkSignificant(3.6f, table);  // flags marker 11 only
  // VarP NaN, SumVG 0 and RSq NaN: NaN shares, printed as 0.0.
  testing_support::ScratchFile all("mean-all"), selected("mean-selected");
  WriteMarkerTables(all.Unit(), selected.Unit(), run, 2, "Yield", 3, NAN, 0.0f, NAN, table);
  const std::vector<std::string> lines = all.Lines();
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[0],
            "           2               Yield        Mean           2                                  m2      3.5000      0.0000      2.0000     12.0000      8.0000");
  const std::vector<std::string> chosen = selected.Lines();
  ASSERT_EQ(chosen.size(), 1u);
  EXPECT_EQ(chosen[0].substr(0, 44), "           2               Yield        Mean");
  EXPECT_EQ(chosen[0].substr(92, 24), "      4.0000      0.0000");
}

TEST(TwoWayVariance, MatchesThePopulationOfIndependentFactors) {
  std::mt19937 random(11);
  for (const auto& shape : {std::pair{2, 2}, {2, 3}, {3, 4}, {4, 2}}) {
    const int r = shape.first, c = shape.second;  // the lambdas below take these
    for (int trial = 0; trial < 20; ++trial) {
      // Cell (a, b) holds rowCount[a] * columnCount[b] lines of value m(a, b).
      std::vector<int> rowCount(r), columnCount(c);
      for (int& n : rowCount) n = 1 + static_cast<int>(random() % 9);
      for (int& n : columnCount) n = 1 + static_cast<int>(random() % 9);
      std::vector<float> freqs, means;
      std::vector<double> rowSum(r), rowLines(r), columnSum(c), columnLines(c);
      for (int a = 0; a < r; ++a)
        for (int b = 0; b < c; ++b) {
          const int lines = rowCount[a] * columnCount[b];
          freqs.push_back(static_cast<float>(lines));
          means.push_back(static_cast<float>(random() % 2000) / 100.0f - 10.0f);
          rowSum[a] += lines * static_cast<double>(means.back()), rowLines[a] += lines;
          columnSum[b] += lines * static_cast<double>(means.back()), columnLines[b] += lines;
        }
      // The variance over the lines of the value, the row mean and the
      // column mean of each line's cell, by the number of lines.
      const auto variance = [&](auto valueOf) {
        double n = 0, s = 0, ss = 0;
        for (int a = 0; a < r; ++a)
          for (int b = 0; b < c; ++b) {
            const double lines = freqs[a * c + b], v = valueOf(a, b);
            n += lines, s += lines * v, ss += lines * v * v;
          }
        return ss / n - (s / n) * (s / n);
      };
      const double vt = variance([&](int a, int b) { return static_cast<double>(means[a * c + b]); });
      const double v1 = variance([&](int a, int) { return rowSum[a] / rowLines[a]; });
      const double v2 = variance([&](int, int b) { return columnSum[b] / columnLines[b]; });
      const double want[4] = {vt, v1, v2, vt - v1 - v2};
      float got[4];
      TwoWayVariance(r, c, freqs.data(), means.data(), &got[0], &got[1], &got[2], &got[3]);
      for (int k = 0; k < 4; ++k) EXPECT_NEAR(got[k], want[k], 2e-4 * (1.0 + want[0])) << r << "x" << c << " " << k;
    }
  }
}

TEST(TwoWayVariance, DependentFactorsAreRescaledAndNaNBecomesZero) {
  // Shares not of product form: the parts are rescaled to add up to VT.
  const float freqs[] = {0.4f, 0.1f, 0.1f, 0.4f};
  const float means[] = {3.0f, 1.0f, 0.5f, 2.5f};
  float vt = 0.0f, v1 = 0.0f, v2 = 0.0f, v12 = 0.0f;
  TwoWayVariance(2, 2, freqs, means, &vt, &v1, &v2, &v12);
  EXPECT_EQ(vt, v1 + v2 + v12);
  EXPECT_NEAR(vt, 0.4 * 9 + 0.1 * 1 + 0.1 * 0.25 + 0.4 * 6.25 - 2.35 * 2.35, 1e-5);
  // An empty cell: NaN mean, each of its parts 0.0; a caller may omit results.
  const float withEmpty[] = {3.0f, NAN, 0.5f, 2.5f};
  TwoWayVariance(2, 2, freqs, withEmpty, &vt, nullptr, nullptr, &v12);
  EXPECT_EQ(vt, 0.0f);
  EXPECT_EQ(v12, 0.0f);
}

TEST(PairLods, ClipAtZeroAndBoundLodAaByLodTotal) {
  struct Case {
    float L0, L1, L2, LodAA, LodTotal;
  };
  for (const Case& c : {Case{-10.0f, -4.0f, -5.0f, 1.0f, 6.0f}, Case{-10.0f, -4.0f, -3.0f, 0.0f, 6.0f},
                        Case{-3.0f, -4.0f, -5.0f, 0.0f, 0.0f}, Case{-4.5f, -4.0f, -6.0f, 0.5f, 0.5f},
                        Case{NAN, -4.0f, -6.0f, 2.0f, NAN}}) {
    FixedArray<float, 2> lod;
    PairLods(c.L0, c.L1, c.L2, lod);
    EXPECT_EQ(lod(1), c.LodAA) << c.L0 << " " << c.L1 << " " << c.L2;
    EXPECT_TRUE(lod(2) == c.LodTotal || (lod(2) != lod(2) && c.LodTotal != c.LodTotal)) << lod(2);
  }
}

}  // namespace
}  // namespace tov
