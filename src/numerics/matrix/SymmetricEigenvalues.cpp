// Householder reduction to tridiagonal form followed by the QL method with
// implicit shifts, all in 32-bit reals.  Only eigenvalues are wanted, so no
// transformations are accumulated.

#include "numerics/matrix/SymmetricEigenvalues.h"

#include <cmath>

namespace tov {
namespace {

constexpr int kMaxIterations = 30;

// Reduces the lower triangle of a to a symmetric tridiagonal matrix with
// diagonal d(1..n) and subdiagonal e(2..n); e(1) is 0.  Row i is
// annihilated left of its subdiagonal by a reflection I - u u' / h, with u
// kept in row i of a.
void Tridiagonalise(int n, Array<float, 2>& a, Array<float, 1>& d, Array<float, 1>& e) {
  for (int i = n; i >= 2; --i) {
    const int l = i - 1;
    float scale = 0.0f;
    for (int k = 1; k <= l; ++k) scale += std::fabs(a(i, k));
    if (l == 1 || scale == 0.0f) {
      e(i) = a(i, l);
      continue;
    }
    // Scaling keeps the squares in range.
    float h = 0.0f;
    for (int k = 1; k <= l; ++k) {
      a(i, k) = a(i, k) / scale;
      h += a(i, k) * a(i, k);
    }
    float f = a(i, l);
    float g = f >= 0.0f ? -std::sqrt(h) : std::sqrt(h);
    e(i) = scale * g;
    h -= f * g;
    a(i, l) = f - g;
    // p = A u / h into e(1..l), and K = u'p / 2h.
    f = 0.0f;
    for (int j = 1; j <= l; ++j) {
      g = 0.0f;
      for (int k = 1; k <= j; ++k) g += a(j, k) * a(i, k);
      for (int k = j + 1; k <= l; ++k) g += a(k, j) * a(i, k);
      e(j) = g / h;
      f += e(j) * a(i, j);
    }
    const float hh = f / (h + h);
    // A := A - u q' - q u' with q = p - K u, on the lower triangle.
    for (int j = 1; j <= l; ++j) {
      f = a(i, j);
      g = e(j) - hh * f;
      e(j) = g;
      for (int k = 1; k <= j; ++k) a(j, k) -= f * e(k) + g * a(i, k);
    }
  }
  e(1) = 0.0f;
  for (int i = 1; i <= n; ++i) d(i) = a(i, i);
}

// Diagonalises the tridiagonal matrix (d, e) by QL sweeps with Wilkinson's
// shift; d(1..n) ends as the eigenvalues.  e(i) is the element (i, i + 1)
// on entry to the sweeps.
bool DiagonaliseTridiagonal(int n, Array<float, 1>& d, Array<float, 1>& e) {
  for (int i = 2; i <= n; ++i) e(i - 1) = e(i);
  e(n) = 0.0f;
  for (int l = 1; l <= n; ++l) {
    int iterations = 0;
    while (true) {
      // The first negligible subdiagonal element at or after l splits off
      // a block l..m.
      int m = l;
      for (; m < n; ++m) {
        const float dd = std::fabs(d(m)) + std::fabs(d(m + 1));
        if (std::fabs(e(m)) + dd == dd) break;
      }
      if (m == l) break;
      if (++iterations > kMaxIterations) return false;
      float g = (d(l + 1) - d(l)) / (2.0f * e(l));
      float r = std::hypot(g, 1.0f);
      g = d(m) - d(l) + e(l) / (g + std::copysign(r, g));
      float s = 1.0f;
      float c = 1.0f;
      float p = 0.0f;
      bool underflow = false;
      for (int i = m - 1; i >= l; --i) {
        const float f = s * e(i);
        const float b = c * e(i);
        r = std::hypot(f, g);
        e(i + 1) = r;
        if (r == 0.0f) {
          // The rotation vanished: deflate here and sweep again.
          d(i + 1) -= p;
          e(m) = 0.0f;
          underflow = true;
          break;
        }
        s = f / r;
        c = g / r;
        g = d(i + 1) - p;
        r = (d(i) - g) * s + 2.0f * c * b;
        p = s * r;
        d(i + 1) = g + p;
        g = c * r - b;
      }
      if (underflow) continue;
      d(l) -= p;
      e(l) = g;
      e(m) = 0.0f;
    }
  }
  return true;
}

}  // namespace

bool SymmetricEigenvalues(int n, Array<float, 2>& a, Array<float, 1>& eigenvalue) {
  Array<float, 1> subdiagonal(n);
  Tridiagonalise(n, a, eigenvalue, subdiagonal);
  return DiagonaliseTridiagonal(n, eigenvalue, subdiagonal);
}

}  // namespace tov
