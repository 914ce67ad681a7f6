// What the exact-bit cases and the ".sta" end-to-end projects do not
// reach: the edges of the missing code, empty data, the order of the
// phenotypic variance across environments, and the W test of more than
// 2000 line means on a random sample.

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "numerics/basic/ErrorPolicy.h"
#include "numerics/random/Random.h"
#include "numerics/random/ReservoirSample.h"
#include "numerics/statistics/ShapiroWilk.h"
#include "phenotype/LineValues.h"
#include "phenotype/PhenotypeAnalysis.h"
#include "phenotype/PhenotypeSlices.h"
#include "phenotype/TraitStatisticsRow.h"
#include "support/MatrixOf.h"

namespace tov {
namespace {

using testing_support::MatrixOf;
constexpr float Missing = -9999.0f;

TEST(Phenotype, OnlyTheExactCodeIsMissingAndNoDataGivesEmptyArrays) {
  // -9999.00001 reads as the real -9999.0; -9999.001 is 0.00098 away.
  const Array<float, 2> values = MatrixOf({{-9999.00001f, 1.0f}, {-9999.001f, 1.0f}, {Missing, NAN}});
  Array<std::int32_t, 1> kept(5);
  Array<float, 2> filled;
  ASSERT_EQ(LineValues(3, 2, ConstView(values), kept, filled), 2);
  EXPECT_EQ(filled(1, 1), 1.0f);
  EXPECT_EQ(filled(2, 1), -9999.001f);
  const Array<float, 2> none(0, 2);
  EXPECT_EQ(LineValues(0, 2, ConstView(none), kept, filled), 0);
  EXPECT_TRUE(kept.IsAllocated() && kept.Size() == 0u && filled.Size() == 0u) << "an old list is replaced";
}

// Phenotype [lines, 1 trait, envs, reps] from cells per line {e1r1, e1r2, e2r1, ...}.
Array<float, 4> OneTrait(int envs, int reps, const std::vector<std::vector<float>>& lines) {
  Array<float, 4> phenotype(static_cast<int>(lines.size()), 1, envs, reps);
  for (int l = 1; l <= static_cast<int>(lines.size()); ++l)
    for (int e = 1; e <= envs; ++e)
      for (int r = 1; r <= reps; ++r) phenotype(l, 1, e, r) = lines[l - 1][static_cast<std::size_t>((e - 1) * reps + r - 1)];
  return phenotype;
}

TEST(Phenotype, VarianceAcrossEnvironmentsAddsEnvironmentsOuter) {
  // Line 1: e1 {1e8, -1e8}, e2 {1, 0}: environments outer the sum is
  // ((1e8 - 1e8) + 1) + 0 = 1, replications outer 0; var(0.25, 0) = 0.03125.
  Array<float, 2> variance(1, 3);
  TextOutput closed;
  ERSET(0, 0, 0);
  PhenotypeAnalysis(closed, 2, 1, 2, 2, OneTrait(2, 2, {{1e8f, -1e8f, 1, 0}, {0, 0, 0, 0}}), variance);
  EXPECT_EQ(variance(1, 3), 0.03125f);
  EXPECT_EQ(variance(1, 2), 0.125f);
  PhenotypeAnalysis(closed, 2, 1, 2, 1, OneTrait(2, 1, {{1, Missing}, {3, Missing}}), variance);
  ERSET(0, 2, 2);
  EXPECT_TRUE(std::isnan(variance(1, 2))) << "an environment without data";
  EXPECT_EQ(variance(1, 3), 2.0f);
}

TEST(Phenotype, Above2000LineMeansTheWTestRestsOnARandomSample) {
  std::vector<float> values;
  for (int i = 1; i <= 2001; ++i) values.push_back(static_cast<float>((i * 37) % 101) * 0.25f);
  values.back() = 1000.0f;
  ERSET(0, 0, 0);
  StartStreamForTesting(4242);
  const TraitSummary s = SummarizeLineMeans(2001, values.data());
  const std::int32_t after = StreamStateForTesting();
  StartStreamForTesting(4242);
  UniformDraw();
  EXPECT_EQ(StreamStateForTesting(), after) << "2001 values cost one uniform";
  StartStreamForTesting(4242);
  std::vector<float> sample(2000);
  std::vector<int> index(2000);
  RNSRS(2001, values.data(), 2000, sample.data(), index.data());
  float w = 0.0f, p = 0.0f;
  int missing = 0;
  ASSERT_TRUE(SPWLK(2000, sample.data(), w, p, missing));
  EXPECT_TRUE(s.Valid == 2001 && s.Stat(7) == 1000.0f && s.W == w && s.P == p);
  StartStreamForTesting(4242);
  SummarizeLineMeans(2000, values.data());
  EXPECT_EQ(StreamStateForTesting(), 4242) << "up to 2000 values draw nothing";
  ERSET(0, 2, 2);
  EXPECT_EXIT(SummarizeLineMeans(2, values.data()), testing::ExitedWithCode(0), "NOBS = 2");
}

}  // namespace
}  // namespace tov
