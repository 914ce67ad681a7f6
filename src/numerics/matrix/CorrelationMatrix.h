#pragma once
// All pairwise correlations of a set of columns, each exactly the value of
// CorrelationOfValid on that pair (missing values skipped pair by pair).

#include "core/Array.h"

namespace tov {

// columns [n, k]; returns R [k, k] with R(i, j) = CorrelationOfValid of
// columns i and j, the diagonal included.  Correlation is symmetric to the
// bit, so each pair is summed once.
Array<float, 2> CorrelationMatrixOfValid(const Array<float, 2>& columns);

}  // namespace tov
