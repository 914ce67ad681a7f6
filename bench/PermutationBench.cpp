// The shuffle maxima of the permutation test on a population of 1,000
// markers over 300 lines, one in fifty codes missing, 64 shuffles of a
// phenotype without any effect: marker-line tests per second for the
// single-marker maxima, pair-line tests per second for the epistatic ones.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

#include "mapping/EpistaticMaxima.h"
#include "mapping/SingleMarkerMaxima.h"

namespace tov {
namespace {

constexpr int kMarkers = 1000;
constexpr int kLines = 300;
constexpr int kShuffles = 64;

struct Shuffles {
  Array<char, 2> genotype{kMarkers, kLines};
  Array<float, 2> ys{kLines, kShuffles};
  Shuffles() {
    std::minstd_rand random(2024u);
    for (int l = 1; l <= kLines; ++l)
      for (int m = 1; m <= kMarkers; ++m) {
        const auto r = random() % 100u;
        genotype(m, l) = r < 2u ? 'X' : r % 2u ? 'A' : 'B';
      }
    std::normal_distribution<float> normal(10.0f, 1.7f);
    std::vector<float> y(kLines);
    for (float& v : y) v = normal(random);
    for (int k = 1; k <= kShuffles; ++k) {
      std::shuffle(y.begin(), y.end(), random);
      std::copy(y.begin(), y.end(), &ys(1, k));
    }
  }
};

void BM_SingleMarkerMaxima(benchmark::State& state) {
  const Shuffles data;
  float maxima[kShuffles];
  for (auto _ : state) {
    SingleMarkerMaxima(kMarkers, kLines, data.genotype, data.ys, maxima);
    benchmark::DoNotOptimize(maxima);
  }
  state.SetItemsProcessed(state.iterations() * kMarkers * kLines * kShuffles);
}
BENCHMARK(BM_SingleMarkerMaxima)->Unit(benchmark::kMillisecond);

void BM_EpistaticMaxima(benchmark::State& state) {
  const Shuffles data;
  float maxima[kShuffles];
  for (auto _ : state) {
    EpistaticMaxima(kMarkers, kLines, data.genotype, data.ys, maxima);
    benchmark::DoNotOptimize(maxima);
  }
  state.SetItemsProcessed(state.iterations() * kMarkers * (kMarkers - 1) / 2 * kLines * kShuffles);
}
BENCHMARK(BM_EpistaticMaxima)->Unit(benchmark::kSecond)->Iterations(1);

}  // namespace
}  // namespace tov
