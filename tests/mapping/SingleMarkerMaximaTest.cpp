// The maximum must be, bit for bit, the one read off the full scan's table,
// also where the bound that spares most markers is tightest: neighbouring
// markers that differ at a few lines, values far from 1 in scale or offset
// from 0 by much more than their spread, few lines and many.

#include "mapping/SingleMarkerMaxima.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <vector>

#include "mapping/SingleMarkerScan.h"

namespace tov {
namespace {

struct Case {
  int Markers, Lines;
  float Offset, Scale;
};

TEST(SingleMarkerMaxima, EqualTheMaximaOfTheFullScans) {
  const Case cases[] = {{10, 40, 0.0f, 1.0f},     {33, 7, 0.0f, 1.0f},   {100, 300, 5.0f, 1.0f},
                        {257, 120, 1.0e4f, 3.0f}, {64, 300, 0.0f, 1.0e-3f}, {70, 1000, -20.0f, 1.0e3f}};
  std::mt19937 random(2026u);
  for (const Case& c : cases) {
    // A map: each marker copies its neighbour but for a few lines.
    Array<char, 2> genotype(c.Markers, c.Lines);
    for (int m = 1; m <= c.Markers; ++m)
      for (int l = 1; l <= c.Lines; ++l) {
        const unsigned r = random() % 40u;
        const char fresh = r == 0u ? 'X' : r % 2u ? 'A' : 'B';
        genotype(m, l) = m > 1 && r > 2u ? genotype(m - 1, l) : fresh;
      }
    std::vector<float> y(static_cast<std::size_t>(c.Lines));
    std::normal_distribution<float> normal(0.0f, 1.0f);
    for (int l = 1; l <= c.Lines; ++l)
      y[l - 1] = c.Offset + c.Scale * (normal(random) + (genotype(c.Markers / 2, l) == 'A' ? 0.3f : 0.0f));
    // 40 shuffles: a full group of lanes and a short one.
    constexpr int Shuffles = 40;
    Array<float, 2> ys(c.Lines, Shuffles);
    float expected[Shuffles], actual[Shuffles];
    MarkerTestTable table;
    table.NumTests = c.Markers;
    AllocMarkerTests(SingleMarkerPermutation, table);
    for (int k = 1; k <= Shuffles; ++k) {
      std::shuffle(y.begin(), y.end(), random);
      std::copy(y.begin(), y.end(), &ys(1, k));
      SingleMarkerScan(c.Markers, c.Lines, genotype, y.data(), table);
      expected[k - 1] = 0.0f;
      for (int m = 1; m <= c.Markers; ++m)
        if (table.Test(m).LOD(1) > expected[k - 1]) expected[k - 1] = table.Test(m).LOD(1);
    }
    SingleMarkerMaxima(c.Markers, c.Lines, genotype, ys, actual);
    EXPECT_EQ(std::memcmp(actual, expected, sizeof actual), 0) << c.Markers << " markers, " << c.Lines << " lines";
  }
}

}  // namespace
}  // namespace tov
