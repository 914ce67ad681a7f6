#include "numerics/stepwise/Stepwise.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <utility>
#include <vector>

namespace tov {
namespace {

// Lines scored at markers, and a response built from a few of them.  Every
// value is a binary fraction, so the data are exact in 32 bits; the
// reference values below come from the same data generated in Python 3
// (same generator, same order of draws), fitted with numpy 1.24
// (linalg.lstsq) after a stepwise selection in double precision with
// scipy 1.10's t distribution.
struct Population {
  int numVars;
  int numObs;
  std::vector<std::int32_t> code;  // (m, l) at (m - 1) + (l - 1) * numVars
  std::vector<float> y;

  std::int32_t& Code(int m, int l) { return code[static_cast<std::size_t>((m - 1) + (l - 1) * numVars)]; }
};

struct Recipe {
  std::uint32_t seed;
  int numVars;
  int numObs;
  std::vector<std::pair<int, float>> effects;
  float noiseDivisor;
  std::vector<int> constant = {};
  std::vector<std::pair<int, int>> copies = {};  // (copy, original)
  std::vector<std::pair<int, int>> zeroed = {};  // (marker, line) set to code 0
};

Population Generate(const Recipe& recipe) {
  std::uint32_t state = recipe.seed;
  auto next = [&state] {
    state = state * 1664525u + 1013904223u;
    return state >> 8;
  };
  Population p{recipe.numVars, recipe.numObs, {}, {}};
  p.code.resize(static_cast<std::size_t>(recipe.numVars) * recipe.numObs);
  for (int l = 1; l <= recipe.numObs; ++l)
    for (int m = 1; m <= recipe.numVars; ++m) {
      const std::uint32_t r = next() % 20u;
      p.Code(m, l) = r == 0u ? 0 : (r % 2u == 0u ? 1 : -1);
    }
  for (int m : recipe.constant)
    for (int l = 1; l <= recipe.numObs; ++l) p.Code(m, l) = 1;
  for (auto [copy, original] : recipe.copies)
    for (int l = 1; l <= recipe.numObs; ++l) p.Code(copy, l) = p.Code(original, l);
  for (auto [m, l] : recipe.zeroed) p.Code(m, l) = 0;
  for (int l = 1; l <= recipe.numObs; ++l) {
    float value = static_cast<float>(static_cast<int>(next() % 1001u) - 500) / recipe.noiseDivisor;
    for (auto [m, b] : recipe.effects) value = value + b * static_cast<float>(p.Code(m, l));
    p.y.push_back(value);
  }
  return p;
}

StepModel Select(const Population& p, float pin, float pout) {
  StepModel model;
  StepwiseSelection(pin, pout, p.numVars, p.numObs, p.code.data(), p.y.data(), model);
  return model;
}

std::vector<int> Terms(const StepModel& model) {
  std::vector<int> terms;
  for (int k = 1; k <= model.NumTerms; ++k) terms.push_back(model.TermIndex(k));
  return terms;
}

// 40 markers over 200 lines; markers 5, 17 and 30 carry effects 1.0, -0.75
// and 0.5; marker 40 is constant.
const Recipe kThreeEffects{777u, 40, 200, {{5, 1.0f}, {17, -0.75f}, {30, 0.5f}}, 256.0f, {40}};

TEST(StepwiseSelection, SelectsTheMarkersWithRealEffects) {
  const StepModel model = Select(Generate(kThreeEffects), 0.01f, 0.02f);
  ASSERT_EQ(Terms(model), (std::vector<int>{5, 17, 30}));
  ASSERT_EQ(model.Coef.size(), 4u);
  EXPECT_NEAR(model.Coef[0], -0.02749306, 1e-4);
  EXPECT_NEAR(model.Coef[1], 1.00018035, 1e-4);
  EXPECT_NEAR(model.Coef[2], -0.72689266, 1e-4);
  EXPECT_NEAR(model.Coef[3], 0.42888949, 1e-4);
  EXPECT_NEAR(model.RSquare, 57.7405991, 2e-3);
  EXPECT_NEAR(model.AdjRSquare, 57.0937715, 2e-3);
}

TEST(StepwiseSelection, LooserThresholdsLetAWeakMarkerIn) {
  // Marker 11 has no effect but reaches p = 0.0247 once the others are in.
  const StepModel model = Select(Generate(kThreeEffects), 0.05f, 0.10f);
  ASSERT_EQ(Terms(model), (std::vector<int>{5, 11, 17, 30}));
  EXPECT_NEAR(model.Coef[0], -0.02250269, 1e-4);
  EXPECT_NEAR(model.Coef[1], 0.99019832, 1e-4);
  EXPECT_NEAR(model.Coef[2], 0.17782926, 1e-4);
  EXPECT_NEAR(model.Coef[3], -0.75618881, 1e-4);
  EXPECT_NEAR(model.Coef[4], 0.41597918, 1e-4);
  EXPECT_NEAR(model.RSquare, 58.8222557, 2e-3);
  EXPECT_NEAR(model.AdjRSquare, 57.9775840, 2e-3);
}

TEST(StepwiseSelection, OfTwoIdenticalMarkersOnlyTheFirstCounts) {
  // Marker 4 is a copy of marker 3 (effect 0.75); marker 7 has effect -0.5.
  const Recipe recipe{99u, 10, 120, {{3, 0.75f}, {7, -0.5f}}, 256.0f, {}, {{4, 3}}};
  const StepModel model = Select(Generate(recipe), 0.01f, 0.02f);
  // The copy ties with marker 3 for the first step and loses; once 3 is in,
  // the copy has no variance left and is never a candidate.
  ASSERT_EQ(Terms(model), (std::vector<int>{3, 7}));
  // numpy fit on the intercept, marker 3 and marker 7.
  EXPECT_NEAR(model.Coef[0], -0.06943172, 1e-4);
  EXPECT_NEAR(model.Coef[1], 0.756679, 1e-4);
  EXPECT_NEAR(model.Coef[2], -0.612473, 1e-4);
  EXPECT_NEAR(model.RSquare, 43.5514099, 2e-3);
}

TEST(StepwiseSelection, NearlyCollinearMarkersAboveTheToleranceBothEnter) {
  // Marker 2 is marker 1 except at line 7, where it is missing: it keeps
  // only 0.2 % of its variance beside marker 1 (a hundred times the
  // tolerance), and that line carries its effect.
  const Recipe recipe{31u, 6, 500, {{1, 1.0f}, {2, 2.0f}}, 8192.0f, {}, {{2, 1}}, {{2, 7}}};
  const StepModel model = Select(Generate(recipe), 0.05f, 0.10f);
  ASSERT_EQ(Terms(model), (std::vector<int>{1, 2}));
  EXPECT_NEAR(model.Coef[0], 9.39994548e-04, 2e-5);
  // The one-pass 32-bit covariances lose digits to the collinearity.
  EXPECT_NEAR(model.Coef[1], 0.974572807, 1e-2);
  EXPECT_NEAR(model.Coef[2], 2.02503167, 1e-2);
  EXPECT_NEAR(model.AdjRSquare, 99.9849248, 2e-3);
}

TEST(StepwiseSelection, AFitTooGoodIsRetriedSixTimesInAll) {
  // y = 2 x1 + x2 + 0.0137 x3 + 0.0186 x4 + small noise: adjusted R-square
  // 99.97 %.  x3 and x4 reach p = 0.00167 and 0.00141: both pass PIN / 16
  // (fifth run), only x4 passes PIN / 32 (sixth run), neither would pass
  // PIN / 64.
  const Recipe recipe{6u, 8, 100, {{1, 2.0f}, {2, 1.0f}, {3, 28.0f / 2048.0f}, {4, 38.0f / 2048.0f}}, 8192.0f};
  const StepModel model = Select(Generate(recipe), 0.05f, 0.10f);
  ASSERT_EQ(Terms(model), (std::vector<int>{1, 2, 4}));
  EXPECT_NEAR(model.Coef[0], 9.85281274e-04, 2e-5);
  EXPECT_NEAR(model.Coef[1], 1.99322122, 2e-5);
  EXPECT_NEAR(model.Coef[2], 0.997559315, 2e-5);
  EXPECT_NEAR(model.Coef[3], 1.24290201e-02, 2e-5);
  // Still above 99 after the last run: the sixth model stands.
  EXPECT_NEAR(model.AdjRSquare, 99.9746411, 2e-3);
  EXPECT_NEAR(model.RSquare, 99.9754096, 2e-3);
}

TEST(StepwiseSelection, ConstantResponseGivesNoTermAndTheMean) {
  Population p = Generate(kThreeEffects);
  for (float& v : p.y) v = 2.5f;
  const StepModel model = Select(p, 0.05f, 0.10f);
  EXPECT_EQ(model.NumTerms, 0);
  ASSERT_EQ(model.Coef.size(), 1u);
  EXPECT_EQ(model.Coef[0], 2.5f);
  EXPECT_EQ(model.RSquare, 0.0f);
  EXPECT_EQ(model.AdjRSquare, 0.0f);
}

}  // namespace
}  // namespace tov
