#include "numerics/random/Random.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <ctime>

namespace tov {
namespace {

// States and uniforms computed with python3 in exact integer arithmetic:
// s = 16807 s mod (2^31 - 1), u = numpy.float32(s * scale) with the scale
// 2^-31 - 2^-55 (float bits 0x2FFFFFFF) as a double.
struct Step {
  std::int32_t state;
  float uniform;
};

void ExpectStream(std::int32_t seed, const Step (&steps)[5]) {
  StartStreamForTesting(seed);
  for (const Step& step : steps) {
    EXPECT_EQ(UniformDraw(), step.uniform);
    EXPECT_EQ(StreamStateForTesting(), step.state);
  }
}

TEST(UniformDraw, FollowsTheRecurrenceFromSeedOne) {
  const Step steps[] = {{16807, 0x1.069bfep-17f},
                        {282475249, 0x1.0d63aep-3f},
                        {1622650073, 0x1.82deb2p-1f},
                        {984943658, 0x1.d5a86p-2f},
                        {1144108930, 0x1.10c6dcp-1f}};
  ExpectStream(1, steps);
}

TEST(UniformDraw, FollowsTheRecurrenceFromTheFallbackSeed) {
  const Step steps[] = {{2074941799, 0x1.eeb464p-1f},
                        {559872160, 0x1.0af7c4p-2f},
                        {1645535613, 0x1.885384p-1f},
                        {1222641625, 0x1.23801ep-1f},
                        {1814256879, 0x1.b08d72p-1f}};
  ExpectStream(123457, steps);
}

TEST(UniformDraw, ExtremeStatesStayInsideTheOpenInterval) {
  // 739806647 * 16807 = 2147483646 mod (2^31 - 1): the largest state.
  StartStreamForTesting(739806647);
  EXPECT_EQ(UniformDraw(), 1.0f - 0x1p-24f);
  EXPECT_EQ(StreamStateForTesting(), 2147483646);
  // 1407677000 * 16807 = 1 mod (2^31 - 1): the smallest state.
  StartStreamForTesting(1407677000);
  EXPECT_EQ(UniformDraw(), 0x1.fffffep-32f);
  EXPECT_EQ(StreamStateForTesting(), 1);
}

TEST(RNUN, IsTheSameSequenceAsSuccessiveDraws) {
  StartStreamForTesting(987654321);
  float expected[7];
  for (float& u : expected) u = UniformDraw();
  const std::int32_t after = StreamStateForTesting();
  StartStreamForTesting(987654321);
  float r[7];
  RNUN(7, r);
  for (int i = 0; i < 7; ++i) EXPECT_EQ(r[i], expected[i]) << i;
  EXPECT_EQ(StreamStateForTesting(), after);
}

TEST(SeedFromClock, TimeOfDayAsANumberPlusOne) {
  EXPECT_EQ(SeedFromClock(23, 59, 59), 235960);
  EXPECT_EQ(SeedFromClock(7, 5, 9), 70510);
  EXPECT_EQ(SeedFromClock(0, 0, 1), 2);
  // Midnight would give 1, which the fallback replaces.
  EXPECT_EQ(SeedFromClock(0, 0, 0), 123457);
}

// Run in a fresh process, where the stream has not started: the first draw
// must come from the seed of the current local time.
void CheckFirstDrawStartsFromTheClock() {
  const std::time_t before = std::time(nullptr);
  UniformDraw();
  const std::time_t after = std::time(nullptr);
  // Step the state back by the inverse of 16807 modulo 2^31 - 1 (1407677000).
  const std::int64_t seed = static_cast<std::int64_t>(StreamStateForTesting()) * 1407677000 % 2147483647;
  for (std::time_t t = before; t <= after; ++t) {
    const std::tm* local = std::localtime(&t);
    if (seed == SeedFromClock(local->tm_hour, local->tm_min, local->tm_sec)) std::exit(0);
  }
  std::exit(1);
}

TEST(UniformDraw, FirstDrawOfTheProcessStartsFromTheClock) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(CheckFirstDrawStartsFromTheClock(), ::testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace tov
