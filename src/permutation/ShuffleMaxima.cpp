#include "permutation/ShuffleMaxima.h"

#include <algorithm>

#include "core/Parallel.h"
#include "mapping/AdditiveScan.h"
#include "mapping/MarkerTest.h"
#include "mapping/SingleMarkerScan.h"
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
  InChunks(times, [&](int first, int last) {
    MarkerTestTable table;
    table.NumTests = numMarkers;
    AllocMarkerTests(methodCode, table);
    const StepModel emptyModel{0, {}, {0.0f}, 0.0f, 0.0f};
    for (int k = first; k <= last; ++k) {
      const float* y = shuffles.Data() + static_cast<std::size_t>(k - 1) * static_cast<std::size_t>(numLines);
      if (methodCode == SingleMarkerPermutation)
        SingleMarkerScan(numMarkers, numLines, scanGenotype, y, table);
      else
        AdditiveScan(numMarkers, numLines, scanGenotype, y, emptyModel, table);
      float highest = 0.0f;
      for (int m = 1; m <= numMarkers; ++m)
        if (table.Test(m).LOD(1) > highest) highest = table.Test(m).LOD(1);
      maxima[k - 1] = highest;
    }
  });
}

}  // namespace tov
