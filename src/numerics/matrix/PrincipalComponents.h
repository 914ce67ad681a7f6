#pragma once
// Eigenanalysis of a covariance or correlation matrix.

namespace tov {

// Eigenvalues of the symmetric nvar x nvar matrix cov (first index fastest,
// the lower triangle is read) into eigenvalue[0 .. nvar - 1], descending.
// The degrees of freedom and the correlation switch describe the input
// for statistics of the components, which this routine does not form.
// Returns false, with eigenvalue untouched, when a diagonal element is
// negative or the iteration fails.  A matrix with an element that is not a
// finite number gives NaN eigenvalues.  A clearly negative smallest
// eigenvalue raises a warning but is returned as it is.
bool PRINC(int degreesOfFreedom, int nvar, const float* cov, bool correlationInput, float* eigenvalue);

}  // namespace tov
