#include "numerics/matrix/PrincipalComponents.h"

#include <cmath>
#include <utility>

#include "core/Array.h"
#include "numerics/basic/Basic.h"
#include "numerics/basic/ErrorPolicy.h"
#include "numerics/matrix/SymmetricEigenvalues.h"

namespace tov {
namespace {

// Ascending by repeated selection of the smallest, then reversed.
void SortDescending(int n, Array<float, 1>& value) {
  for (int i = 1; i < n; ++i) {
    int smallest = i;
    for (int j = i + 1; j <= n; ++j)
      if (value(j) < value(smallest)) smallest = j;
    std::swap(value(i), value(smallest));
  }
  for (int i = 1, j = n; i < j; ++i, --j) std::swap(value(i), value(j));
}

// A negative smallest eigenvalue is only rounding noise when it is tiny
// beside the largest; otherwise the matrix is not nonnegative definite.
bool ClearlyNegative(int n, const Array<float, 1>& value) {
  const float first = value(1);
  const float last = value(n);
  if (!(last < 0.0f)) return false;
  return n == 1 || !(first > 0.0f) || last < -1000.0f * first * AMACH(4);
}

}  // namespace

bool PRINC(int /*degreesOfFreedom*/, int nvar, const float* cov, bool /*correlationInput*/, float* eigenvalue) {
  const ArrayView<const float, 2> matrix(cov, nvar, nvar);
  for (int i = 1; i <= nvar; ++i) {
    if (matrix(i, i) < 0.0f) {
      RaiseError(SeverityTerminal, "PRINC",
                 FillMessage("COV(%(I1),%(I1)) = %(R1).  All diagonal elements of COV must be nonnegative.", {i},
                             {matrix(i, i)}));
      return false;
    }
  }

  Array<float, 2> work(nvar, nvar);
  bool finite = true;
  for (int j = 1; j <= nvar; ++j) {
    for (int i = j; i <= nvar; ++i) {
      work(i, j) = matrix(i, j);
      finite = finite && std::isfinite(matrix(i, j));
    }
  }
  Array<float, 1> value(nvar);
  if (!finite) {
    // The reduction would only spread the NaN; no iteration converges on it.
    value.Fill(AMACH(6));
  } else if (!SymmetricEigenvalues(nvar, work, value)) {
    RaiseError(SeverityFatal, "PRINC", "The iteration for the eigenvalues did not converge.");
    return false;
  }
  SortDescending(nvar, value);
  for (int i = 1; i <= nvar; ++i) eigenvalue[i - 1] = value(i);

  if (ClearlyNegative(nvar, value)) {
    RaiseError(SeverityWarning, "PRINC",
               FillMessage("EVAL(%(I1)) = %(R1).  One or more eigenvalues much less than zero are computed.  The "
                           "matrix COV is not nonnegative definite.  In order to continue computations of STD and A, "
                           "these eigenvalues are treated as zero.",
                           {nvar}, {value(nvar)}));
  }
  return true;
}

}  // namespace tov
