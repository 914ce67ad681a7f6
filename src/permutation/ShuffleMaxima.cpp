#include "permutation/ShuffleMaxima.h"

#include <algorithm>
#include <vector>

#include "core/Parallel.h"
#include "mapping/AdditiveScan.h"
#include "mapping/MarkerTest.h"
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

}  // namespace

void MarkerShuffleMaxima(int methodCode, int numMarkers, int numLines, const Array<char, 2>& scanGenotype,
                         const Array<float, 2>& shuffles, float* maxima) {
  const int times = static_cast<int>(shuffles.Extent(2));
  // The additive scan against a model of no term tests the shuffle less a
  // fit of 0.0, which is the shuffle itself.
  std::vector<float> fit(static_cast<std::size_t>(numLines));
  if (methodCode != SingleMarkerPermutation) FittedValues(numMarkers, numLines, scanGenotype, StepModel{}, fit.data());
  InChunks(times, [&](int first, int last) {
    Array<float, 2> ys(numLines, last - first + 1);
    for (int k = first; k <= last; ++k)
      for (int l = 1; l <= numLines; ++l) ys(l, k - first + 1) = shuffles(l, k) - fit[static_cast<std::size_t>(l - 1)];
    SingleMarkerMaxima(numMarkers, numLines, scanGenotype, ys, maxima + (first - 1));
  });
}

}  // namespace tov
