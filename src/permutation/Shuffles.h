#pragma once
// The shuffled line means of one shuffle loop, drawn before any of them is
// scanned.  Scans draw nothing, so drawing the loop's permutations first
// leaves the process-wide stream exactly where a loop that draws and scans
// in turn would leave it, and the shuffles can then be scanned in any
// order or side by side.

#include "core/Array.h"

namespace tov {

// Column k of the result [numLines, times] is PermValue of shuffle k:
// RNPER draws PermOrder, and PermValue(i) = lineMean(PermOrder(i)) by
// PERMU with path 1.  Shuffles are drawn in order k = 1 .. times.  With
// numLines 0 nothing is drawn and the columns are empty.
Array<float, 2> DrawShuffles(int numLines, const float* lineMean, int times);

}  // namespace tov
