#include "numerics/matrix/LeastSquares.h"

#include <cmath>
#include <vector>

#include "numerics/basic/Basic.h"

namespace tov {
namespace {

float SumOfSquares(int first, int last, const float* x) {
  float sum = 0.0f;
  for (int i = first; i <= last; ++i) sum = sum + x[i] * x[i];
  return sum;
}

}  // namespace

void RLSE(const float* y, const Array<float, 2>& X, float* B, float& SST, float& SSE) {
  const int n = static_cast<int>(X.Extent(1));
  const int k = static_cast<int>(X.Extent(2));
  const int p = k + 1;
  // A column whose part orthogonal to the earlier ones is this small,
  // relative to its own length, is taken as dependent on them.
  const float tolerance = 100.0f * AMACH(4);

  // Work on 0-based copies: a(:, 0) the ones, a(:, c) column c of X.
  std::vector<std::vector<float>> a(static_cast<std::size_t>(p), std::vector<float>(static_cast<std::size_t>(n)));
  for (int i = 0; i < n; ++i) a[0][i] = 1.0f;
  for (int c = 1; c <= k; ++c)
    for (int i = 0; i < n; ++i) a[c][i] = X(i + 1, c);
  std::vector<float> r(y, y + n);

  // rowOf[c]: the row of R that holds the pivot of column c, -1 when the
  // column is dependent.
  std::vector<int> rowOf(static_cast<std::size_t>(p), -1);
  int rank = 0;
  for (int c = 0; c < p; ++c) {
    if (rank >= n) break;
    const float length = std::sqrt(SumOfSquares(0, n - 1, a[c].data()));
    const float norm = std::sqrt(SumOfSquares(rank, n - 1, a[c].data()));
    if (!(norm > tolerance * length)) continue;
    // Reflect rows rank.. so that column c has norm * -sign in its pivot:
    // H = I - v v' / (norm * (norm + |x0|)), v = x - alpha e.
    const float x0 = a[c][rank];
    const float alpha = x0 < 0.0f ? norm : -norm;
    const float beta = 1.0f / (norm * (norm + std::fabs(x0)));
    a[c][rank] = x0 - alpha;
    const float* v = a[c].data();
    auto reflect = [&](float* z) {
      float dot = 0.0f;
      for (int i = rank; i < n; ++i) dot = dot + v[i] * z[i];
      const float f = beta * dot;
      for (int i = rank; i < n; ++i) z[i] = z[i] - f * v[i];
    };
    for (int c2 = c + 1; c2 < p; ++c2) reflect(a[c2].data());
    reflect(r.data());
    a[c][rank] = alpha;
    rowOf[c] = rank;
    ++rank;
  }

  SSE = SumOfSquares(rank, n - 1, r.data());

  if (B != nullptr) {
    for (int c = p - 1; c >= 0; --c) {
      if (rowOf[c] < 0) {
        B[c] = 0.0f;
        continue;
      }
      const int row = rowOf[c];
      float sum = r[row];
      for (int c2 = c + 1; c2 < p; ++c2) sum = sum - a[c2][row] * B[c2];
      B[c] = sum / a[c][row];
    }
  }

  float ySum = 0.0f;
  for (int i = 0; i < n; ++i) ySum = ySum + y[i];
  const float ybar = ySum / static_cast<float>(n);
  SST = 0.0f;
  for (int i = 0; i < n; ++i) SST = SST + (y[i] - ybar) * (y[i] - ybar);
}

}  // namespace tov
