// Flagging, effects and genetic variances of marker records.  Expected
// values are worked out by hand in the comments.

#include "mapping/MarkerEffects.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tov {
namespace {

const float NaN = std::numeric_limits<float>::quiet_NaN();

MarkerTest Record(float lod, float m1, float m2, float f1, float f2) {
  MarkerTest test;
  test.LOD(1) = lod;
  test.GroupMean(1) = m1;
  test.GroupMean(2) = m2;
  test.GroupFreq(1) = f1;
  test.GroupFreq(2) = f2;
  return test;
}

MarkerTestTable TableOf(std::initializer_list<MarkerTest> records) {
  MarkerTestTable table;
  table.NumTests = static_cast<int>(records.size());
  AllocMarkerTests(SingleMarkerMapping, table);
  int m = 0;
  for (const MarkerTest& r : records) {
    table.Test(++m) = r;
    table.Test(m).MarkerIndex = m;
  }
  return table;
}

TEST(MarkSignificant, StrictlyAboveTheThresholdAndNoNaN) {
  MarkerTestTable table = TableOf({
      Record(2.5f, 1, 2, 0.5f, 0.5f),                       // at the threshold
      Record(std::nextafter(2.5f, 3.0f), 1, 2, 0.5f, 0.5f),  // just above
      Record(9.0f, NaN, 2, 0.5f, 0.5f),
      Record(9.0f, 1, NaN, 0.5f, 0.5f),
      Record(9.0f, 1, 2, NaN, 0.5f),
      Record(9.0f, 1, 2, 0.5f, NaN),
      Record(NaN, 1, 2, 0.5f, 0.5f),
      Record(std::numeric_limits<float>::infinity(), 1, 2, 0.5f, 0.5f),
      Record(2.0f, 1, 2, 0.5f, 0.5f),  // below
  });
  MarkSignificant(2.5f, table);
  const std::int32_t expected[] = {0, -1, 0, 0, 0, 0, 0, -1, 0};
  for (int m = 1; m <= table.NumTests; ++m) EXPECT_EQ(table.Test(m).Significant, expected[m - 1]) << "record " << m;
  // A later pass with a higher threshold clears nothing.
  MarkSignificant(100.0f, table);
  EXPECT_EQ(table.Test(2).Significant, LogicalTrue);
}

TEST(GenotypeEffects, HalfSumAndHalfDifference) {
  float mean = -1.0f, add = -1.0f;
  GenotypeEffects(Record(0, 12.0f, 8.0f, 0, 0).GroupMean, mean, add);
  EXPECT_EQ(mean, 10.0f);
  EXPECT_EQ(add, 2.0f);  // 'A' lines higher: positive
  GenotypeEffects(Record(0, 3.0f, 8.0f, 0, 0).GroupMean, mean, add);
  EXPECT_EQ(mean, 5.5f);
  EXPECT_EQ(add, -2.5f);
  GenotypeEffects(Record(0, NaN, 8.0f, 0, 0).GroupMean, mean, add);
  EXPECT_EQ(mean, 0.0f);
  EXPECT_EQ(add, 0.0f);
}

TEST(MarkerGeneticVariance, TwoPointVarianceOfTheGroupMeans) {
  // p = 0.25: p (1 - p) (4 - 0)^2 = 3.
  EXPECT_EQ(MarkerGeneticVariance(Record(0, 4.0f, 0.0f, 0.25f, 0.75f).GroupFreq, Record(0, 4.0f, 0.0f, 0, 0).GroupMean),
            3.0f);
  // Shares are normalised by their sum: 0.5 and 0.25 weigh 2/3 and 1/3;
  // (2/3)(1/3)(6 - 3)^2 = 2.
  const MarkerTest unnormalised = Record(0, 6.0f, 3.0f, 0.5f, 0.25f);
  EXPECT_NEAR(MarkerGeneticVariance(unnormalised.GroupFreq, unnormalised.GroupMean), 2.0f, 1e-5f);
  // Equal means: none; a NaN mean: 0.0, not NaN.
  const MarkerTest equal = Record(0, 5.0f, 5.0f, 0.3f, 0.7f);
  EXPECT_EQ(MarkerGeneticVariance(equal.GroupFreq, equal.GroupMean), 0.0f);
  const MarkerTest missing = Record(0, NaN, 5.0f, 0.0f, 1.0f);
  EXPECT_EQ(MarkerGeneticVariance(missing.GroupFreq, missing.GroupMean), 0.0f);
}

TEST(SumGeneticVariance, OnlyFlaggedRecordsInTableOrder) {
  MarkerTestTable table = TableOf({
      Record(5.0f, 12.0f, 8.0f, 0.5f, 0.5f),   // VG 4
      Record(1.0f, 9.0f, 11.0f, 0.25f, 0.75f),  // VG 0.75, not flagged
      Record(4.0f, 7.0f, 13.0f, 0.5f, 0.5f),   // VG 9
  });
  EXPECT_EQ(SumGeneticVariance(table), 0.0f);
  MarkSignificant(2.0f, table);
  EXPECT_EQ(SumGeneticVariance(table), 13.0f);
}

}  // namespace
}  // namespace tov
