#include "mapping/SelectedRSquare.h"

#include <cmath>

#include "mapping/MarkerCode.h"
#include "numerics/basic/Basic.h"
#include "numerics/matrix/Determinant.h"
#include "numerics/basic/ErrorPolicy.h"
#include "numerics/matrix/LeastSquares.h"
#include "numerics/stepwise/Rstep.h"

namespace tov {

namespace {

int CountFlagged(const MarkerTestTable& table) {
  int count = 0;
  for (int m = 1; m <= table.NumTests; ++m) count += table.Test(m).Significant != LogicalFalse;
  return count;
}

// Each column less its mean, the sum taken in order and divided by n.
void Centre(int n, float* column) {
  float sum = 0.0f;
  for (int i = 0; i < n; ++i) sum = sum + column[i];
  const float mean = sum / static_cast<float>(n);
  for (int i = 0; i < n; ++i) column[i] = column[i] - mean;
}

float ZeroIfNaN(float value) { return std::isnan(value) ? 0.0f : value; }

}  // namespace

void DesignOfSelected(int numLines, const Array<char, 2>& scanGenotype, const MarkerTestTable& table,
                      Array<float, 2>& X) {
  X.Allocate(numLines, CountFlagged(table));
  int k = 0;
  for (int m = 1; m <= table.NumTests; ++m) {
    if (table.Test(m).Significant == LogicalFalse) continue;
    ++k;
    for (int l = 1; l <= numLines; ++l) X(l, k) = static_cast<float>(MarkerCode(scanGenotype(m, l)));
  }
}

void RegressionSS(const float* y, const Array<float, 2>& X, float& SST, float& SSE) {
  ERSET(0, 0, 0);
  const int n = static_cast<int>(X.Extent(1));
  const int k = static_cast<int>(X.Extent(2));
  // The centred columns, y last.
  Array<float, 2> centred(n, k + 1);
  for (int c = 1; c <= k; ++c)
    for (int l = 1; l <= n; ++l) centred(l, c) = X(l, c);
  for (int l = 1; l <= n; ++l) centred(l, k + 1) = y[l - 1];
  for (int c = 1; c <= k + 1; ++c) Centre(n, &centred(1, c));

  // Variances by N - 1 on the diagonal, covariances by N elsewhere: the
  // mixture decides the branch below and is kept as it is.
  Array<float, 2> C(k + 1, k + 1);
  for (int i = 1; i <= k + 1; ++i)
    for (int j = 1; j <= k + 1; ++j)
      C(i, j) = i == j ? ColumnVariance(n, &centred(1, i)) : ColumnCovariance(n, &centred(1, i), &centred(1, j));
  if (std::fabs(DET(k, C)) <= 0.0001f) {
    RstepOptions options;
    options.ISTEP = 0;
    options.PIN = 0.1f;
    options.POUT = 0.2f;
    StepAovTable aov;
    Array<float, 2> coef(k, 5);
    RSTEP(k + 1, C, n, options, aov, coef);
    SST = aov(6);
    SSE = aov(5);
  } else {
    Array<float, 2> design(n, k);
    for (int c = 1; c <= k; ++c)
      for (int l = 1; l <= n; ++l) design(l, c) = centred(l, c);
    RLSE(&centred(1, k + 1), design, nullptr, SST, SSE);
  }
  SST = ZeroIfNaN(SST);
  SSE = ZeroIfNaN(SSE);
}

float SelectedRSquare(int numLines, const Array<char, 2>& scanGenotype, const float* y, const MarkerTestTable& table) {
  if (CountFlagged(table) == 0) return 0.0f;
  Array<float, 2> X;
  DesignOfSelected(numLines, scanGenotype, table, X);
  float SST = 0.0f;
  float SSE = 0.0f;
  RegressionSS(y, X, SST, SSE);
  return (SST - SSE) / SST;
}

}  // namespace tov
