#pragma once
// The share of the phenotypic variance that the flagged pairs explain
// together, from a regression of the line values on the codes of their
// markers and the products of the codes.

#include "core/Array.h"
#include "mapping/PairTest.h"

namespace tov {

// X [numLines, 3 s] for s flagged pairs: for the k-th flagged pair in table
// order, column k holds the codes (as reals) of its first marker, column
// s + k those of its second, column 2 s + k their product line by line.
void DesignOfSelectedPairs(int numLines, const Array<char, 2>& scanGenotype, const PairTestTable& table,
                           Array<float, 2>& X);

// (SST - SSE) / SST of that regression (RegressionSS), a fraction; 0.0
// when no pair is flagged.
float SelectedPairRSquare(int numLines, const Array<char, 2>& scanGenotype, const float* y,
                          const PairTestTable& table);

}  // namespace tov
