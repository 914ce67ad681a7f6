#include "numerics/stepwise/SweptMatrix.h"

namespace tov {
namespace {

// The update that one sweep with pivot k (not refused; d = 1.0 / pivot)
// gives element {r, j} of row r, r != k, for j = 1..n.  y holds row k and
// x row r before the sweep, s the SWEPT states before it.  Each element
// takes the expression, operand for operand, that the sweep of the upper
// triangle gives element (a, b) = (min(r, j), max(r, j)):
//   b < k:      a(a, b) + SWEPT(b) * w(a) * SWEPT(k) * a(b, k)
//   otherwise:  a(a, b) + w(a) * a(k, b)
// with w(a) = -d * a(a, k) for a < k and
// w(a) = SWEPT(a) * (-(d * SWEPT(k))) * a(k, a) for a > k; element {r, k}
// is multiplied by -d (r < k) or d (r > k).  Arrays are 0-based here.
// Built for AVX2 as well where it exists: the lanes round as scalars do.
__attribute__((target_clones("avx2", "default"))) void ReplaySweep(int n, int k, float d, const float* __restrict y,
                                                                    const float* __restrict s, int r,
                                                                    float* __restrict x) {
  const float sk = s[k - 1];
  const float sr = s[r - 1];
  const float xk = x[k - 1];
  if (r < k) {
    const float wr = -d * xk;
    for (int j = 1; j < r; ++j) x[j - 1] = x[j - 1] + sr * (-d * y[j - 1]) * sk * xk;
    x[r - 1] = x[r - 1] + sr * wr * sk * xk;
    for (int j = r + 1; j < k; ++j) x[j - 1] = x[j - 1] + s[j - 1] * wr * sk * y[j - 1];
    x[k - 1] = xk * -d;
    for (int j = k + 1; j <= n; ++j) x[j - 1] = x[j - 1] + wr * y[j - 1];
  } else {
    const float wr = sr * (-(d * sk)) * xk;
    for (int j = 1; j < k; ++j) x[j - 1] = x[j - 1] + -d * y[j - 1] * xk;
    x[k - 1] = xk * d;
    for (int j = k + 1; j < r; ++j) x[j - 1] = x[j - 1] + s[j - 1] * (-(d * sk)) * y[j - 1] * xk;
    x[r - 1] = x[r - 1] + wr * xk;
    for (int j = r + 1; j <= n; ++j) x[j - 1] = x[j - 1] + wr * y[j - 1];
  }
}

// The same sweep on the diagonal, element {i, i} for every i != k.
__attribute__((target_clones("avx2", "default"))) void SweepDiagonal(int n, int k, float d, const float* __restrict y,
                                                                      const float* __restrict s,
                                                                      float* __restrict diagonal) {
  const float sk = s[k - 1];
  for (int i = 1; i < k; ++i) diagonal[i - 1] = diagonal[i - 1] + s[i - 1] * (-d * y[i - 1]) * sk * y[i - 1];
  for (int i = k + 1; i <= n; ++i)
    diagonal[i - 1] = diagonal[i - 1] + s[i - 1] * (-(d * sk)) * y[i - 1] * y[i - 1];
}

// Row r as the sweep with pivot r itself leaves it.
void SweepOwnRow(int r, float d, Array<float, 1>& row) {
  for (int j = 1; j < r; ++j) row(j) = row(j) * -d;
  row(r) = d;
  for (int j = r + 1; j <= static_cast<int>(row.Size()); ++j) row(j) = row(j) * d;
}

}  // namespace

SweptMatrix::SweptMatrix(const SymmetricRows& input, int nvar, int idep)
    : input_(input), nvar_(nvar), idep_(idep), scale_(nvar), swept_(nvar), diagonal_(nvar), dependent_(nvar),
      lastPivot_(static_cast<std::size_t>(nvar) + 1, 0) {
  input_.Diagonal(diagonal_);
  scale_ = diagonal_;
  swept_.Fill(-1.0f);
  input_.Row(idep_, dependent_);
}

void SweptMatrix::SweptBefore(std::size_t step, Array<float, 1>& swept) const {
  swept.Allocate(nvar_);
  swept.Fill(-1.0f);
  for (std::size_t h = 0; h < step; ++h)
    if (!history_[h].refused) swept(history_[h].k) = -swept(history_[h].k);
}

void SweptMatrix::CurrentRow(int r, Array<float, 1>& row) const {
  if (r == idep_) {
    row = dependent_;
    return;
  }
  const std::size_t last = lastPivot_[static_cast<std::size_t>(r)];
  if (last == 0) {
    input_.Row(r, row);
  } else {
    const Pivot& own = history_[last - 1];
    if (own.refused) {
      row.Allocate(nvar_);
    } else {
      row = own.row;
      SweepOwnRow(r, own.d, row);
    }
  }
  Array<float, 1> swept;
  SweptBefore(last, swept);
  for (std::size_t h = last; h < history_.size(); ++h) {
    const Pivot& pivot = history_[h];
    if (pivot.refused) {
      row(pivot.k) = 0.0f;
      continue;
    }
    ReplaySweep(nvar_, pivot.k, pivot.d, pivot.row.Data(), swept.Data(), r, row.Data());
    swept(pivot.k) = -swept(pivot.k);
  }
}

void SweptMatrix::Sweep(int k, float tol) {
  Array<float, 1> row;
  CurrentRow(k, row);
  const float p = diagonal_(k);
  if (swept_(k) <= 0.0f) {
    // A pivot this small, or one that would leave a swept variable with
    // almost no variance of its own, would make the model collinear.
    bool refused = p <= tol * scale_(k);
    for (int i = 1; i <= nvar_ && !refused; ++i) {
      if (swept_(i) <= 0.0f) continue;
      refused = 1.0f / (row(i) * row(i) / p + diagonal_(i)) < tol * scale_(i);
    }
    if (refused) {
      diagonal_(k) = 0.0f;
      dependent_(k) = 0.0f;
      history_.push_back(Pivot{k, true, 0.0f, Array<float, 1>()});
      lastPivot_[static_cast<std::size_t>(k)] = history_.size();
      return;
    }
  }

  const float d = 1.0f / p;
  SweepDiagonal(nvar_, k, d, row.Data(), swept_.Data(), diagonal_.Data());
  diagonal_(k) = d;
  ReplaySweep(nvar_, k, d, row.Data(), swept_.Data(), idep_, dependent_.Data());
  swept_(k) = -swept_(k);
  history_.push_back(Pivot{k, false, d, std::move(row)});
  lastPivot_[static_cast<std::size_t>(k)] = history_.size();
}

}  // namespace tov
