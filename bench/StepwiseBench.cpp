// Costs of a stepwise selection at the size of a large mapping population:
// 2,000 markers over 500 lines.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "numerics/matrix/CovarianceMatrix.h"
#include "numerics/stepwise/Stepwise.h"

namespace tov {
namespace {

constexpr int kMarkers = 2000;
constexpr int kLines = 500;

// Reproducible codes -1, 0, +1 and a response with five real effects.
struct Population {
  std::vector<std::int32_t> code;
  std::vector<float> y;
  Population() : code(static_cast<std::size_t>(kMarkers) * kLines), y(kLines) {
    std::uint32_t state = 12345u;
    auto next = [&state] {
      state = state * 1664525u + 1013904223u;
      return state >> 8;
    };
    for (auto& c : code) {
      const std::uint32_t r = next() % 20u;
      c = r == 0u ? 0 : (r % 2u == 0u ? 1 : -1);
    }
    for (int l = 0; l < kLines; ++l) {
      float value = static_cast<float>(next() % 2001u) / 1000.0f - 1.0f;
      for (int m : {10, 400, 800, 1200, 1600})
        value = value + 0.8f * static_cast<float>(code[static_cast<std::size_t>(l) * kMarkers + m]);
      y[static_cast<std::size_t>(l)] = value;
    }
  }
};

void BM_CovarianceBuild(benchmark::State& state) {
  const Population population;
  Array<float, 2> columns(kLines, kMarkers + 1);
  for (int m = 1; m <= kMarkers; ++m)
    for (int l = 1; l <= kLines; ++l)
      columns(l, m) = static_cast<float>(population.code[static_cast<std::size_t>(l - 1) * kMarkers + (m - 1)]);
  for (int l = 1; l <= kLines; ++l) columns(l, kMarkers + 1) = population.y[static_cast<std::size_t>(l - 1)];
  Array<float, 2> cov(kMarkers + 1, kMarkers + 1);
  for (auto _ : state) {
    CovarianceOfColumns(kLines, kMarkers + 1, columns, cov);
    benchmark::DoNotOptimize(cov.Data());
  }
}
BENCHMARK(BM_CovarianceBuild)->Unit(benchmark::kMillisecond);

void BM_StepwiseSelection(benchmark::State& state) {
  const Population population;
  for (auto _ : state) {
    StepModel model;
    StepwiseSelection(0.05f, 0.10f, kMarkers, kLines, population.code.data(), population.y.data(), model);
    benchmark::DoNotOptimize(model.NumTerms);
  }
}
BENCHMARK(BM_StepwiseSelection)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tov
