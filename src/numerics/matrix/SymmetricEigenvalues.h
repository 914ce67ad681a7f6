#pragma once
// Eigenvalues of a real symmetric matrix in single precision.

#include "core/Array.h"

namespace tov {

// Eigenvalues of the symmetric n x n matrix a, of which the lower triangle
// is read and then overwritten, into eigenvalue(1..n), unordered.  Returns
// false if the QL iteration did not converge; eigenvalue then holds
// nothing useful.
bool SymmetricEigenvalues(int n, Array<float, 2>& a, Array<float, 1>& eigenvalue);

}  // namespace tov
