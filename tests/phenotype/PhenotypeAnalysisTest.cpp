#include "phenotype/PhenotypeAnalysis.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "StaFileReader.h"
#include "numerics/basic/ErrorPolicy.h"

namespace tov {
namespace {

using testing_sta::ScratchFile;

constexpr float Missing = -9999.0f;

// Phenotype [lines, 1 trait, envs, reps] from cells given per line as
// {e1r1, e1r2, e2r1, e2r2, ...}.
Array<float, 4> OneTrait(int envs, int reps, const std::vector<std::vector<float>>& lines) {
  Array<float, 4> phenotype(static_cast<int>(lines.size()), 1, envs, reps);
  for (int l = 1; l <= static_cast<int>(lines.size()); ++l)
    for (int e = 1; e <= envs; ++e)
      for (int r = 1; r <= reps; ++r) phenotype(l, 1, e, r) = lines[l - 1][static_cast<std::size_t>((e - 1) * reps + r - 1)];
  return phenotype;
}

// Variances of the line means below are numpy.var(..., ddof=1) in float64.

TEST(PhenotypeAnalysis, TwoEnvironmentsOneReplicationFillAllColumns) {
  const Array<float, 4> phenotype = OneTrait(2, 1, {{1, 2}, {2, 2}, {4, 5}});
  Array<float, 2> variance(1, 3);
  ScratchFile sta("pa-two-env");
  PhenotypeAnalysis(sta.Unit(), 3, 1, 2, 1, phenotype, variance);
  EXPECT_NEAR(variance(1, 1), 2.333333, 1e-5);
  EXPECT_NEAR(variance(1, 2), 3.0, 1e-5);
  EXPECT_NEAR(variance(1, 3), 2.583333, 1e-5) << "line means 1.5, 2, 4.5";
  EXPECT_TRUE(sta.Lines().empty());
}

TEST(PhenotypeAnalysis, AcrossEnvironmentsAddsEnvironmentsOuter) {
  // Line 1: e1 {1e8, -1e8}, e2 {1, 0}.  Environments outer, the sum is
  // ((1e8 - 1e8) + 1) + 0 = 1 and the mean 0.25; replications outer would
  // give ((1e8 + 1) - 1e8) + 0 = 0 in 32 bits.  With line 2 at 0 the
  // variance is var(0.25, 0) = 0.03125.
  const Array<float, 4> phenotype = OneTrait(2, 2, {{1e8f, -1e8f, 1, 0}, {0, 0, 0, 0}});
  Array<float, 2> variance(1, 3);
  TextOutput closed;
  ERSET(0, 0, 0);
  PhenotypeAnalysis(closed, 2, 1, 2, 2, phenotype, variance);
  ERSET(0, 2, 2);
  EXPECT_EQ(variance(1, 3), 0.03125f);
  EXPECT_EQ(variance(1, 2), 0.125f) << "environment 2: means 0.5 and 0";
}

TEST(PhenotypeAnalysis, AnEnvironmentWithoutDataHasNoVariance) {
  const Array<float, 4> phenotype = OneTrait(2, 1, {{1, Missing}, {3, Missing}});
  Array<float, 2> variance(1, 3);
  TextOutput closed;
  PhenotypeAnalysis(closed, 2, 1, 2, 1, phenotype, variance);
  EXPECT_EQ(variance(1, 1), 2.0f);
  EXPECT_TRUE(std::isnan(variance(1, 2)));
  EXPECT_EQ(variance(1, 3), 2.0f) << "each line filled with its environment-1 value";
}

}  // namespace
}  // namespace tov
