// The fill of missing cells and the line means in their stated orders,
// pinned bit for bit against reference/exact_line_values.py on 300 lines
// with many decimals, gaps, empty lines and a NaN cell.

#include <gtest/gtest.h>

#include "phenotype/LineMeans.h"
#include "phenotype/LineValues.h"
#include "phenotype/PhenotypeSlices.h"
#include "support/BitCases.h"

namespace tov {
namespace {

using testing_support::ExpectSameBits;

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

}  // namespace
}  // namespace tov
