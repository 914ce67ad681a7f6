// The whole selection against numpy/scipy on one population, and a
// constant response.  Copies, near copies, monomorphic markers and the
// retries of a fit too good are compared bit for bit with the dense engine
// on random populations (DenseReferenceTest).
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
