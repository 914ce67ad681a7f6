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

// The epistatic method: every pair scanned as EpistaticScan scans it against
// a model of no term (the pairs (i, i + 1) .. (i, n) of each first marker i
// by the pair kernel), on y = column k of shuffles.  maxima[k - 1] starts
// at LOD(1) of pair (1, 2), whatever it is, and takes every later LOD(1)
// strictly above it: it may be negative, and a NaN at pair 1 stays.  With
// fewer than two markers there is no pair and it stays 0.0.
void PairShuffleMaxima(int numMarkers, int numLines, const Array<char, 2>& scanGenotype,
                       const Array<float, 2>& shuffles, float* maxima);

}  // namespace tov
