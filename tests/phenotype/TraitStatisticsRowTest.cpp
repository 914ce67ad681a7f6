#include "phenotype/TraitStatisticsRow.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "numerics/basic/ErrorPolicy.h"
#include "numerics/random/Random.h"
#include "numerics/random/ReservoirSample.h"
#include "numerics/statistics/ShapiroWilk.h"

namespace tov {
namespace {

constexpr float Missing = -9999.0f;

// The policy is process-wide: these tests let no error stop the run and
// put the default back afterwards.
class SummaryWithoutStops : public testing::Test {
 protected:
  void SetUp() override { ERSET(0, 0, 0); }
  void TearDown() override { ERSET(0, 2, 2); }
};

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
