// The fill of missing cells and the line means, bit for bit against
// reference/exact_line_values.py, and the edges the ".sta" end-to-end
// projects do not reach.

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "numerics/basic/ErrorPolicy.h"
#include "numerics/random/Random.h"
#include "numerics/random/ReservoirSample.h"
#include "numerics/statistics/ShapiroWilk.h"
#include "phenotype/LineMeans.h"
#include "phenotype/LineValues.h"
#include "phenotype/PhenotypeSlices.h"
#include "phenotype/TraitStatisticsRow.h"
#include "support/BitCases.h"
#include "support/MatrixOf.h"

namespace tov {
namespace {

using testing_support::ExpectSameBits;
using testing_support::MatrixOf;
constexpr float Missing = -9999.0f;

const auto Cases = testing_support::ReadBitCases("phenotype/data/exact_line_values.txt");
constexpr int NumLines = 300, NumEnvs = 3, NumReps = 2;

std::vector<int> KeptOf(const Array<std::int32_t, 1>& kept) { return std::vector<int>(kept.begin(), kept.end()); }
std::vector<float> ValuesOf(const Array<float, 1>& a) { return std::vector<float>(a.begin(), a.end()); }

TEST(ExactBits, LineValuesAndMeansInOneEnvironment) {
  const auto& c = Cases.at("one_environment");
  const std::vector<float> file = c.Floats("values");
  Array<float, 2> values(NumLines, NumReps);
  for (int l = 1; l <= NumLines; ++l)
    for (int r = 1; r <= NumReps; ++r) values(l, r) = file[(l - 1) * NumReps + r - 1];
  Array<std::int32_t, 1> kept;
  Array<float, 2> filled;
  const int numKept = LineValues(NumLines, NumReps, ConstView(values), kept, filled);
  EXPECT_EQ(KeptOf(kept), c.Ints("kept"));
  std::vector<float> rows;
  for (int l = 1; l <= numKept; ++l)
    for (int r = 1; r <= NumReps; ++r) rows.push_back(filled(l, r));
  ExpectSameBits(rows, c.Floats("filled"), "filled cells");
  ExpectSameBits(ValuesOf(LineMeans(numKept, NumReps, filled)), c.Floats("means"), "line means");
}

TEST(ExactBits, LineValuesAndMeansAcrossEnvironments) {
  const auto& c = Cases.at("across_environments");
  const std::vector<float> file = c.Floats("values");
  Array<float, 3> values(NumLines, NumEnvs, NumReps);
  for (int l = 1, i = 0; l <= NumLines; ++l)
    for (int e = 1; e <= NumEnvs; ++e)
      for (int r = 1; r <= NumReps; ++r) values(l, e, r) = file[i++];
  Array<std::int32_t, 1> kept;
  Array<float, 3> filled;
  const int numKept = LineValuesAcrossEnvs(NumLines, NumEnvs, NumReps, ConstView(values), kept, filled);
  EXPECT_EQ(KeptOf(kept), c.Ints("kept"));
  std::vector<float> cells;
  for (int l = 1; l <= numKept; ++l)
    for (int e = 1; e <= NumEnvs; ++e)
      for (int r = 1; r <= NumReps; ++r) cells.push_back(filled(l, e, r));
  ExpectSameBits(cells, c.Floats("filled"), "filled cells");
  ExpectSameBits(ValuesOf(LineMeansAcrossEnvs(numKept, NumEnvs, NumReps, filled, AcrossEnvsOrder::ReplicationsOuter)),
                 c.Floats("means_reps_outer"), "replications outer");
  ExpectSameBits(ValuesOf(LineMeansAcrossEnvs(numKept, NumEnvs, NumReps, filled, AcrossEnvsOrder::EnvironmentsOuter)),
                 c.Floats("means_envs_outer"), "environments outer");
}

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
  // A line mean that is not a number is missing in the statistics row.
  const float means[] = {1.0f, NAN, 2.0f, 4.0f, Missing};
  EXPECT_EQ(SummarizeLineMeans(5, means).Valid, 3);
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
