#pragma once
// Determinant of a real square matrix by LU factorisation with partial
// pivoting.

#include "core/Array.h"

namespace tov {

// Determinant of the leading N by N block of A.  The product of the pivots
// is carried as a mantissa in [0.5, 1) and a power of two, so that no
// partial product overflows.  A value too large for a float is returned as
// AMACH(2); a singular matrix (a zero pivot) and a value below the smallest
// normal float give 0.0.
float DET(int N, const Array<float, 2>& A);

}  // namespace tov
