#pragma once
// The highest LOD of each shuffle of one loop, the shuffles scanned side by
// side on the worker threads.  Each shuffle's maximum depends on its own
// phenotype alone, so the results are the same whatever the number of
// threads.

#include "core/Array.h"

namespace tov {

// The marker methods: SingleMarkerScan (code 10912) or AdditiveScan
// against a model of no term (code 10921), on scanGenotype [numMarkers,
// numLines] with y = column k of shuffles [numLines, times].  maxima[k - 1]
// starts at 0.0 and takes every LOD strictly above it, markers in order:
// it is never negative, and a NaN LOD never enters.
void MarkerShuffleMaxima(int methodCode, int numMarkers, int numLines, const Array<char, 2>& scanGenotype,
                         const Array<float, 2>& shuffles, float* maxima);

}  // namespace tov
