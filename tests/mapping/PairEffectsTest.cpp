// What a pair record reports.  The two-way variance is checked against the
// variance of a population of lines built from the table (64 bits): with
// counts in product form the factors are independent, the main effects are
// the variances of the conditional means and the interaction is the rest.
// The clipping of the LODs, the flags, the edge cases of the four-group
// test and the design of the flagged pairs follow.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "mapping/EpistaticScan.h"
#include "mapping/FourGroupTest.h"
#include "mapping/PairEffects.h"
#include "mapping/SelectedPairRSquare.h"

namespace tov {
namespace {

const float NaN = std::numeric_limits<float>::quiet_NaN();

// VT, V1, V2, V12 of a population holding rowCount[a] * columnCount[b]
// lines with value m(a, b): variances by the number of lines.
std::vector<double> PopulationVariances(int r, int c, const std::vector<int>& rowCount,
                                        const std::vector<int>& columnCount, const std::vector<float>& means) {
  std::vector<double> values, rowOf, columnOf;
  std::vector<double> rowSum(r), rowN(r), columnSum(c), columnN(c);
  for (int a = 0; a < r; ++a)
    for (int b = 0; b < c; ++b)
      for (int k = 0; k < rowCount[a] * columnCount[b]; ++k) {
        const double m = means[static_cast<std::size_t>(a * c + b)];
        values.push_back(m), rowOf.push_back(a), columnOf.push_back(b);
        rowSum[a] += m, rowN[a] += 1, columnSum[b] += m, columnN[b] += 1;
      }
  const auto variance = [&](auto valueOf) {
    double s = 0, ss = 0;
    for (std::size_t i = 0; i < values.size(); ++i) s += valueOf(i), ss += valueOf(i) * valueOf(i);
    const double n = static_cast<double>(values.size());
    return ss / n - (s / n) * (s / n);
  };
  const double vt = variance([&](std::size_t i) { return values[i]; });
  const double v1 = variance([&](std::size_t i) { return rowSum[rowOf[i]] / rowN[rowOf[i]]; });
  const double v2 = variance([&](std::size_t i) { return columnSum[columnOf[i]] / columnN[columnOf[i]]; });
  return {vt, v1, v2, vt - v1 - v2};
}

TEST(TwoWayVariance, MatchesThePopulationOfIndependentFactors) {
  std::mt19937 random(11);
  for (const auto& [r, c] : {std::pair{2, 2}, {2, 3}, {3, 4}, {4, 2}}) {
    for (int trial = 0; trial < 20; ++trial) {
      std::vector<int> rowCount(r), columnCount(c);
      for (int& n : rowCount) n = 1 + static_cast<int>(random() % 9);
      for (int& n : columnCount) n = 1 + static_cast<int>(random() % 9);
      std::vector<float> freqs, means;
      for (int a = 0; a < r; ++a)
        for (int b = 0; b < c; ++b) {
          freqs.push_back(static_cast<float>(rowCount[a] * columnCount[b]));
          means.push_back(static_cast<float>(random() % 2000) / 100.0f - 10.0f);
        }
      float got[4];
      TwoWayVariance(r, c, freqs.data(), means.data(), &got[0], &got[1], &got[2], &got[3]);
      const std::vector<double> want = PopulationVariances(r, c, rowCount, columnCount, means);
      for (int k = 0; k < 4; ++k) EXPECT_NEAR(got[k], want[k], 2e-4 * (1.0 + want[0])) << r << "x" << c << " " << k;
    }
  }
}

TEST(TwoWayVariance, DependentFactorsAreRescaledAndNaNBecomesZero) {
  // Shares that are not of product form: the three parts are rescaled so
  // that they add up to VT, which is then their sum.
  const float freqs[] = {0.4f, 0.1f, 0.1f, 0.4f};
  const float means[] = {3.0f, 1.0f, 0.5f, 2.5f};
  float vt = 0.0f, v1 = 0.0f, v2 = 0.0f, v12 = 0.0f;
  TwoWayVariance(2, 2, freqs, means, &vt, &v1, &v2, &v12);
  EXPECT_EQ(vt, v1 + v2 + v12);
  EXPECT_NEAR(vt, 0.4 * 9 + 0.1 * 1 + 0.1 * 0.25 + 0.4 * 6.25 - 2.35 * 2.35, 1e-5);
  // An empty cell: NaN mean, each of its parts 0.0; a caller may omit results.
  const float withEmpty[] = {3.0f, NaN, 0.5f, 2.5f};
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
                        Case{NaN, -4.0f, -6.0f, 2.0f, NaN}}) {
    FixedArray<float, 2> lod;
    PairLods(c.L0, c.L1, c.L2, lod);
    EXPECT_EQ(lod(1), c.LodAA) << c.L0 << " " << c.L1 << " " << c.L2;
    if (std::isnan(c.LodTotal))
      EXPECT_TRUE(std::isnan(lod(2)));
    else
      EXPECT_EQ(lod(2), c.LodTotal);
  }
}

struct PairCase {
  const char* Name;
  const char* Codes1;
  const char* Codes2;
  std::vector<float> Y;
  bool NoRow;         // a NaN in the record
  float MaxLodAA;     // LODaa at most this
};

TEST(FourGroupTest, EdgeCases) {
  const std::vector<PairCase> cases = {
      {"IdenticalMarkers", "AABBABAB", "AABBABAB", {1.1f, 2.3f, 0.4f, 5.2f, 3.3f, 1.9f, 2.2f, 0.7f}, true, 1e9f},
      // Cell means 1, 3, 5, 7 are exactly additive: 4 + 2 a1 + ... with no
      // interaction; the lines vary around them.
      {"AdditiveMeans", "AAAABBBBAAAABBBB", "AABBAABBAABBAABB",
       {0.5f, 1.5f, 2.5f, 3.5f, 4.5f, 5.5f, 6.5f, 7.5f, 1.5f, 0.5f, 3.5f, 2.5f, 5.5f, 4.5f, 7.5f, 6.5f}, false,
       1e-5f},
      {"ConstantPhenotype", "AABBABAB", "ABABABBA", std::vector<float>(8, 2.5f), true, 1e9f},
      {"OneLineTyped", "AXXXXXXX", "AXXXXXXX", {1.0f, 2.0f, 3.0f, 4.0f, 5.0f, 6.0f, 7.0f, 8.0f}, true, 1e9f},
  };
  for (const PairCase& c : cases) {
    PairTest record;
    FourGroupTest(static_cast<int>(c.Y.size()), c.Codes1, c.Codes2, c.Y.data(), record.LOD, record.CellMean,
                  record.CellFreq);
    EXPECT_EQ(HasNaN(record), c.NoRow) << c.Name;
    if (!c.NoRow) {
      EXPECT_LE(record.LOD(1), c.MaxLodAA) << c.Name;
      EXPECT_GT(record.LOD(2), 1.0f) << c.Name;
      PairTestTable table;
      table.NumTests = 1;
      AllocPairTests(EpistaticMapping, table);
      table.Test(1) = record;
      MarkSignificantPairs(0.001f, table);
      EXPECT_EQ(table.Test(1).Significant, LogicalFalse) << c.Name;
    }
  }
}

TEST(EpistaticScan, TablesOfOneAndTwoMarkers) {
  EXPECT_EQ(NumPairs(1), 0);
  EXPECT_EQ(NumPairs(2), 1);
  EXPECT_EQ(NumPairs(1000), 499500);
  Array<char, 2> genotype(2, 6);
  const char* rows[] = {"AABBAB", "ABABBA"};
  for (int m = 1; m <= 2; ++m)
    for (int l = 1; l <= 6; ++l) genotype(m, l) = rows[m - 1][l - 1];
  const std::vector<float> y = {1.0f, 2.5f, 0.5f, 3.0f, 2.0f, 1.5f};
  for (int markers : {1, 2}) {
    PairTestTable table;
    table.NumTests = NumPairs(markers);
    AllocPairTests(EpistaticMapping, table);
    EpistaticScan(markers, 6, genotype, y.data(), StepModel(), table);
    ASSERT_EQ(table.Test.Size(), static_cast<std::size_t>(markers - 1));
    if (markers == 2) {
      EXPECT_EQ(table.Test(1).Marker2, 2);
    }
  }
  // An unknown method code makes no table.
  PairTestTable none;
  none.NumTests = 3;
  AllocPairTests(10921, none);
  EXPECT_FALSE(none.Test.IsAllocated());
}

TEST(DesignOfSelectedPairs, FirstMarkersThenSecondMarkersThenProducts) {
  Array<char, 2> genotype(3, 4);
  const char* rows[] = {"ABAX", "AABB", "BABA"};
  for (int m = 1; m <= 3; ++m)
    for (int l = 1; l <= 4; ++l) genotype(m, l) = rows[m - 1][l - 1];
  PairTestTable table;
  table.NumTests = 3;
  AllocPairTests(EpistaticMapping, table);
  const int pairs[3][2] = {{1, 2}, {1, 3}, {2, 3}};
  for (int p = 1; p <= 3; ++p) table.Test(p).Marker1 = pairs[p - 1][0], table.Test(p).Marker2 = pairs[p - 1][1];
  table.Test(1).Significant = table.Test(3).Significant = LogicalTrue;
  Array<float, 2> X;
  DesignOfSelectedPairs(4, genotype, table, X);
  const float want[4][6] = {{1, 1, 1, -1, 1, -1}, {-1, 1, 1, 1, -1, 1}, {1, -1, -1, -1, -1, 1}, {0, -1, -1, 1, -0.0f, -1}};
  ASSERT_EQ(X.Extent(2), 6);
  for (int l = 1; l <= 4; ++l)
    for (int k = 1; k <= 6; ++k) EXPECT_EQ(X(l, k), want[l - 1][k - 1]) << l << "," << k;
}

}  // namespace
}  // namespace tov
