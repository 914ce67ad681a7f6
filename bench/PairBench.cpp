// The pair kernel on 400 kept markers by 300 lines, one row of pairs after
// another as a whole epistatic scan runs them, on each instruction set the
// processor offers, reported as pair-line tests per second; and the whole
// epistatic scan against a model of three markers.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

#include "BenchData.h"
#include "core/Parallel.h"
#include "mapping/EpistaticScan.h"
#include "mapping/PairKernel.h"

namespace tov {
namespace {

constexpr int kMarkers = 400;
constexpr int kLines = 300;

// Reproducible codes with one in twenty missing, and a response.
struct Population {
  Array<char, 2> genotype{kMarkers, kLines};
  std::vector<float> y = std::vector<float>(kLines);
  Population() {
    BenchStream next(2025u);
    FillRandomCodes(next, genotype);
    for (int l = 1; l <= kLines; ++l)
      y[static_cast<std::size_t>(l - 1)] = static_cast<float>(next() % 2001u) / 1000.0f + (genotype(7, l) == 'A');
  }
};

constexpr std::int64_t kPairLines = static_cast<std::int64_t>(kMarkers) * (kMarkers - 1) / 2 * kLines;

void BM_PairKernel(benchmark::State& state) {
  const auto isa = static_cast<PairKernelIsa>(state.range(0));
  bool supported = false;
  for (PairKernelIsa s : SupportedPairKernels()) supported = supported || s == isa;
  if (!supported) {
    state.SkipWithError("instruction set not supported here");
    return;
  }
  const Population population;
  const PairCodes codes = PairCodesOf(kMarkers, kLines, population.genotype);
  std::vector<PairTest> records(kMarkers);
  for (auto _ : state) {
    for (int first = 1; first < kMarkers; ++first)
      FourGroupRowWith(isa, codes, first, first + 1, kMarkers, population.y.data(), nullptr, records.data());
    benchmark::DoNotOptimize(records.data());
  }
  state.SetItemsProcessed(state.iterations() * kPairLines);
  state.SetLabel(isa == PairKernelIsa::Avx512 ? "AVX-512" : isa == PairKernelIsa::Avx2 ? "AVX2" : "x86-64");
}
BENCHMARK(BM_PairKernel)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

// The whole scan on one thread, a model of three markers.
void BM_EpistaticScan(benchmark::State& state) {
  const Population population;
  StepModel model;
  model.NumTerms = 3;
  model.TermIndex.Allocate(3);
  model.TermIndex(1) = 7;
  model.TermIndex(2) = 150;
  model.TermIndex(3) = 390;
  model.Coef = {0.5f, 0.45f, 0.1f, -0.05f};
  PairTestTable table;
  table.NumTests = NumPairs(kMarkers);
  AllocPairTests(EpistaticMapping, table);
  SetWorkerThreads(1);
  for (auto _ : state) {
    EpistaticScan(kMarkers, kLines, population.genotype, population.y.data(), model, table);
    benchmark::DoNotOptimize(table.Test.Data());
  }
  SetWorkerThreads(0);
  state.SetItemsProcessed(state.iterations() * kPairLines);
}
BENCHMARK(BM_EpistaticScan)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tov
