#include "numerics/distributions/NormalScores.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tov {
namespace {

// Reference: scipy.special.ndtri (SciPy 1.10) at the float nearest each p.
TEST(InverseNormal, MatchesAnIndependentQuantileFunctionInAllThreeRanges) {
  struct Case {
    float P;
    double Z;
  };
  const Case cases[] = {
      {1.0e-20f, -9.262340093185976},   {1.0e-12f, -7.034483825858318},
      {1.0e-10f, -6.361340900353645},   {1.0e-5f, -4.264890799563287},  {0.02f, -2.053748919864621},
      {0.07f, -1.4757910259595548},     {0.3f, -0.5244004784222137},    {0.5f, 0.0},
      {0.6f, 0.2533471648475091},       {0.9f, 1.281551429692279},      {0.99999f, 4.264587771860222},
  };
  for (const Case& c : cases) EXPECT_NEAR(InverseNormal(c.P), c.Z, 2.0e-7 + 1.0e-7 * std::abs(c.Z)) << c.P;
}

TEST(InverseNormal, GivesZeroAtTheUnreachableEnds) {
  EXPECT_EQ(InverseNormal(0.0f), 0.0f);
  EXPECT_EQ(InverseNormal(1.0f), 0.0f);
}

// Reference: Cdhc_nscor2 of libgrass_cdhc (GRASS GIS 8.2.1, Debian package
// grass-core), an independent double-precision translation of AS 177.
// The cases cover the three special scores, the general one, the
// correction for i * n = 4, for n up to 20, for i = 4 up to n = 40, and none
// beyond.
TEST(NormalScore, MatchesAnIndependentTranslationOfTheApproximation) {
  struct Case {
    int I;
    int N;
    double Score;
  };
  const Case cases[] = {
      {1, 4, 1.0293730218556756},     {2, 4, 0.2970114109931291},     {1, 7, 1.3522023331915731},
      {2, 7, 0.7573794903351859},     {3, 7, 0.3526940861339366},     {4, 8, 0.15255028264100068},
      {4, 9, 0.27448829177193484},    {5, 10, 0.12267026162856459},   {6, 12, 0.10252987266043721},
      {7, 14, 0.08815826125347792},   {8, 16, 0.07719810265407957},     {1, 20, 1.8674713965439078},
      {4, 20, 0.9210080846639257},    {5, 20, 0.7454010626358655},    {7, 20, 0.44833808503489897},
      {8, 20, 0.3148834741252756},    {10, 20, 0.061971772906705296}, {1, 21, 1.8892274808015206},
      {4, 21, 0.9538296727432517},    {5, 21, 0.7815617553018951},    {4, 30, 1.178573289296342},
      {15, 30, 0.041509581917705735}, {4, 41, 1.3573424845376934},    {2, 100, 2.1481446123969157},
      {50, 100, 0.01253811059408087}, {1, 2000, 3.4352645829821418},  {3, 2000, 3.0164344904956786},
      {8, 2000, 2.671339843346838},   {1000, 2000, 0.0006286985475370808},
  };
  for (const Case& c : cases)
    EXPECT_NEAR(NormalScore(c.I, c.N), c.Score, 1.0e-6 * (1.0 + c.Score)) << c.I << " of " << c.N;
}

}  // namespace
}  // namespace tov
