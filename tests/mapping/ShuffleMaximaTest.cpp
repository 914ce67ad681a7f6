// The maxima of the permutation kernels are, bit for bit, those of the full
// scans' tables, also where the bound that spares most tests is tightest.

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
  bool Pairs;
  int Markers, Lines;
  float Offset, Scale;
};

const Case Cases[] = {
    {false, 10, 40, 0.0f, 1.0f},     {false, 33, 7, 0.0f, 1.0f},      {false, 100, 300, 5.0f, 1.0f},
    {false, 257, 120, 1.0e4f, 3.0f}, {false, 64, 300, 0.0f, 1.0e-3f}, {false, 70, 1000, -20.0f, 1.0e3f},
    {true, 2, 30, 0.0f, 1.0f},       {true, 12, 9, 0.0f, 1.0f},       {true, 20, 200, 5.0f, 1.0f},
    {true, 15, 120, 1.0e4f, 3.0f},   {true, 18, 150, 0.0f, 1.0e-3f},  {true, 9, 600, -20.0f, 1.0e3f}};

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

// The maximum of a full scan: from 0.0 over the markers, from the first
// pair over the pairs.
float FullScanMaximum(const Case& c, const Array<char, 2>& genotype, const std::vector<float>& y) {
  if (c.Pairs) {
    PairTestTable table;
    table.NumTests = NumPairs(c.Markers);
    AllocPairTests(EpistaticMapping, table);
    EpistaticScan(c.Markers, c.Lines, genotype, y.data(), StepModel{}, table);
    float highest = table.Test(1).LOD(1);
    for (const PairTest& test : table.Test) highest = test.LOD(1) > highest ? test.LOD(1) : highest;
    return highest;
  }
  MarkerTestTable table;
  table.NumTests = c.Markers;
  AllocMarkerTests(SingleMarkerPermutation, table);
  SingleMarkerScan(c.Markers, c.Lines, genotype, y.data(), table);
  float highest = 0.0f;
  for (const MarkerTest& test : table.Test) highest = test.LOD(1) > highest ? test.LOD(1) : highest;
  return highest;
}

TEST(ShuffleMaxima, MaximaEqualThoseOfTheFullScans) {
  std::mt19937 markerRandom(2026u), pairRandom(1999u);
  for (const Case& c : Cases) {
    std::mt19937& random = c.Pairs ? pairRandom : markerRandom;
    const Array<char, 2> genotype = c.Pairs ? LinkedMap(c, 30u, 3u, random) : LinkedMap(c, 40u, 2u, random);
    // Normal values, scaled and offset, with an effect of one marker or of
    // the first and last together.
    std::vector<float> y(static_cast<std::size_t>(c.Lines));
    std::normal_distribution<float> normal(0.0f, 1.0f);
    for (int l = 1; l <= c.Lines; ++l) {
      const bool effect = c.Pairs ? genotype(1, l) == 'A' && genotype(c.Markers, l) == 'A'
                                  : genotype(c.Markers / 2, l) == 'A';
      y[l - 1] = c.Offset + c.Scale * (normal(random) + (effect ? (c.Pairs ? 0.5f : 0.3f) : 0.0f));
    }
    Array<float, 2> ys(c.Lines, Shuffles);
    float expected[Shuffles], actual[Shuffles];
    for (int k = 1; k <= Shuffles; ++k) {
      // The pair cases keep the unshuffled trait in the first lane.
      if (!c.Pairs) std::shuffle(y.begin(), y.end(), random);
      std::copy(y.begin(), y.end(), &ys(1, k));
      expected[k - 1] = FullScanMaximum(c, genotype, y);
      if (c.Pairs) std::shuffle(y.begin(), y.end(), random);
    }
    if (c.Pairs)
      EpistaticMaxima(c.Markers, c.Lines, genotype, ys, actual);
    else
      SingleMarkerMaxima(c.Markers, c.Lines, genotype, ys, actual);
    EXPECT_EQ(std::memcmp(actual, expected, sizeof actual), 0)
        << (c.Pairs ? "pairs, " : "markers, ") << c.Markers << " markers, " << c.Lines << " lines";
  }
}

}  // namespace
}  // namespace tov
