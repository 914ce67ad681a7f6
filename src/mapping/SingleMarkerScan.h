#pragma once
// Single-marker analysis: every kept marker tested by itself on the line
// values as they stand, nothing corrected for the other markers.

#include "mapping/MarkerTest.h"
#include "core/Array.h"

namespace tov {

// scanGenotype [numMarkers, numLines], markers fastest; y [numLines].
// Fills MarkerIndex, LOD, GroupMean and GroupFreq of records 1..numMarkers
// of a table made by AllocMarkerTests.
void SingleMarkerScan(int numMarkers, int numLines, const Array<char, 2>& scanGenotype, const float* y,
                      MarkerTestTable& table);

}  // namespace tov
