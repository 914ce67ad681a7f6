#include "phenotype/LineValues.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "phenotype/PhenotypeSlices.h"
#include "support/MatrixOf.h"

namespace tov {
namespace {

using testing_support::MatrixOf;

constexpr float Missing = -9999.0f;
const float NaN = std::nanf("");

// The examples below are worked by hand from the rule: a gap takes the
// mean of the line's valid cells, an all-missing line goes.
TEST(LineValues, FillsGapsWithTheLinesOwnMeanAndDropsEmptyLines) {
  const Array<float, 2> values = MatrixOf({{1.0f, Missing, 4.0f},
                                         {Missing, Missing, Missing},
                                         {7.0f, Missing, Missing},
                                         {2.0f, 5.0f, 3.0f}});
  Array<std::int32_t, 1> kept;
  Array<float, 2> filled;
  ASSERT_EQ(LineValues(4, 3, ConstView(values), kept, filled), 3);
  ASSERT_EQ(kept.Size(), 3u);
  EXPECT_EQ(kept(1), 1);
  EXPECT_EQ(kept(2), 3) << "kept lines keep their input numbers";
  EXPECT_EQ(kept(3), 4);
  ASSERT_EQ(filled.Extent(1), 3);
  ASSERT_EQ(filled.Extent(2), 3);
  EXPECT_EQ(filled(1, 1), 1.0f);
  EXPECT_EQ(filled(1, 2), 2.5f) << "(1 + 4) / 2";
  EXPECT_EQ(filled(1, 3), 4.0f);
  EXPECT_EQ(filled(2, 1), 7.0f);
  EXPECT_EQ(filled(2, 2), 7.0f) << "two of three missing: both take the one valid value";
  EXPECT_EQ(filled(2, 3), 7.0f);
  EXPECT_EQ(filled(3, 2), 5.0f) << "a complete line is untouched";
  EXPECT_EQ(values(1, 2), Missing) << "the input stays as it was";
}

TEST(LineValues, NotANumberIsMissingAndSpoilsTheLinesFilledCells) {
  // NaN times the mask 0 is NaN: the sum, and every gap filled from it,
  // becomes NaN, while the valid cells stay as they are.
  const Array<float, 2> values = MatrixOf({{2.0f, NaN, 3.0f, Missing}, {NaN, NaN, NaN, Missing}});
  Array<std::int32_t, 1> kept;
  Array<float, 2> filled;
  ASSERT_EQ(LineValues(2, 4, ConstView(values), kept, filled), 1) << "a line of NaN and codes only is empty";
  EXPECT_EQ(filled(1, 1), 2.0f);
  EXPECT_TRUE(std::isnan(filled(1, 2)));
  EXPECT_EQ(filled(1, 3), 3.0f);
  EXPECT_TRUE(std::isnan(filled(1, 4))) << "the code cell is filled from the spoilt sum";
}

TEST(LineValues, OnlyTheExactCodeIsMissing) {
  // -9999.00001 reads as the 32-bit real -9999.0; -9999.001 reads as
  // -9999.0009765625, 0.00098 from the code, and is a value.
  const Array<float, 2> values = MatrixOf({{-9999.00001f, 1.0f}, {-9999.001f, 1.0f}});
  Array<std::int32_t, 1> kept;
  Array<float, 2> filled;
  ASSERT_EQ(LineValues(2, 2, ConstView(values), kept, filled), 2);
  EXPECT_EQ(filled(1, 1), 1.0f);
  EXPECT_EQ(filled(2, 1), -9999.001f);
}

TEST(LineValues, SumsTheValidCellsInReplicationOrder) {
  // In 32 bits (1 + 1e8) - 1e8 is 0, as numpy.float32 confirms, while the
  // reverse order (-1e8 + 1e8) + 1 is 1: the gap shows which was taken.
  const Array<float, 2> values = MatrixOf({{1.0f, 1e8f, -1e8f, Missing}});
  Array<std::int32_t, 1> kept;
  Array<float, 2> filled;
  ASSERT_EQ(LineValues(1, 4, ConstView(values), kept, filled), 1);
  EXPECT_EQ(filled(1, 4), 0.0f);
}

TEST(LineValues, NoLinesOrNoValidLineGiveEmptyResults) {
  Array<std::int32_t, 1> kept(5);
  Array<float, 2> filled;
  const Array<float, 2> none(0, 2);
  EXPECT_EQ(LineValues(0, 2, ConstView(none), kept, filled), 0);
  EXPECT_TRUE(kept.IsAllocated());
  EXPECT_EQ(kept.Size(), 0u) << "an old list is replaced";
  EXPECT_EQ(filled.Size(), 0u);

  const Array<float, 2> allMissing = MatrixOf({{Missing, Missing}, {Missing, NaN}});
  EXPECT_EQ(LineValues(2, 2, ConstView(allMissing), kept, filled), 0);
  EXPECT_EQ(kept.Size(), 0u);
  EXPECT_EQ(filled.Size(), 0u);
}

// A cube [lines, environments, replications].
Array<float, 3> Cube(int lines, int envs, int reps, const std::vector<float>& valuesLinesFastest) {
  Array<float, 3> cube(lines, envs, reps);
  std::size_t i = 0;
  for (float& v : cube) v = valuesLinesFastest[i++];
  return cube;
}

TEST(LineValuesAcrossEnvs, KeepsALineWithDataInOneEnvironmentOnly) {
  // Line 1 has data in environment 2 only (values 4 and 6); line 2 in
  // environment 1 only.  Both stay, each filled with its one environment's
  // mean; line 3 has nothing and goes.
  //                       (l, e, r): lines fastest, then environments
  const Array<float, 3> values = Cube(3, 2, 2,
                                      {Missing, 1.0f, Missing,   // e1 r1
                                       4.0f, Missing, Missing,   // e2 r1
                                       Missing, 2.0f, Missing,   // e1 r2
                                       6.0f, Missing, Missing}); // e2 r2
  Array<std::int32_t, 1> kept;
  Array<float, 3> filled;
  ASSERT_EQ(LineValuesAcrossEnvs(3, 2, 2, ConstView(values), kept, filled), 2);
  EXPECT_EQ(kept(1), 1);
  EXPECT_EQ(kept(2), 2);
  ASSERT_EQ(filled.Extent(1), 2);
  ASSERT_EQ(filled.Extent(2), 2);
  ASSERT_EQ(filled.Extent(3), 2);
  EXPECT_EQ(filled(1, 1, 1), 5.0f);
  EXPECT_EQ(filled(1, 1, 2), 5.0f);
  EXPECT_EQ(filled(1, 2, 1), 4.0f);
  EXPECT_EQ(filled(1, 2, 2), 6.0f);
  EXPECT_EQ(filled(2, 1, 1), 1.0f);
  EXPECT_EQ(filled(2, 2, 1), 1.5f);
  EXPECT_EQ(filled(2, 2, 2), 1.5f);

  // The single-environment rule on environment 1 drops line 1.
  Array<float, 2> env1(3, 2);
  for (int l = 1; l <= 3; ++l)
    for (int r = 1; r <= 2; ++r) env1(l, r) = values(l, 1, r);
  Array<float, 2> filledEnv1;
  ASSERT_EQ(LineValues(3, 2, ConstView(env1), kept, filledEnv1), 1);
  EXPECT_EQ(kept(1), 2);
}

TEST(LineValuesAcrossEnvs, SumsReplicationsOuterEnvironmentsInner) {
  // Cells (e1,r1) = 1e8, (e2,r1) = 1, (e1,r2) = -1e8, (e2,r2) missing.
  // Replications outer: (1e8 + 1) - 1e8 = 0 in 32 bits; environments
  // outer would give (1e8 - 1e8) + 1 = 1, a gap of 1/3 (numpy.float32).
  const Array<float, 3> values = Cube(1, 2, 2, {1e8f, 1.0f, -1e8f, Missing});
  Array<std::int32_t, 1> kept;
  Array<float, 3> filled;
  ASSERT_EQ(LineValuesAcrossEnvs(1, 2, 2, ConstView(values), kept, filled), 1);
  EXPECT_EQ(filled(1, 2, 2), 0.0f);
}

}  // namespace
}  // namespace tov
