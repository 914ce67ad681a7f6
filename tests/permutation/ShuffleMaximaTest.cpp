#include "permutation/ShuffleMaxima.h"

#include <gtest/gtest.h>

#include "mapping/MarkerTest.h"
#include "numerics/random/Random.h"
#include "permutation/Shuffles.h"

namespace tov {
namespace {

// A trait with one kept line: the permutation draws nothing and leaves the
// value in place; a trait without lines draws nothing either.  Every LOD is
// then NaN, and a maximum that no LOD exceeds stays 0.0.
TEST(ShuffleMaxima, OneOrNoLineDrawsNothingAndGivesZero) {
  for (const int numLines : {1, 0}) {
    StartStreamForTesting(4711);
    const float lineMean[] = {12.5f};
    const Array<float, 2> shuffles = DrawShuffles(numLines, lineMean, 3);
    EXPECT_EQ(StreamStateForTesting(), 4711);
    Array<char, 2> scanGenotype(2, numLines);
    scanGenotype.Fill('A');
    if (numLines == 1) EXPECT_EQ(shuffles(1, 3), 12.5f);
    for (const int code : {SingleMarkerPermutation, AdditiveMapping}) {
      float maxima[3] = {-1.0f, -1.0f, -1.0f};
      MarkerShuffleMaxima(code, 2, numLines, scanGenotype, shuffles, maxima);
      for (const float m : maxima) EXPECT_EQ(m, 0.0f) << code << " on " << numLines << " lines";
    }
  }
}

}  // namespace
}  // namespace tov
