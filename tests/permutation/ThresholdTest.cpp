#include "permutation/Threshold.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace tov {
namespace {

constexpr float NaN = std::numeric_limits<float>::quiet_NaN();

// The maxima k, k - 1, ..., 1 (descending, so that the sort matters).
std::vector<float> Descending(int n) {
  std::vector<float> v;
  for (int k = n; k >= 1; --k) v.push_back(static_cast<float>(k));
  return v;
}

struct Case {
  const char* What;
  std::vector<float> Maxima;
  float Alpha;
  float Threshold;
};

TEST(PermutationThreshold, QuantileOfTheSortedMaxima) {
  const Case cases[] = {
      {"q = 1000 * 0.95 rounds to 950: mean of B(950), B(951)", Descending(1000), 0.05f, 950.5f},
      {"q = 100 * 0.95 is 95.0 in 32 bits", Descending(100), 0.05f, 95.5f},
      {"q = 94.05: B(95)", Descending(99), 0.05f, 95.0f},
      {"one shuffle: its maximum", {3.25f}, 0.05f, 3.25f},
      {"a NaN sorts above every number", {2.0f, NaN, 4.0f, 1.0f}, 0.5f, 3.0f},
      {"q rounds to n: B(n + 1) reads B(n)", Descending(10), 1.0e-9f, 10.0f},
      {"a rate of 1: q = 0 reads B(1)", Descending(10), 1.0f, 1.0f},
      {"no maximum at all", {}, 0.05f, 0.0f},
  };
  for (const Case& c : cases)
    EXPECT_EQ(PermutationThreshold(static_cast<int>(c.Maxima.size()), c.Maxima.data(), c.Alpha), c.Threshold)
        << c.What;
}

}  // namespace
}  // namespace tov
