#pragma once
// Ordinary least squares with an intercept, by Householder reflections on
// the design matrix with its column of ones first.

#include "core/Array.h"

namespace tov {

// Fits y [n] on the columns of X [n, k] and an intercept.  B, when given,
// receives k + 1 coefficients: B[0] the intercept, B[c] that of column c.
// A column that depends linearly on those before it (within a relative
// tolerance) gets coefficient 0.0 and takes no part in the fit.  SST is the
// sum of squares of y about its mean, SSE the residual sum of squares.
void RLSE(const float* y, const Array<float, 2>& X, float* B, float& SST, float& SSE);

}  // namespace tov
