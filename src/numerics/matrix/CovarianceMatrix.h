#pragma once
// The matrix of covariances of every pair of columns of a data matrix, a
// row at a time, each element exactly as ColumnCovariance gives it for that
// pair (divisor N, missing values skipped pairwise, the diagonal included).
// The columns are held packed, and those that are small integer codes less
// an offset as one byte a value; a row costs numCols x numObs products, and
// the square matrix is never formed.

#include <cstdint>
#include <vector>

#include "core/Array.h"

namespace tov {

class CovarianceRows {
 public:
  CovarianceRows(int numObs, int numCols);

  // Columns 1..numCoded hold real(code) - offsets[j - 1], with the code of
  // column j and observation l at codes[(j - 1) + (l - 1) * numCoded]; the
  // difference is formed in 32 bits, as the caller would form it.
  void SetCodedColumns(int numCoded, const std::int32_t* codes, const float* offsets);

  // values [numObs]: column j in observation order.
  void SetColumn(int j, const float* values);

  // row [numCols]: C(i, j) for every j.  Every column is set before.
  void Row(int i, Array<float, 1>& row) const;

  // diagonal [numCols]: C(j, j) for every j.
  void Diagonal(Array<float, 1>& diagonal) const;

 private:
  // values [numObs]: column j as it was set.
  void ColumnOf(int j, std::vector<float>& values) const;
  // Sums over observations, in order, of x(l) times column j (coded
  // columns in panels of lanes, the others one by one).
  void ProductSums(const float* x, std::vector<float>& sums) const;
  float Covariance(int i, int j, float productSum) const;

  int numObs_;
  int numCols_;
  int numBlocks_;
  // Blocks of 32 columns of codes, interleaved by observation; the places
  // of columns held as reals stay 0.
  std::vector<std::int8_t> codes_;
  // The offset of each column of the blocks (index j - 1; 0.0 for a column
  // held as reals).
  std::vector<float> offset_;
  // Per column (index j): where its reals start in reals_ (-1 for a coded
  // column), its mean over all observations, and whether it has a missing
  // value, which sends its pairs the pairwise way.
  std::vector<std::int64_t> realsAt_;
  std::vector<float> reals_;
  std::vector<float> mean_;
  std::vector<char> hasMissing_;
};

}  // namespace tov
