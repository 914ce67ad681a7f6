// The maxima must be, bit for bit, those read off the full pair scans, also
// where the bound is tightest: neighbouring markers that differ at a few
// lines (so some cells are empty or nearly so), values far from 1 in scale
// or offset from 0 by much more than their spread, few lines and many.

#include "mapping/EpistaticMaxima.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <vector>

#include "mapping/EpistaticScan.h"
#include "numerics/stepwise/StepModel.h"

namespace tov {
namespace {

struct Case {
  int Markers, Lines;
  float Offset, Scale;
};

TEST(EpistaticMaxima, EqualTheMaximaOfTheFullScans) {
  const Case cases[] = {{2, 30, 0.0f, 1.0f},        {12, 9, 0.0f, 1.0f},     {20, 200, 5.0f, 1.0f},
                        {15, 120, 1.0e4f, 3.0f},    {18, 150, 0.0f, 1.0e-3f}, {9, 600, -20.0f, 1.0e3f}};
  std::mt19937 random(1999u);
  for (const Case& c : cases) {
    Array<char, 2> genotype(c.Markers, c.Lines);
    for (int m = 1; m <= c.Markers; ++m)
      for (int l = 1; l <= c.Lines; ++l) {
        const unsigned r = random() % 30u;
        const char fresh = r == 0u ? 'X' : r % 2u ? 'A' : 'B';
        genotype(m, l) = m > 1 && r > 3u ? genotype(m - 1, l) : fresh;
      }
    std::vector<float> y(static_cast<std::size_t>(c.Lines));
    std::normal_distribution<float> normal(0.0f, 1.0f);
    for (int l = 1; l <= c.Lines; ++l) {
      const bool both = genotype(1, l) == 'A' && genotype(c.Markers, l) == 'A';
      y[l - 1] = c.Offset + c.Scale * (normal(random) + (both ? 0.5f : 0.0f));
    }
    // 40 shuffles: a full group of lanes and a short one.
    constexpr int Shuffles = 40;
    Array<float, 2> ys(c.Lines, Shuffles);
    float expected[Shuffles], actual[Shuffles];
    PairTestTable table;
    table.NumTests = NumPairs(c.Markers);
    AllocPairTests(EpistaticMapping, table);
    for (int k = 1; k <= Shuffles; ++k) {
      std::copy(y.begin(), y.end(), &ys(1, k));
      EpistaticScan(c.Markers, c.Lines, genotype, y.data(), StepModel{}, table);
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
