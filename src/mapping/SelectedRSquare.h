#pragma once
// The share of the phenotypic variance that the flagged markers explain
// together, from a regression of the line values on their codes.

#include "mapping/MarkerTest.h"
#include "core/Array.h"

namespace tov {

// X [numLines, flagged markers]: column k holds the codes, as reals, of the
// k-th flagged marker in table order.
void DesignOfSelected(int numLines, const Array<char, 2>& scanGenotype, const MarkerTestTable& table,
                      Array<float, 2>& X);

// Corrected total and error sums of squares of y [N] on the K columns of
// X [N, K] with an intercept.  The columns and y are centred; when the
// matrix of their variances (divisor N - 1) and covariances (divisor N)
// has a leading K by K determinant of at most 0.0001 in magnitude, a
// stepwise selection on that matrix decides which columns count, and its
// total and error sums of squares are returned; otherwise least squares on
// the data.  A NaN comes back as 0.0.
void RegressionSS(const float* y, const Array<float, 2>& X, float& SST, float& SSE);

// (SST - SSE) / SST of y on the columns of X, from RegressionSS.
float RSquareOfDesign(const float* y, const Array<float, 2>& X);

// (SST - SSE) / SST of the flagged markers, a fraction; 0.0 when none is
// flagged.
float SelectedRSquare(int numLines, const Array<char, 2>& scanGenotype, const float* y, const MarkerTestTable& table);

}  // namespace tov
