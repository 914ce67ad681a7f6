#include "permutation/ShuffleMaxima.h"

#include <algorithm>
#include <vector>

#include "core/Parallel.h"
#include "mapping/AdditiveScan.h"
#include "mapping/MarkerTest.h"
#include "mapping/EpistaticMaxima.h"
#include "mapping/ShuffleLanes.h"
#include "mapping/SingleMarkerMaxima.h"
#include "numerics/stepwise/StepModel.h"

namespace tov {

namespace {

// Calls scanChunk(first, last) on consecutive runs of the shuffles 1 ..
// times that together cover them once.  The maxima kernels scan
// ShuffleLanes shuffles side by side and list the lines of a test once for
// all the groups of lanes of a call, so a run holds whole groups, up to
// four of them, and there are at least as many runs as threads where the
// groups allow; the threads take runs as they come free.
template <class ScanChunk>
void InChunks(int times, const ScanChunk& scanChunk) {
  const int groups = (times + ShuffleLanes - 1) / ShuffleLanes;
  const int chunks = std::max(std::min(groups, WorkerThreads()), (groups + 3) / 4);
  ParallelFor(chunks, [&](int c) {
    const int first = static_cast<int>(static_cast<long long>(c) * groups / chunks) * ShuffleLanes + 1;
    const int last = std::min(times, static_cast<int>(static_cast<long long>(c + 1) * groups / chunks) * ShuffleLanes);
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

// Columns first .. last of shuffles, each less the fit.
Array<float, 2> LessFit(const Array<float, 2>& shuffles, int first, int last, const std::vector<float>& fit) {
  const auto numLines = static_cast<int>(fit.size());
  Array<float, 2> ys(numLines, last - first + 1);
  for (int k = first; k <= last; ++k)
    for (int l = 1; l <= numLines; ++l) ys(l, k - first + 1) = shuffles(l, k) - fit[static_cast<std::size_t>(l - 1)];
  return ys;
}

}  // namespace

void MarkerShuffleMaxima(int methodCode, int numMarkers, int numLines, const Array<char, 2>& scanGenotype,
                         const Array<float, 2>& shuffles, float* maxima) {
  const int times = static_cast<int>(shuffles.Extent(2));
  // The single-marker scan tests the shuffle as it stands.
  std::vector<float> fit = EmptyModelFit(numMarkers, numLines, scanGenotype);
  if (methodCode == SingleMarkerPermutation) fit.assign(fit.size(), 0.0f);
  InChunks(times, [&](int first, int last) {
    SingleMarkerMaxima(numMarkers, numLines, scanGenotype, LessFit(shuffles, first, last, fit), maxima + (first - 1));
  });
}

void PairShuffleMaxima(int numMarkers, int numLines, const Array<char, 2>& scanGenotype,
                       const Array<float, 2>& shuffles, float* maxima) {
  const int times = static_cast<int>(shuffles.Extent(2));
  const std::vector<float> fit = EmptyModelFit(numMarkers, numLines, scanGenotype);
  InChunks(times, [&](int first, int last) {
    EpistaticMaxima(numMarkers, numLines, scanGenotype, LessFit(shuffles, first, last, fit), maxima + (first - 1));
  });
}

}  // namespace tov
