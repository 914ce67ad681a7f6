// Costs of a stepwise selection on marker arrays: 500 lines, markers in
// linked runs, a response with five real effects, PIN 0.01 as in additive
// mapping.  The selection enters hundreds of markers at these sizes, so it
// shows how a step's cost grows with the markers.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "BenchData.h"
#include "numerics/matrix/CovarianceMatrix.h"
#include "numerics/stepwise/Stepwise.h"

namespace tov {
namespace {

constexpr int kLines = 500;

// Reproducible codes -1, +1 (and 0 for one in a hundred) in runs of 2,000
// linked markers, about one line in a hundred recombinant between
// neighbours; the variable index is fastest, as the selection takes it.
struct Population {
  int markers;
  std::vector<std::int32_t> code;
  std::vector<float> y;
  explicit Population(int numMarkers)
      : markers(numMarkers), code(static_cast<std::size_t>(numMarkers) * kLines), y(kLines) {
    BenchStream next(12345u);
    std::vector<std::int32_t> current(kLines);
    for (int m = 0; m < markers; ++m)
      for (int l = 0; l < kLines; ++l) {
        std::int32_t& g = current[static_cast<std::size_t>(l)];
        if (m % 2000 == 0) g = next() % 2u == 0u ? 1 : -1;
        if (next() % 100u == 0u) g = -g;
        code[static_cast<std::size_t>(l) * markers + m] = next() % 100u == 0u ? 0 : g;
      }
    for (int l = 0; l < kLines; ++l) {
      float value = static_cast<float>(next() % 2001u) / 1000.0f - 1.0f;
      for (int f = 1; f <= 5; ++f)
        value = value + 0.3f * static_cast<float>(code[static_cast<std::size_t>(l) * markers + f * markers / 6]);
      y[static_cast<std::size_t>(l)] = value;
    }
  }
};

void BM_CovarianceRow(benchmark::State& state) {
  const Population population(static_cast<int>(state.range(0)));
  const int numCols = population.markers + 1;
  CovarianceRows rows(kLines, numCols);
  const std::vector<float> offsets(static_cast<std::size_t>(population.markers), 0.01f);
  rows.SetCodedColumns(population.markers, population.code.data(), offsets.data());
  rows.SetColumn(numCols, population.y.data());
  Array<float, 1> row;
  int i = 0;
  for (auto _ : state) {
    rows.Row(i % numCols + 1, row);
    ++i;
    benchmark::DoNotOptimize(row.Data());
  }
}
BENCHMARK(BM_CovarianceRow)->Arg(2000)->Arg(12000)->Unit(benchmark::kMicrosecond);

void BM_StepwiseSelection(benchmark::State& state) {
  const Population population(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    StepModel model;
    StepwiseSelection(0.01f, 0.02f, population.markers, kLines, population.code.data(), population.y.data(), model);
    state.counters["terms"] = static_cast<double>(model.NumTerms);
  }
}
BENCHMARK(BM_StepwiseSelection)->Arg(2000)->Arg(12000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tov
