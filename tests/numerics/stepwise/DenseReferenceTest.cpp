// The engine that forms the swept matrix on demand against the one that
// sweeps the whole triangle at every step, bit for bit.

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <vector>

#include "numerics/basic/Basic.h"
#include "numerics/basic/ErrorPolicy.h"
#include "numerics/stepwise/Rstep.h"
#include "numerics/stepwise/Stepwise.h"
#include "numerics/stepwise/reference/DenseStepwise.h"
#include "support/BitCases.h"

namespace tov {
namespace {

using testing_support::Bits;

// Columns with copies, near copies, constants and sums of others; the last
// one is built from a few of the others.
Array<float, 2> RandomData(std::mt19937& rng, int nobs, int nvar) {
  std::normal_distribution<float> normal;
  std::uniform_int_distribution<int> pick(1, nvar - 1);
  Array<float, 2> x(nobs, nvar);
  for (float& v : x) v = normal(rng);
  for (int j = 2; j < nvar; ++j) {
    const int kind = static_cast<int>(rng() % 8u);
    const int other = pick(rng) % (j - 1) + 1;
    for (int l = 1; l <= nobs; ++l) {
      if (kind == 0) x(l, j) = x(l, other);
      if (kind == 1) x(l, j) = x(l, other) + 0.001f * x(l, j);
      if (kind == 2) x(l, j) = 1.5f;
      if (kind == 3) x(l, j) = x(l, other) + x(l, j - 1) + 0.3f * x(l, j);
    }
  }
  const float noise = rng() % 4u == 0u ? 0.01f : 1.0f;
  for (int l = 1; l <= nobs; ++l) {
    float y = noise * x(l, nvar);
    for (int j = 1; j < nvar; j += 3) y = y + 0.3f * static_cast<float>(j % 5) * x(l, j);
    x(l, nvar) = y;
  }
  return x;
}

TEST(DenseReference, RstepKeepsEveryBitOfTheWholeSweep) {
  ERSET(0, 0, 0);
  std::mt19937 rng(20261123u);
  int removals = 0, refusals = 0, levelled = 0;
  for (int trial = 0; trial < 400; ++trial) {
    const int nvar = 3 + static_cast<int>(rng() % 24u);
    const int nobs = nvar / 2 + 4 + static_cast<int>(rng() % 40u);
    const Array<float, 2> data = RandomData(rng, nobs, nvar);
    Array<float, 2> cov(nvar, nvar);
    for (int j = 1; j <= nvar; ++j)
      for (int i = 1; i <= nvar; ++i) cov(i, j) = ColumnCovariance(nobs, &data(1, i), &data(1, j));

    RstepOptions options;
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    options.PIN = 0.01f + 0.4f * unit(rng);
    options.POUT = options.PIN + (rng() % 2u == 0u ? 0.0f : 0.3f * unit(rng));
    options.TOL = rng() % 3u == 0u ? 1.0e-2f : 100.0f * AMACH(4);
    options.NSTEP = rng() % 5u == 0u ? static_cast<int>(rng() % 6u) : -1;
    Array<int, 1> level(nvar);
    level.Fill(1);
    level(nvar) = -1;
    if (rng() % 3u == 0u) {
      // Levels 0 to 3, the dependent variable anywhere, some forced in.
      for (int& v : level) v = static_cast<int>(rng() % 4u);
      level(1 + static_cast<int>(rng() % static_cast<unsigned>(nvar))) = -1;
      options.NFORCE = static_cast<int>(rng() % 3u);
      ++levelled;
    }
    options.LEVEL = &level;

    StepAovTable aov, aovRef;
    Array<float, 2> coef(nvar - 1, 5), coefRef(nvar - 1, 5), covs(nvar, nvar), covsRef(nvar, nvar);
    Array<float, 1> scale, hist, histRef;
    int iend = -1, iendRef = -1;
    RSTEP(nvar, cov, nobs, options, aov, coef, &scale, &hist, &iend, &covs);
    reference::DenseRSTEP(nvar, cov, nobs, options, aovRef, coefRef, covsRef, histRef, iendRef);

    ASSERT_EQ(iend, iendRef) << trial;
    for (int i = 1; i <= nvar; ++i) {
      ASSERT_EQ(Bits(hist(i)), Bits(histRef(i))) << trial << " HIST " << i;
      ASSERT_EQ(Bits(scale(i)), Bits(cov(i, i))) << trial << " SCALE " << i;
      for (int j = i; j <= nvar; ++j)
        ASSERT_EQ(Bits(covs(i, j)), Bits(covsRef(i, j))) << trial << " COVS " << i << "," << j;
      removals += histRef(i) < 0.0f;
      refusals += histRef(i) > 0.0f && covsRef(i, i) == 0.0f;
    }
    for (int e = 1; e <= 13; ++e) ASSERT_EQ(Bits(aov(e)), Bits(aovRef(e))) << trial << " AOV " << e;
    for (int c = 1; c <= 5; ++c)
      for (int i = 1; i < nvar; ++i)
        ASSERT_EQ(Bits(coef(i, c)), Bits(coefRef(i, c))) << trial << " COEF " << i << "," << c;
  }
  // The draws reach every kind of step.
  EXPECT_GT(removals, 20);
  EXPECT_GT(refusals, 20);
  EXPECT_GT(levelled, 100);
}

// Linked codes with missing ones (0), copies and a monomorphic marker; a
// response that sometimes fits so well that the selection is retried.
TEST(DenseReference, StepwiseSelectionKeepsEveryBitOfTheModel) {
  std::mt19937 rng(7u);
  int retried = 0, terms = 0, constant = 0;
  for (int trial = 0; trial < 150; ++trial) {
    const int numVars = 5 + static_cast<int>(rng() % 120u);
    const int numObs = 20 + static_cast<int>(rng() % 150u);
    std::vector<std::int32_t> code(static_cast<std::size_t>(numVars) * numObs);
    auto at = [&](int m, int l) -> std::int32_t& { return code[static_cast<std::size_t>((l - 1) * numVars + m - 1)]; };
    for (int l = 1; l <= numObs; ++l) {
      std::int32_t g = rng() % 2u == 0u ? 1 : -1;
      for (int m = 1; m <= numVars; ++m) {
        if (rng() % 12u == 0u) g = -g;
        at(m, l) = rng() % 40u == 0u ? 0 : g;
      }
    }
    if (rng() % 2u == 0u)
      for (int l = 1; l <= numObs; ++l) at(numVars, l) = at(1, l);
    if (rng() % 4u == 0u)
      for (int l = 1; l <= numObs; ++l) at(2, l) = 1;
    std::normal_distribution<float> noise(0.0f, rng() % 3u == 0u ? 0.002f : 1.0f);
    std::vector<float> y(static_cast<std::size_t>(numObs));
    for (int l = 1; l <= numObs; ++l) {
      float value = 7.31f + noise(rng);
      for (int m = 3; m <= numVars; m += 17) value = value + 0.61f * static_cast<float>(at(m, l));
      y[static_cast<std::size_t>(l - 1)] = value;
    }
    if (trial % 10 == 0) y.assign(y.size(), 2.5f);
    const float pin = rng() % 2u == 0u ? 0.01f : 0.05f;

    StepModel model, modelRef;
    StepwiseSelection(pin, 2.0f * pin, numVars, numObs, code.data(), y.data(), model);
    retried += reference::DenseStepwiseSelection(pin, 2.0f * pin, numVars, numObs, code.data(), y.data(), modelRef) > 1;
    terms += modelRef.NumTerms;
    constant += modelRef.NumTerms == 0 && modelRef.Coef[0] == 2.5f;

    ASSERT_EQ(model.NumTerms, modelRef.NumTerms) << trial;
    for (int k = 1; k <= model.NumTerms; ++k) ASSERT_EQ(model.TermIndex(k), modelRef.TermIndex(k)) << trial;
    ASSERT_EQ(model.Coef.size(), modelRef.Coef.size()) << trial;
    for (std::size_t k = 0; k < model.Coef.size(); ++k) ASSERT_EQ(Bits(model.Coef[k]), Bits(modelRef.Coef[k])) << trial;
    ASSERT_EQ(Bits(model.RSquare), Bits(modelRef.RSquare)) << trial;
    ASSERT_EQ(Bits(model.AdjRSquare), Bits(modelRef.AdjRSquare)) << trial;
  }
  EXPECT_GT(retried, 10);
  EXPECT_GT(terms, 500);
  EXPECT_EQ(constant, 15);
}

}  // namespace
}  // namespace tov
