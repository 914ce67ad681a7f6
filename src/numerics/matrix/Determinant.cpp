#include "numerics/matrix/Determinant.h"

#include <cmath>
#include <utility>

#include "numerics/basic/Basic.h"

namespace tov {

float DET(int N, const Array<float, 2>& A) {
  const int n = N;
  Array<float, 2> lu(n, n);  // the factors overwrite a copy
  for (int j = 1; j <= n; ++j)
    for (int i = 1; i <= n; ++i) lu(i, j) = A(i, j);
  float mantissa = 1.0f;
  int exponent = 0;
  for (int c = 1; c <= n; ++c) {
    int pivot = c;
    for (int r = c + 1; r <= n; ++r)
      if (std::fabs(lu(r, c)) > std::fabs(lu(pivot, c))) pivot = r;
    if (lu(pivot, c) == 0.0f) return 0.0f;
    if (pivot != c) {
      for (int j = c; j <= n; ++j) std::swap(lu(c, j), lu(pivot, j));
      mantissa = -mantissa;
    }
    // Both factors in [0.5, 1): their product neither overflows nor
    // underflows, whatever the size of the pivot.
    int pivotExponent = 0;
    int productExponent = 0;
    const float pivotMantissa = std::frexp(lu(c, c), &pivotExponent);
    mantissa = std::frexp(mantissa * pivotMantissa, &productExponent);
    exponent += pivotExponent + productExponent;
    for (int r = c + 1; r <= n; ++r) {
      const float factor = lu(r, c) / lu(c, c);
      for (int j = c + 1; j <= n; ++j) lu(r, j) = lu(r, j) - factor * lu(c, j);
    }
  }
  // ln(AMACH(2)) / ln(2): the largest power of two below the float range.
  if (static_cast<float>(exponent) > 88.72284f / std::log(2.0f)) return AMACH(2);
  const float value = std::ldexp(mantissa, exponent);
  return std::fabs(value) < AMACH(1) ? 0.0f : value;
}

}  // namespace tov
