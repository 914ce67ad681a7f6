#pragma once
// The swept matrix of a stepwise selection, formed only where the selection
// reads it.
//
// A selection on NVAR variables reads the diagonal, the row of the
// dependent variable and the rows of the variables it pivots on; it never
// reads the rest of the triangle.  Each element of the triangle takes its
// own sequence of sweep updates, in step order, and each update reads only
// the element itself, two elements of the pivot's row before that step, the
// pivot and the swept/not-swept states.  So the diagonal and the dependent
// row are kept up to date at every step, and the row of a pivot is formed
// when the step needs it: from the input row (or from the row as it stood
// at the variable's own last pivot), replaying every later sweep on it in
// order.  Every element so formed holds exactly the bits that a sweep of
// the whole triangle would have left in it.  The cost of a step is that of
// replaying one row, about steps x NVAR, and the memory one row per step.
//
// Element {i, j} means element (min(i, j), max(i, j)) of the upper
// triangle; indices are 1-based.

#include <vector>

#include "core/Array.h"

namespace tov {

// The symmetric input matrix, a row at a time.
class SymmetricRows {
 public:
  virtual ~SymmetricRows() = default;
  // diagonal(1..n): element {i, i}.
  virtual void Diagonal(Array<float, 1>& diagonal) const = 0;
  // row(1..n): element {r, j}.
  virtual void Row(int r, Array<float, 1>& row) const = 0;
};

class SweptMatrix {
 public:
  // Starts from the input unswept, every SWEPT -1.0.  idep is the variable
  // whose row is kept up to date.
  SweptMatrix(const SymmetricRows& input, int nvar, int idep);

  float Diagonal(int i) const { return diagonal_(i); }
  // The input diagonal, the yardstick of the tolerance test.
  float Scale(int i) const { return scale_(i); }
  float Swept(int i) const { return swept_(i); }
  // Element (i, IDEP) of the whole swept matrix: symmetric between two
  // variables on the same side of the sweep, antisymmetric across it.
  float WithDependent(int i) const {
    return i <= idep_ ? dependent_(i) : swept_(i) * swept_(idep_) * dependent_(i);
  }

  // Sweeps variable k in (SWEPT(k) at most 0) or out, as GSWEP sweeps the
  // whole triangle.  On the way in a
  // pivot at or below tol * SCALE(k), or one that would leave a swept
  // variable i with a diagonal of its inverse below tol * SCALE(i), is
  // refused: row k becomes 0.0, diagonal included, SWEPT(k) stays, and
  // nothing tells the caller.
  void Sweep(int k, float tol);

  // row(1..n) = element {r, j} as it stands.
  void CurrentRow(int r, Array<float, 1>& row) const;

 private:
  // One sweep: the pivot, 1.0 / its diagonal, and its row before the sweep
  // (empty for a refused pivot, which only zeroes row k).
  struct Pivot {
    int k;
    bool refused;
    float d;
    Array<float, 1> row;
  };

  // SWEPT as it stood before history step `step` (0-based).
  void SweptBefore(std::size_t step, Array<float, 1>& swept) const;

  const SymmetricRows& input_;
  const int nvar_;
  const int idep_;
  Array<float, 1> scale_;
  Array<float, 1> swept_;
  Array<float, 1> diagonal_;
  Array<float, 1> dependent_;  // row IDEP
  std::vector<Pivot> history_;
  // Per variable, 1 + its last step in history_, 0 before its first.
  std::vector<std::size_t> lastPivot_;
};

}  // namespace tov
