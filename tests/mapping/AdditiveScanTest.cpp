// The additive scan: the fit of the selected model, the numbering of marker
// pairs, and the scan against the fit with a marker's own term put back.

#include "mapping/AdditiveScan.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "mapping/SingleMarkerScan.h"
#include "mapping/TwoGroupTest.h"

namespace tov {
namespace {

bool SameRecord(const MarkerTest& a, const MarkerTest& b) {
  return std::memcmp(&a.LOD, &b.LOD, sizeof a.LOD) == 0 && std::memcmp(&a.GroupMean, &b.GroupMean, sizeof a.GroupMean) == 0 &&
         std::memcmp(&a.GroupFreq, &b.GroupFreq, sizeof a.GroupFreq) == 0;
}

StepModel Model(std::vector<int> terms, std::vector<float> coefs, float intercept) {
  StepModel model;
  model.NumTerms = static_cast<int>(terms.size());
  model.TermIndex.Allocate(model.NumTerms);
  for (int k = 1; k <= model.NumTerms; ++k) model.TermIndex(k) = terms[static_cast<std::size_t>(k - 1)];
  model.Coef = {intercept};
  model.Coef.insert(model.Coef.end(), coefs.begin(), coefs.end());
  return model;
}

MarkerTestTable Table(int n) {
  MarkerTestTable table;
  table.NumTests = n;
  AllocMarkerTests(AdditiveMapping, table);
  return table;
}

struct Population {
  int NumMarkers, NumLines;
  Array<char, 2> Genotype;
  std::vector<float> Y;
  Population(int markers, int lines, unsigned seed, bool dyadic)
      : NumMarkers(markers), NumLines(lines), Genotype(markers, lines) {
    std::mt19937 random(seed);
    std::normal_distribution<float> normal(0.0f, 1.0f);
    for (int l = 1; l <= lines; ++l) {
      for (int m = 1; m <= markers; ++m) {
        const unsigned r = random() % 21u;
        Genotype(m, l) = r < 10u ? 'A' : r < 20u ? 'B' : 'X';
      }
      // Dyadic values with few bits make every subtraction and addition
      // below exact.
      const float value = 10.0f + normal(random) + (Genotype(2, l) == 'A' ? 1.0f : 0.0f);
      Y.push_back(dyadic ? std::round(value * 16.0f) / 16.0f : value);
    }
  }
};

TEST(PairOfNumber, FollowsTheOrderByFirstThenSecondMarker) {
  const int n = 5;
  int c = 0;
  for (int p = 1; p < n; ++p)
    for (int q = p + 1; q <= n; ++q) {
      const MarkerPair pair = PairOfNumber(n, ++c);
      EXPECT_EQ(pair.First, p) << "pair " << c;
      EXPECT_EQ(pair.Second, q) << "pair " << c;
    }
  EXPECT_EQ(PairOfNumber(n, 0).First, 0);
  EXPECT_EQ(PairOfNumber(n, 0).Second, 1);
  EXPECT_EQ(PairOfNumber(n, -4).First, 0);
  EXPECT_EQ(PairOfNumber(n, 11).First, 5);
  EXPECT_EQ(PairOfNumber(n, 11).Second, 6);
  EXPECT_EQ(PairOfNumber(2, 1).First, 1);
  EXPECT_EQ(PairOfNumber(2, 1).Second, 2);
}

TEST(FittedValues, AddsTermsOfMarkersAndPairsWithoutTheIntercept) {
  // Lines:      1    2    3    4
  // marker 1:   A    B    X    A      codes +1 -1  0 +1
  // marker 2:   B    B    A    X      codes -1 -1 +1  0
  // marker 3:   A    A    B    B      codes +1 +1 -1 -1
  Array<char, 2> genotype(3, 4);
  const char rows[3][5] = {"ABXA", "BBAX", "AABB"};
  for (int m = 1; m <= 3; ++m)
    for (int l = 1; l <= 4; ++l) genotype(m, l) = rows[m - 1][l - 1];
  // 0.5 * marker 1, -2 * marker 3, 0.25 * pair 3 = (2, 3) numbered 3 + 3.
  const StepModel model = Model({1, 3, 6}, {0.5f, -2.0f, 0.25f}, 100.0f);
  float fit[4];
  FittedValues(3, 4, genotype, model, fit);
  // By hand: 0.5 c1 - 2 c3 + 0.25 c2 c3.
  EXPECT_EQ(fit[0], 0.5f - 2.0f - 0.25f);
  EXPECT_EQ(fit[1], -0.5f - 2.0f - 0.25f);
  EXPECT_EQ(fit[2], 0.0f + 2.0f - 0.25f);
  EXPECT_EQ(fit[3], 0.5f + 2.0f + 0.0f);
}

TEST(AdditiveScan, EmptyModelIsTheSingleMarkerScan) {
  const Population pop(21, 60, 3u, false);
  const StepModel empty = Model({}, {}, 12.5f);
  MarkerTestTable additive = Table(pop.NumMarkers), single = Table(pop.NumMarkers);
  AdditiveScan(pop.NumMarkers, pop.NumLines, pop.Genotype, pop.Y.data(), empty, additive);
  SingleMarkerScan(pop.NumMarkers, pop.NumLines, pop.Genotype, pop.Y.data(), single);
  for (int m = 1; m <= pop.NumMarkers; ++m) {
    EXPECT_EQ(additive.Test(m).MarkerIndex, m);
    EXPECT_TRUE(SameRecord(additive.Test(m), single.Test(m))) << "marker " << m;
  }
}

TEST(AdditiveScan, OneTermModelLeavesItsOwnRecordAsInSingleMarkerAnalysis) {
  for (const bool dyadic : {true, false}) {
    const Population pop(18, 80, 11u, dyadic);
    const StepModel model = Model({2}, {0.5f}, 10.0f);
    MarkerTestTable additive = Table(pop.NumMarkers), single = Table(pop.NumMarkers);
    AdditiveScan(pop.NumMarkers, pop.NumLines, pop.Genotype, pop.Y.data(), model, additive);
    SingleMarkerScan(pop.NumMarkers, pop.NumLines, pop.Genotype, pop.Y.data(), single);
    if (dyadic) {
      EXPECT_TRUE(SameRecord(additive.Test(2), single.Test(2)));
    } else {
      EXPECT_NEAR(additive.Test(2).LOD(1), single.Test(2).LOD(1), 1e-4f);
      EXPECT_NEAR(additive.Test(2).GroupMean(1), single.Test(2).GroupMean(1), 1e-5f);
      EXPECT_NEAR(additive.Test(2).GroupMean(2), single.Test(2).GroupMean(2), 1e-5f);
      EXPECT_EQ(additive.Test(2).GroupFreq(1), single.Test(2).GroupFreq(1));
    }
    // The other markers see the residual of the term, not the raw values.
    EXPECT_NE(additive.Test(5).GroupMean(1), single.Test(5).GroupMean(1));
  }
}

TEST(AdditiveScan, MarkersInAndOutOfTheModel) {
  const Population pop(12, 90, 29u, true);
  // Terms at markers 2 and 7.
  const StepModel model = Model({2, 7}, {0.5f, -0.25f}, 10.0f);
  const std::vector<float> yBefore = pop.Y;
  MarkerTestTable table = Table(pop.NumMarkers);
  AdditiveScan(pop.NumMarkers, pop.NumLines, pop.Genotype, pop.Y.data(), model, table);
  EXPECT_EQ(pop.Y, yBefore);

  auto code = [&](int m, int l) {
    const char c = pop.Genotype(m, l);
    return c == 'A' ? 1.0f : c == 'B' ? -1.0f : 0.0f;
  };
  // Built here from the rule, with dyadic data that make each step exact:
  // marker 2 keeps its own term and loses that of marker 7; marker 7 the
  // reverse; every other marker loses both.
  std::vector<float> withoutSeven, withoutTwo, withoutBoth;
  for (int l = 1; l <= pop.NumLines; ++l) {
    const float y = pop.Y[static_cast<std::size_t>(l - 1)];
    withoutSeven.push_back(y + 0.25f * code(7, l));
    withoutTwo.push_back(y - 0.5f * code(2, l));
    withoutBoth.push_back(y - 0.5f * code(2, l) + 0.25f * code(7, l));
  }
  auto expectTestOf = [&](int m, const std::vector<float>& y) {
    std::vector<char> row;
    for (int l = 1; l <= pop.NumLines; ++l) row.push_back(pop.Genotype(m, l));
    MarkerTest expected;
    TwoGroupTest(pop.NumLines, row.data(), y.data(), expected.LOD(1), expected.GroupMean, expected.GroupFreq);
    EXPECT_TRUE(SameRecord(table.Test(m), expected)) << "marker " << m;
  };
  expectTestOf(2, withoutSeven);
  expectTestOf(7, withoutTwo);
  for (const int m : {1, 3, 6, 8, 12}) expectTestOf(m, withoutBoth);
}

}  // namespace
}  // namespace tov
