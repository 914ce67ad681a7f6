// The permutation test as a whole, its threshold, and the maxima of
// degenerate shuffles.

#include "permutation/PermutationTest.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "mapping/MarkerTest.h"
#include "numerics/random/Random.h"
#include "permutation/ShuffleMaxima.h"
#include "permutation/Shuffles.h"
#include "permutation/Threshold.h"
#include "support/SameOutputAcrossThreads.h"
#include "support/ScratchFile.h"

namespace tov {
namespace {

// All three permutation tests, two traits in two environments: the same
// bytes on one worker thread and on three.
TEST(PermutationTest, SameBytesOnOneThreadAndOnThree) {
  testing_support::ExpectSameOutputAcrossThreads(std::filesystem::path(TOV_TEST_PROJECTS) / "permutation_all_methods", 3);
}

// At 1001 kept markers the pair shuffles never run: nothing is drawn, and
// the threshold step still gives EpiLOD 0.0 and the closing row.
TEST(PermutationTest, NoPairShufflesFrom1001KeptMarkers) {
  constexpr int Markers = 1001, Lines = 6;
  RunData run;
  run.NumMarkers = run.NumMarkersKept = Markers;
  run.PopulationSize = Lines;
  run.MarkerType.Allocate(Markers, Lines);
  run.KeptMarker.Allocate(Markers);
  for (int m = 1; m <= Markers; ++m) {
    run.KeptMarker(m) = m;
    for (int l = 1; l <= Lines; ++l) run.MarkerType(m, l) = (m >> (l - 1)) & 1 ? 'A' : 'B';
  }
  run.Phenotype.Allocate(Lines, 1, 1, 1);
  for (int l = 1; l <= Lines; ++l) run.Phenotype(l, 1, 1, 1) = 1.5f * static_cast<float>(l % 4);
  run.TraitName.Allocate(1, 1, 1);
  run.TraitName(1, 1, 1) = "Yield";
  run.EpiPermIndicator = 1;
  run.EpiPermTimes = 3;
  run.EpiPermTypeI = 0.05f;
  run.EpiLOD = 5.0f;
  const std::string path = testing_support::ScratchPath("tice").string();
  run.Units[UnitTice].Create(path);
  StartStreamForTesting(99);
  PermutationTest(run);
  run.Units[UnitTice].Close();
  EXPECT_EQ(StreamStateForTesting(), 99);
  EXPECT_EQ(run.EpiLOD, 0.0f);
  EXPECT_EQ(testing_support::ReadWholeFile(path),
            "   Threshold           Threshold   Threshold   Threshold      0.0000\n");
  std::filesystem::remove(path);
}

// The maxima k, k - 1, ..., 1 (descending, so that the sort matters).
std::vector<float> Descending(int n) {
  std::vector<float> v;
  for (int k = n; k >= 1; --k) v.push_back(static_cast<float>(k));
  return v;
}

TEST(PermutationThreshold, QuantileOfTheSortedMaxima) {
  const float NaN = std::numeric_limits<float>::quiet_NaN();
  const struct {
    const char* What;
    std::vector<float> Maxima;
    float Alpha, Threshold;
  } cases[] = {
      {"q = 1000 * 0.95 rounds to 950: mean of B(950), B(951)", Descending(1000), 0.05f, 950.5f},
      {"q = 100 * 0.95 is 95.0 in 32 bits", Descending(100), 0.05f, 95.5f},
      {"q = 94.05: B(95)", Descending(99), 0.05f, 95.0f},
      {"one shuffle: its maximum", {3.25f}, 0.05f, 3.25f},
      {"a NaN sorts above every number", {2.0f, NaN, 4.0f, 1.0f}, 0.5f, 3.0f},
      {"q rounds to n: B(n + 1) reads B(n)", Descending(10), 1.0e-9f, 10.0f},
      {"a rate of 1: q = 0 reads B(1)", Descending(10), 1.0f, 1.0f},
      {"no maximum at all", {}, 0.05f, 0.0f},
  };
  for (const auto& c : cases)
    EXPECT_EQ(PermutationThreshold(static_cast<int>(c.Maxima.size()), c.Maxima.data(), c.Alpha), c.Threshold)
        << c.What;
}

// One kept line or none: nothing is drawn; every LOD is NaN (one line) or
// 0.0 (none), so the marker maximum is 0.0 and the pair maximum, which
// starts at the first pair, NaN or 0.0.
TEST(ShuffleMaxima, OneOrNoLineDrawsNothingAndGivesZero) {
  for (const int numLines : {1, 0}) {
    StartStreamForTesting(4711);
    const float lineMean[] = {12.5f};
    const Array<float, 2> shuffles = DrawShuffles(numLines, lineMean, 3);
    EXPECT_EQ(StreamStateForTesting(), 4711);
    EXPECT_TRUE(numLines == 0 || shuffles(1, 3) == 12.5f);
    Array<char, 2> scanGenotype(2, numLines);
    scanGenotype.Fill('A');
    float maxima[3][3] = {{-1.0f, -1.0f, -1.0f}, {-1.0f, -1.0f, -1.0f}, {}};
    MarkerShuffleMaxima(SingleMarkerPermutation, 2, numLines, scanGenotype, shuffles, maxima[0]);
    MarkerShuffleMaxima(AdditiveMapping, 2, numLines, scanGenotype, shuffles, maxima[1]);
    PairShuffleMaxima(2, numLines, scanGenotype, shuffles, maxima[2]);
    for (int k = 0; k < 3; ++k) {
      EXPECT_EQ(maxima[0][k], 0.0f) << numLines;
      EXPECT_EQ(maxima[1][k], 0.0f) << numLines;
      EXPECT_TRUE(numLines == 1 ? std::isnan(maxima[2][k]) : maxima[2][k] == 0.0f) << maxima[2][k];
    }
  }
}

// The pair maximum starts at pair (1, 2) unconditionally: a NaN there (its
// first marker typed at one line only) stays, whatever the later pairs
// hold; with one marker there is no pair and the maximum stays 0.0.
TEST(ShuffleMaxima, PairMaximumStartsAtTheFirstPair) {
  const int numLines = 12;
  Array<float, 2> shuffles(numLines, 2);
  for (int l = 1; l <= numLines; ++l) shuffles(l, 1) = shuffles(l, 2) = static_cast<float>(l * l % 7) + 0.25f * l;
  for (const int numMarkers : {3, 1}) {
    Array<char, 2> scanGenotype(numMarkers, numLines);
    for (int m = 1; m <= numMarkers; ++m)
      for (int l = 1; l <= numLines; ++l)
        scanGenotype(m, l) = l > 1 && m == 1 ? 'X' : (l * (m + 1)) % 5 < 2 ? 'A' : 'B';
    float maxima[2] = {-1.0f, -1.0f};
    PairShuffleMaxima(numMarkers, numLines, scanGenotype, shuffles, maxima);
    for (const float m : maxima) EXPECT_TRUE(numMarkers == 1 ? m == 0.0f : std::isnan(m)) << m;
  }
}

}  // namespace
}  // namespace tov
