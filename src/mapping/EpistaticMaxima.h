#pragma once
// The highest LOD of epistasis of pair scans of many phenotypes at once,
// for the permutation test, which keeps nothing else of a shuffle's scan.

#include "core/Array.h"

namespace tov {

// ys [numLines, count]: column k is the phenotype of scan k, scanned as
// EpistaticScan scans it against a model of no term.  maxima[k - 1]
// receives LOD(1) of pair (1, 2), whatever it is, raised by every later
// LOD(1), pairs in table order, strictly above it: bit for bit the value
// read off the table of that scan.  A NaN at pair (1, 2) stays; with fewer
// than two markers there is no pair and the maximum is 0.0.  Only the
// pairs that could raise the maximum are tested in full, by the pair
// kernel; the bound of ShuffleLanes.h decides.
void EpistaticMaxima(int numMarkers, int numLines, const Array<char, 2>& scanGenotype, const Array<float, 2>& ys,
                     float* maxima);

}  // namespace tov
