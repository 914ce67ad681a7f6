#include "permutation/ShuffleMaxima.h"

#include <gtest/gtest.h>

#include <cmath>

#include "mapping/MarkerTest.h"
#include "numerics/random/Random.h"
#include "permutation/Shuffles.h"

namespace tov {
namespace {

// A trait with one kept line: the permutation draws nothing and leaves the
// value in place; a trait without lines draws nothing either.  With one
// line every LOD is NaN, with none every sum is empty and every LOD 0.0: a
// marker maximum is 0.0 either way, and the pair maximum, which starts at
// the first pair, NaN or 0.0.
TEST(ShuffleMaxima, OneOrNoLineDrawsNothingAndGivesZero) {
  for (const int numLines : {1, 0}) {
    StartStreamForTesting(4711);
    const float lineMean[] = {12.5f};
    const Array<float, 2> shuffles = DrawShuffles(numLines, lineMean, 3);
    EXPECT_EQ(StreamStateForTesting(), 4711);
    Array<char, 2> scanGenotype(2, numLines);
    scanGenotype.Fill('A');
    if (numLines == 1) {
      EXPECT_EQ(shuffles(1, 3), 12.5f);
    }
    for (const int code : {SingleMarkerPermutation, AdditiveMapping}) {
      float maxima[3] = {-1.0f, -1.0f, -1.0f};
      MarkerShuffleMaxima(code, 2, numLines, scanGenotype, shuffles, maxima);
      for (const float m : maxima) EXPECT_EQ(m, 0.0f) << code << " on " << numLines << " lines";
    }
    float maxima[3] = {};
    PairShuffleMaxima(2, numLines, scanGenotype, shuffles, maxima);
    for (const float m : maxima) EXPECT_TRUE(numLines == 1 ? std::isnan(m) : m == 0.0f) << m;
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
      for (int l = 1; l <= numLines; ++l) scanGenotype(m, l) = (l * (m + 1)) % 5 < 2 ? 'A' : 'B';
    for (int l = 2; l <= numLines; ++l) scanGenotype(1, l) = 'X';
    float maxima[2] = {-1.0f, -1.0f};
    PairShuffleMaxima(numMarkers, numLines, scanGenotype, shuffles, maxima);
    for (const float m : maxima) {
      if (numMarkers == 1) EXPECT_EQ(m, 0.0f);
      else EXPECT_TRUE(std::isnan(m)) << m;
    }
  }
}

}  // namespace
}  // namespace tov
