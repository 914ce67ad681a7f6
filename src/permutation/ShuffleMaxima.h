#pragma once
// The highest LOD of each shuffle of one loop, the shuffles scanned side by
// side on the worker threads.  Each shuffle's maximum depends on its own
// phenotype alone, so the results are the same whatever the number of
// threads.

#include "core/Array.h"

namespace tov {

// The marker methods: the maxima of SingleMarkerScan (code 10912) or of
// AdditiveScan against a model of no term (code 10921), on scanGenotype
// [numMarkers, numLines] with y = column k of shuffles [numLines, times],
// as SingleMarkerMaxima finds them.  maxima[k - 1] starts at 0.0 and takes
// every LOD strictly above it, markers in order: it is never negative, and
// a NaN LOD never enters.
void MarkerShuffleMaxima(int methodCode, int numMarkers, int numLines, const Array<char, 2>& scanGenotype,
                         const Array<float, 2>& shuffles, float* maxima);

// The epistatic method: the maxima of EpistaticScan against a model of no
// term, on y = column k of shuffles, as EpistaticMaxima finds them.
// maxima[k - 1] starts at LOD(1) of pair (1, 2), whatever it is, and takes
// every later LOD(1) strictly above it, so a NaN at pair (1, 2) stays.
// With fewer than two markers there is no pair and it is 0.0.
void PairShuffleMaxima(int numMarkers, int numLines, const Array<char, 2>& scanGenotype,
                       const Array<float, 2>& shuffles, float* maxima);

}  // namespace tov
