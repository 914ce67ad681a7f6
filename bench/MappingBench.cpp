// Scans of a large mapping population, 2,000 markers over 500 lines,
// reported as marker-line tests per second: the single-marker scan and the
// additive scan against a model of five markers.

#include <benchmark/benchmark.h>

#include <cstdint>

#include "BenchData.h"
#include "mapping/AdditiveScan.h"
#include "mapping/SingleMarkerScan.h"

namespace tov {
namespace {

constexpr int kMarkers = 2000;
constexpr int kLines = 500;
constexpr int kModelMarkers[] = {10, 400, 800, 1200, 1600};

// Reproducible codes with one in twenty missing, and a response with the
// effects of the model's markers.
struct Population {
  Array<char, 2> genotype{kMarkers, kLines};
  Array<float, 1> y{kLines};
  Population() {
    BenchStream next(2024u);
    FillRandomCodes(next, genotype);
    for (int l = 1; l <= kLines; ++l) {
      float value = static_cast<float>(next() % 2001u) / 1000.0f - 1.0f;
      for (int m : kModelMarkers) value = value + (genotype(m, l) == 'A' ? 0.8f : 0.0f);
      y(l) = value;
    }
  }
};

MarkerTestTable EmptyTable() {
  MarkerTestTable table;
  table.NumTests = kMarkers;
  AllocMarkerTests(SingleMarkerMapping, table);
  return table;
}

void BM_SingleMarkerScan(benchmark::State& state) {
  const Population population;
  MarkerTestTable table = EmptyTable();
  for (auto _ : state) {
    SingleMarkerScan(kMarkers, kLines, population.genotype, population.y.Data(), table);
    benchmark::DoNotOptimize(table.Test.Data());
  }
  state.SetItemsProcessed(state.iterations() * kMarkers * kLines);
}
BENCHMARK(BM_SingleMarkerScan)->Unit(benchmark::kMillisecond);

void BM_AdditiveScan(benchmark::State& state) {
  const Population population;
  StepModel model;
  model.NumTerms = static_cast<std::int32_t>(std::size(kModelMarkers));
  model.TermIndex.Allocate(model.NumTerms);
  model.Coef.assign(static_cast<std::size_t>(model.NumTerms) + 1, 0.4f);
  for (int k = 1; k <= model.NumTerms; ++k) model.TermIndex(k) = kModelMarkers[k - 1];
  MarkerTestTable table = EmptyTable();
  for (auto _ : state) {
    AdditiveScan(kMarkers, kLines, population.genotype, population.y.Data(), model, table);
    benchmark::DoNotOptimize(table.Test.Data());
  }
  state.SetItemsProcessed(state.iterations() * kMarkers * kLines);
}
BENCHMARK(BM_AdditiveScan)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tov
