#pragma once
// The matrix of covariances of every pair of columns of a data matrix, a
// row at a time, each element exactly as ColumnCovariance gives it for that
// pair (divisor N, missing values skipped pairwise, the diagonal included).
// The columns are held packed; a row costs numCols x numObs products, and
// the square matrix is never formed.

#include <vector>

#include "core/Array.h"

namespace tov {

class CovarianceRows {
 public:
  CovarianceRows(int numObs, int numCols);

  // values [numObs]: column j (1..numCols), in observation order.  Every
  // column is set before a row is asked for.
  void SetColumn(int j, const float* values);

  // row [numCols]: C(i, j) for every j.
  void Row(int i, Array<float, 1>& row) const;

  // diagonal [numCols]: C(j, j) for every j.
  void Diagonal(Array<float, 1>& diagonal) const;

 private:
  // values [numObs]: column j as it was set.
  void ColumnOf(int j, std::vector<float>& values) const;
  // C(i, j) when column i or j has a missing value.
  float PairwiseCovariance(int i, int j) const;

  int numObs_;
  int numCols_;
  int numPanels_;
  std::size_t panelSize_;
  // Panels of 8 columns, interleaved by observation.
  std::vector<float> panels_;
  // Per column (index j), its mean over all observations, and whether it
  // has a missing value, which sends its pairs the pairwise way.
  std::vector<float> mean_;
  std::vector<char> hasMissing_;
};

}  // namespace tov
