// Marker preprocessing at the sizes users have: binning of 5,000 markers
// by 500 lines and of 200,000 by 300, and the multicollinearity loop on 200
// linked markers.

#include <benchmark/benchmark.h>

#include <random>
#include <string>

#include "markers/Binning.h"
#include "markers/Multicollinearity.h"

namespace tov {
namespace {

// Markers along a chromosome: each line switches genotype between
// neighbours with the given recombination rate; some genotypes missing.
Array<char, 2> LinkedGenotypes(int numMarkers, int populationSize, double recombination, double missing) {
  std::mt19937 random(12345);
  std::bernoulli_distribution recombine(recombination), lost(missing), donor(0.5);
  Array<char, 2> markerType(numMarkers, populationSize);
  for (int line = 1; line <= populationSize; ++line) {
    bool isDonor = donor(random);
    for (int m = 1; m <= numMarkers; ++m) {
      if (recombine(random)) isDonor = !isDonor;
      markerType(m, line) = lost(random) ? 'X' : isDonor ? 'A' : 'B';
    }
  }
  return markerType;
}

void BM_BinMarkers(benchmark::State& state) {
  const int numMarkers = static_cast<int>(state.range(0));
  const int populationSize = static_cast<int>(state.range(1));
  const Array<char, 2> columns = MarkerColumns(LinkedGenotypes(numMarkers, populationSize, 0.01, 0.02));
  for (auto _ : state) benchmark::DoNotOptimize(BinMarkers(numMarkers, populationSize, columns));
}
BENCHMARK(BM_BinMarkers)->Args({5000, 500})->Args({200000, 300})->Unit(benchmark::kMillisecond);

void BM_MulticollinearityLoop(benchmark::State& state) {
  const int numMarkers = 200;
  const Array<char, 2> columns = MarkerColumns(LinkedGenotypes(numMarkers, 500, 0.05, 0.0));
  Array<std::string, 1> names(numMarkers);
  for (int m = 1; m <= numMarkers; ++m) names(m) = std::to_string(m);
  int kept = 0;
  for (auto _ : state) {
    Array<std::int32_t, 1> deleted(numMarkers);
    kept = static_cast<int>(HandleMulticollinearity(static_cast<float>(state.range(0)), names, columns, deleted).Size());
  }
  state.counters["kept"] = kept;
}
BENCHMARK(BM_MulticollinearityLoop)->Arg(30)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tov
