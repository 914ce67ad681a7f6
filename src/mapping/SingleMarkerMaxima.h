#pragma once
// The highest LOD of single-marker scans of many phenotypes at once, for
// the permutation test, which keeps nothing else of a shuffle's scan.

#include "core/Array.h"

namespace tov {

// ys [numLines, count]: column k is the phenotype of scan k.  maxima[k - 1]
// receives the maximum over markers 1..numMarkers that starts at 0.0 and
// takes every LOD strictly above it, so that a NaN never enters: bit for
// bit the value read off the table of SingleMarkerScan(numMarkers,
// numLines, scanGenotype, column k).  Only the markers that could reach the
// maximum are tested in full, by the bound of ShuffleLanes.h.
void SingleMarkerMaxima(int numMarkers, int numLines, const Array<char, 2>& scanGenotype, const Array<float, 2>& ys,
                        float* maxima);

}  // namespace tov
