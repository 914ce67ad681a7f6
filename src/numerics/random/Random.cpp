// The process-wide uniform stream: x(k+1) = 16807 x(k) mod (2^31 - 1),
// run in 64-bit reals, where the product is below 2^46 and so exact.  It
// starts from the local time of day at the first draw; nothing outside
// hands it a seed, so two runs differ unless they start in the same second.

#include <cmath>
#include <cstdint>

#include "core/Clock.h"
#include "numerics/random/Random.h"

namespace tov {
namespace {

constexpr double kModulus = 2147483647.0;
constexpr double kMultiplier = 16807.0;
constexpr std::int32_t kFallbackSeed = 123457;

struct GeneratorState {
  std::int32_t GeneratorSeed = 0;
  double GeneratorValue = 0.0;
  float GeneratorScale = 0.0f;
  bool GeneratorStarted = false;
};

GeneratorState& Generator() {
  static GeneratorState state;
  return state;
}

// The largest float below 2^-31, so that the largest state 2^31 - 2 maps to
// 1 - 2^-24 and no uniform reaches 1.0.
float ComputeScale() {
  float scale = 0x1p-31f;
  while (!(scale * 2147483648.0f < 1.0f)) scale = scale * (1.0f - 0x1p-24f);
  return scale;
}

std::int32_t SeedFromTimeOfDay() {
  const ClockReading clock = ReadLocalClock();
  return SeedFromClock(clock.Hour, clock.Minute, clock.Second);
}

void Start(GeneratorState& state, std::int32_t seed) {
  state.GeneratorScale = ComputeScale();
  state.GeneratorSeed = seed;
  state.GeneratorValue = static_cast<double>(seed);
  state.GeneratorStarted = true;
}

}  // namespace

std::int32_t SeedFromClock(int hour, int minute, int second) {
  const std::int32_t seed = hour * 10000 + minute * 100 + second + 1;
  return seed <= 1 ? kFallbackSeed : seed;
}

float UniformDraw() {
  GeneratorState& state = Generator();
  if (!state.GeneratorStarted) Start(state, SeedFromTimeOfDay());
  state.GeneratorValue = static_cast<double>(state.GeneratorSeed);
  state.GeneratorValue = std::fmod(kMultiplier * state.GeneratorValue, kModulus);
  const float uniform = static_cast<float>(state.GeneratorValue * static_cast<double>(state.GeneratorScale));
  state.GeneratorSeed = static_cast<std::int32_t>(state.GeneratorValue + 0.5);
  return uniform;
}

void RNUN(int nr, float* r) {
  for (int i = 0; i < nr; ++i) r[i] = UniformDraw();
}

void StartStreamForTesting(std::int32_t seed) { Start(Generator(), seed); }

std::int32_t StreamStateForTesting() { return Generator().GeneratorSeed; }

}  // namespace tov
