#include "permutation/ShuffleMaxima.h"

#include <algorithm>
#include <vector>

#include "core/Parallel.h"
#include "mapping/AdditiveScan.h"
#include "mapping/MarkerTest.h"
#include "mapping/PairKernel.h"
#include "mapping/PairTest.h"
#include "mapping/SingleMarkerMaxima.h"
#include "numerics/stepwise/StepModel.h"

namespace tov {

namespace {

// Calls scanChunk(first, last) on consecutive runs of the shuffles 1 ..
// times that together cover them once; a few runs per thread keep the
// threads busy when the machine is shared.
template <class ScanChunk>
void InChunks(int times, const ScanChunk& scanChunk) {
  const int chunks = std::min(times, 4 * WorkerThreads());
  ParallelFor(chunks, [&](int c) {
    const int first = static_cast<int>(static_cast<long long>(c) * times / chunks) + 1;
    const int last = static_cast<int>(static_cast<long long>(c + 1) * times / chunks);
    scanChunk(first, last);
  });
}

// The shuffle less the fit of a model of no term, which is the shuffle
// itself: the phenotype that the scans against the empty model test.
std::vector<float> EmptyModelFit(int numMarkers, int numLines, const Array<char, 2>& scanGenotype) {
  std::vector<float> fit(static_cast<std::size_t>(numLines < 0 ? 0 : numLines));
  FittedValues(numMarkers, numLines, scanGenotype, StepModel{}, fit.data());
  return fit;
}

}  // namespace

void MarkerShuffleMaxima(int methodCode, int numMarkers, int numLines, const Array<char, 2>& scanGenotype,
                         const Array<float, 2>& shuffles, float* maxima) {
  const int times = static_cast<int>(shuffles.Extent(2));
  // The single-marker scan tests the shuffle as it stands.
  std::vector<float> fit = EmptyModelFit(numMarkers, numLines, scanGenotype);
  if (methodCode == SingleMarkerPermutation) fit.assign(fit.size(), 0.0f);
  InChunks(times, [&](int first, int last) {
    Array<float, 2> ys(numLines, last - first + 1);
    for (int k = first; k <= last; ++k)
      for (int l = 1; l <= numLines; ++l) ys(l, k - first + 1) = shuffles(l, k) - fit[static_cast<std::size_t>(l - 1)];
    SingleMarkerMaxima(numMarkers, numLines, scanGenotype, ys, maxima + (first - 1));
  });
}

void PairShuffleMaxima(int numMarkers, int numLines, const Array<char, 2>& scanGenotype,
                       const Array<float, 2>& shuffles, float* maxima) {
  const int times = static_cast<int>(shuffles.Extent(2));
  if (numMarkers < 2) {
    for (int k = 1; k <= times; ++k) maxima[k - 1] = 0.0f;
    return;
  }
  const std::vector<float> fit = EmptyModelFit(numMarkers, numLines, scanGenotype);
  const PairCodes codes = PairCodesOf(numMarkers, numLines, scanGenotype);
  InChunks(times, [&](int first, int last) {
    std::vector<float> y(fit.size());
    // One row of pairs at a time: the records of a row are read for the
    // maximum and overwritten by the next.
    std::vector<PairTest> row(static_cast<std::size_t>(numMarkers - 1));
    for (int k = first; k <= last; ++k) {
      for (int l = 1; l <= numLines; ++l) y[static_cast<std::size_t>(l - 1)] = shuffles(l, k) - fit[static_cast<std::size_t>(l - 1)];
      float highest = 0.0f;
      for (int i = 1; i < numMarkers; ++i) {
        FourGroupRow(codes, i, i + 1, numMarkers, y.data(), nullptr, row.data());
        for (int j = 0; j < numMarkers - i; ++j) {
          const float lod = row[static_cast<std::size_t>(j)].LOD(1);
          if ((i == 1 && j == 0) || lod > highest) highest = lod;
        }
      }
      maxima[k - 1] = highest;
    }
  });
}

}  // namespace tov
