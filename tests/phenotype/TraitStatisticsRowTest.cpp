#include "phenotype/TraitStatisticsRow.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "numerics/ErrorPolicy.h"
#include "numerics/Random.h"
#include "numerics/ReservoirSample.h"
#include "numerics/ShapiroWilk.h"

namespace tov {
namespace {

constexpr float Missing = -9999.0f;

// Expected rows were composed in python with '%12d', ' ', '%19s', '%12.4f'
// and a hand-written 0.dddd E form, independent of the writer under test.

// The policy is process-wide: these tests let no error stop the run and
// put the default back afterwards.
class SummaryWithoutStops : public testing::Test {
 protected:
  void SetUp() override { ERSET(0, 0, 0); }
  void TearDown() override { ERSET(0, 2, 2); }
};

TEST_F(SummaryWithoutStops, MissingValuesAreLeftOutOfEveryStatistic) {
  // The valid values are 1, 2, 4.  Reference: numpy in float64 for the
  // moments (mean 7/3, variance 7/3, skewness 0.381802 with divisor n,
  // excess kurtosis -1.5) and the W test of Royston's 1982 form written
  // out in python from the published formulas: W 0.964286, P 0.636887.
  const float values[] = {1.0f, Missing, 2.0f, std::nanf(""), 4.0f};
  const TraitSummary s = SummarizeLineMeans(5, values);
  EXPECT_EQ(s.Valid, 3);
  EXPECT_NEAR(s.Stat(1), 2.333333, 1e-5);
  EXPECT_NEAR(s.Stat(2), 2.333333, 1e-5);
  EXPECT_NEAR(s.Stat(3), 1.527525, 1e-5);
  EXPECT_NEAR(s.Stat(4), 0.381802, 1e-4);
  EXPECT_NEAR(s.Stat(5), -1.5, 1e-4);
  EXPECT_EQ(s.Stat(6), 1.0f);
  EXPECT_EQ(s.Stat(7), 4.0f);
  EXPECT_EQ(s.Stat(8), 3.0f);
  EXPECT_NEAR(s.W, 0.964286, 1e-5);
  EXPECT_NEAR(s.P, 0.636887, 1e-4);
}

TEST_F(SummaryWithoutStops, EqualMeansGiveZerosAndACertainWTest) {
  const float values[] = {5.5f, 5.5f, 5.5f, 5.5f};
  const TraitSummary s = SummarizeLineMeans(4, values);
  EXPECT_EQ(s.Valid, 4);
  for (int i = 2; i <= 5; ++i) EXPECT_EQ(s.Stat(i), 0.0f) << "statistic " << i;
  EXPECT_EQ(s.Stat(8), 0.0f);
  EXPECT_EQ(s.W, 0.0f);
  EXPECT_EQ(s.P, 1.0f);
}

TEST_F(SummaryWithoutStops, OneOrTwoValuesHaveNoWTest) {
  const float two[] = {1.0f, 3.0f};
  const TraitSummary s2 = SummarizeLineMeans(2, two);
  EXPECT_EQ(s2.Valid, 2);
  EXPECT_EQ(s2.Stat(2), 2.0f) << "((1-2)^2 + (3-2)^2) / 1";
  EXPECT_EQ(s2.W, Missing);
  EXPECT_EQ(s2.P, Missing);

  const float one[] = {Missing, 7.0f};
  const TraitSummary s1 = SummarizeLineMeans(2, one);
  EXPECT_EQ(s1.Valid, 1);
  EXPECT_EQ(s1.Stat(1), 7.0f);
  for (int i = 2; i <= 5; ++i) EXPECT_TRUE(std::isnan(s1.Stat(i))) << "statistic " << i;
  EXPECT_EQ(s1.Stat(8), 0.0f);
  EXPECT_EQ(s1.W, Missing);
  EXPECT_EQ(s1.P, Missing);
}

TEST(SummaryUnderTheDefaultPolicy, TwoValuesStopTheRunInTheWTest) {
  const float two[] = {1.0f, 3.0f};
  EXPECT_EXIT(
      {
        ERSET(0, 2, 2);
        SummarizeLineMeans(2, two);
      },
      testing::ExitedWithCode(0), "NOBS = 2");
}

// Values whose last one is far out, so that a W test on the first 2000
// alone would look quite different.
std::vector<float> LongList(int n) {
  std::vector<float> values;
  for (int i = 1; i <= n; ++i) values.push_back(static_cast<float>((i * 37) % 101) * 0.25f);
  values.back() = 1000.0f;
  return values;
}

TEST_F(SummaryWithoutStops, Above2000ValuesTheWTestRestsOnARandomSample) {
  const std::vector<float> values = LongList(2001);
  StartStreamForTesting(4242);
  const TraitSummary s = SummarizeLineMeans(2001, values.data());
  const std::int32_t stateAfter = StreamStateForTesting();
  EXPECT_EQ(s.Valid, 2001) << "the other statistics rest on all values";
  EXPECT_EQ(s.Stat(7), 1000.0f);

  // The same stream gives the same sample, and one draw was spent on it.
  StartStreamForTesting(4242);
  std::vector<float> sample(2000);
  std::vector<int> index(2000);
  RNSRS(2001, values.data(), 2000, sample.data(), index.data());
  EXPECT_EQ(StreamStateForTesting(), stateAfter);
  StartStreamForTesting(4242);
  UniformDraw();
  EXPECT_EQ(StreamStateForTesting(), stateAfter) << "2001 values cost one uniform";

  float w = 0.0f, p = 0.0f;
  int numMissing = 0;
  ASSERT_TRUE(SPWLK(2000, sample.data(), w, p, numMissing));
  EXPECT_EQ(s.W, w);
  EXPECT_EQ(s.P, p);
  float wFirst = 0.0f, pFirst = 0.0f;
  ASSERT_TRUE(SPWLK(2000, values.data(), wFirst, pFirst, numMissing));
  EXPECT_NE(s.W, wFirst) << "this seed's sample holds the far value; the first 2000 do not";
}

TEST_F(SummaryWithoutStops, UpTo2000ValuesDrawNothing) {
  const std::vector<float> values = LongList(2000);
  StartStreamForTesting(4242);
  const TraitSummary s = SummarizeLineMeans(2000, values.data());
  EXPECT_EQ(StreamStateForTesting(), 4242);
  EXPECT_EQ(s.Valid, 2000);
  EXPECT_NE(s.W, Missing);
}

}  // namespace
}  // namespace tov
