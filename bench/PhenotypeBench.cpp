// The phenotype statistics of a large project: 5,000 lines, 10 traits,
// 5 environments, 4 replications, one cell in 50 missing.

#include <benchmark/benchmark.h>

#include "BenchData.h"
#include "phenotype/PhenotypeAnalysis.h"
#include "phenotype/TraitStatistics.h"
#include "core/RunData.h"

namespace tov {
namespace {

void FillLargeProject(RunData& run) {
  run.PopulationSize = 5000;
  run.NumTraits = 10;
  run.NumEnvs = 5;
  run.NumReps = 4;
  run.Phenotype.Allocate(run.PopulationSize, run.NumTraits, run.NumEnvs, run.NumReps);
  run.TraitName.Allocate(run.NumTraits, run.NumEnvs, run.NumReps);
  run.TraitName.Fill("Trait");
  run.PhenotypicVariance.Allocate(run.NumTraits, run.NumEnvs + 1);
  // A fixed pseudo-random filling, independent of the run's own stream.
  BenchStream next(12345u);
  std::size_t cell = 0;
  for (float& value : run.Phenotype) {
    const std::uint32_t draw = next();
    value = (++cell % 50 == 0) ? MissingValue : 10.0f + static_cast<float>(draw) / 16777216.0f;
  }
}

void BM_PhenotypeStatistics(benchmark::State& state) {
  RunData run;
  FillLargeProject(run);
  TextOutput sta;
  sta.Create("/dev/null");
  for (auto _ : state) {
    TraitStatistics(run, sta);
    PhenotypeAnalysis(sta, run.PopulationSize, run.NumTraits, run.NumEnvs, run.NumReps, run.Phenotype,
                      run.PhenotypicVariance);
    benchmark::DoNotOptimize(run.PhenotypicVariance.Data());
  }
}
BENCHMARK(BM_PhenotypeStatistics)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tov
