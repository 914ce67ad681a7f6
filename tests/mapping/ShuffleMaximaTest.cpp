// The maxima of the permutation kernels must be, bit for bit, those read
// off the full scans' tables, also where the bound that spares most tests is
// tightest: neighbouring markers that differ at a few lines (so that some
// pair cells are empty or nearly so), values far from 1 in scale or offset
// from 0 by much more than their spread, few lines and many.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <vector>

#include "mapping/EpistaticMaxima.h"
#include "mapping/EpistaticScan.h"
#include "mapping/SingleMarkerMaxima.h"
#include "mapping/SingleMarkerScan.h"
#include "numerics/stepwise/StepModel.h"

namespace tov {
namespace {

struct Case {
  int Markers, Lines;
  float Offset, Scale;
};

// 40 shuffles: a full group of lanes and a short one.
constexpr int Shuffles = 40;

// A map: each marker copies its neighbour but where a draw r of 0..period-1
// is at most fresh (r = 0 missing, else r's parity picks the genotype).
Array<char, 2> LinkedMap(const Case& c, unsigned period, unsigned fresh, std::mt19937& random) {
  Array<char, 2> genotype(c.Markers, c.Lines);
  for (int m = 1; m <= c.Markers; ++m)
    for (int l = 1; l <= c.Lines; ++l) {
      const unsigned r = random() % period;
      const char drawn = r == 0u ? 'X' : r % 2u ? 'A' : 'B';
      genotype(m, l) = m > 1 && r > fresh ? genotype(m - 1, l) : drawn;
    }
  return genotype;
}

// Normal values, scaled and offset, raised by effect where hasEffect(l).
template <typename Effect>
std::vector<float> Trait(const Case& c, float effect, Effect hasEffect, std::mt19937& random) {
  std::vector<float> y(static_cast<std::size_t>(c.Lines));
  std::normal_distribution<float> normal(0.0f, 1.0f);
  for (int l = 1; l <= c.Lines; ++l) y[l - 1] = c.Offset + c.Scale * (normal(random) + (hasEffect(l) ? effect : 0.0f));
  return y;
}

TEST(ShuffleMaxima, SingleMarkerMaximaEqualThoseOfTheFullScans) {
  const Case cases[] = {{10, 40, 0.0f, 1.0f},     {33, 7, 0.0f, 1.0f},      {100, 300, 5.0f, 1.0f},
                        {257, 120, 1.0e4f, 3.0f}, {64, 300, 0.0f, 1.0e-3f}, {70, 1000, -20.0f, 1.0e3f}};
  std::mt19937 random(2026u);
  for (const Case& c : cases) {
    const Array<char, 2> genotype = LinkedMap(c, 40u, 2u, random);
    std::vector<float> y = Trait(c, 0.3f, [&](int l) { return genotype(c.Markers / 2, l) == 'A'; }, random);
    Array<float, 2> ys(c.Lines, Shuffles);
    float expected[Shuffles], actual[Shuffles];
    MarkerTestTable table;
    table.NumTests = c.Markers;
    AllocMarkerTests(SingleMarkerPermutation, table);
    for (int k = 1; k <= Shuffles; ++k) {
      std::shuffle(y.begin(), y.end(), random);
      std::copy(y.begin(), y.end(), &ys(1, k));
      SingleMarkerScan(c.Markers, c.Lines, genotype, y.data(), table);
      // The single-marker maximum starts at 0.0.
      expected[k - 1] = 0.0f;
      for (int m = 1; m <= c.Markers; ++m)
        if (table.Test(m).LOD(1) > expected[k - 1]) expected[k - 1] = table.Test(m).LOD(1);
    }
    SingleMarkerMaxima(c.Markers, c.Lines, genotype, ys, actual);
    EXPECT_EQ(std::memcmp(actual, expected, sizeof actual), 0) << c.Markers << " markers, " << c.Lines << " lines";
  }
}

TEST(ShuffleMaxima, PairMaximaEqualThoseOfTheFullScans) {
  const Case cases[] = {{2, 30, 0.0f, 1.0f},     {12, 9, 0.0f, 1.0f},      {20, 200, 5.0f, 1.0f},
                        {15, 120, 1.0e4f, 3.0f}, {18, 150, 0.0f, 1.0e-3f}, {9, 600, -20.0f, 1.0e3f}};
  std::mt19937 random(1999u);
  for (const Case& c : cases) {
    const Array<char, 2> genotype = LinkedMap(c, 30u, 3u, random);
    std::vector<float> y = Trait(
        c, 0.5f, [&](int l) { return genotype(1, l) == 'A' && genotype(c.Markers, l) == 'A'; }, random);
    Array<float, 2> ys(c.Lines, Shuffles);
    float expected[Shuffles], actual[Shuffles];
    PairTestTable table;
    table.NumTests = NumPairs(c.Markers);
    AllocPairTests(EpistaticMapping, table);
    for (int k = 1; k <= Shuffles; ++k) {
      std::copy(y.begin(), y.end(), &ys(1, k));
      EpistaticScan(c.Markers, c.Lines, genotype, y.data(), StepModel{}, table);
      // The pair maximum starts at the first pair.
      expected[k - 1] = table.Test(1).LOD(1);
      for (int p = 2; p <= table.NumTests; ++p)
        if (table.Test(p).LOD(1) > expected[k - 1]) expected[k - 1] = table.Test(p).LOD(1);
      std::shuffle(y.begin(), y.end(), random);
    }
    EpistaticMaxima(c.Markers, c.Lines, genotype, ys, actual);
    EXPECT_EQ(std::memcmp(actual, expected, sizeof actual), 0) << c.Markers << " markers, " << c.Lines << " lines";
  }
}

}  // namespace
}  // namespace tov
