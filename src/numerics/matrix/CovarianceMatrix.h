#pragma once
// The matrix of covariances of every pair of columns of a data matrix, each
// element exactly as ColumnCovariance gives it for that pair (divisor N,
// missing values skipped pairwise, the diagonal included).

#include "core/Array.h"

namespace tov {

// columns [numObs, numCols], observations fastest; C [numCols, numCols].
void CovarianceOfColumns(int numObs, int numCols, const Array<float, 2>& columns, Array<float, 2>& C);

}  // namespace tov
