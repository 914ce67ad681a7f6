#include "numerics/random/ReservoirSample.h"

#include <gtest/gtest.h>

#include <vector>

#include "numerics/random/Random.h"

namespace tov {
namespace {

// Expected indices and end states: a Python simulation of the reservoir
// rule on the 16807 / (2^31 - 1) stream, u = float32(state * float32 scale
// 0x2FFFFFFF), r = int(float32(float32(u * t) + 1)), written apart from
// this code.
struct Case {
  int Seed;
  int NumRows;
  std::vector<int> Index;
  int EndState;
};

TEST(RNSRS, ReplacesByTheReservoirRuleOnTheProcessStream) {
  const Case cases[] = {
      {12345, 20, {11, 2, 3, 17, 18}, 2112876142},
      {987654321, 100, {1, 36, 72, 94, 49, 27, 29, 16, 24, 47}, 720809316},
  };
  for (const Case& c : cases) {
    std::vector<float> population;
    for (int i = 1; i <= c.NumRows; ++i) population.push_back(100.0f + static_cast<float>(i) / 4.0f);
    const int numSample = static_cast<int>(c.Index.size());
    std::vector<float> sample(c.Index.size());
    std::vector<int> index(c.Index.size());
    StartStreamForTesting(c.Seed);
    RNSRS(c.NumRows, population.data(), numSample, sample.data(), index.data());
    EXPECT_EQ(index, c.Index);
    for (int k = 0; k < numSample; ++k) EXPECT_EQ(sample[k], population[index[k] - 1]);
    // One draw for each record past the first numSample, and no more.
    EXPECT_EQ(StreamStateForTesting(), c.EndState);
  }
}

TEST(RNSRS, WholePopulationIsTakenInOrderWithoutADraw) {
  const float population[] = {3.0f, -1.0f, 8.5f, 0.25f, 2.0f};
  float sample[5] = {};
  int index[5] = {};
  StartStreamForTesting(12345);
  RNSRS(5, population, 5, sample, index);
  for (int k = 0; k < 5; ++k) {
    EXPECT_EQ(sample[k], population[k]);
    EXPECT_EQ(index[k], k + 1);
  }
  EXPECT_EQ(StreamStateForTesting(), 12345);
}

}  // namespace
}  // namespace tov
