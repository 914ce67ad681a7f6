#include "numerics/matrix/CovarianceMatrix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include "numerics/basic/Basic.h"

namespace tov {
namespace {

bool SameBits(float a, float b) {
  std::uint32_t x, y;
  std::memcpy(&x, &a, sizeof x);
  std::memcpy(&y, &b, sizeof y);
  return x == y;
}

// The whole matrix, a row at a time, and its diagonal beside it.  The
// first numCoded columns are given as codes [numCoded, numObs] less the
// offsets, the others as reals.
Array<float, 2> MatrixOfRows(int numObs, int numCols, const Array<float, 2>& columns, Array<float, 1>& diagonal,
                             int numCoded = 0, const std::int32_t* codes = nullptr, const float* offsets = nullptr) {
  CovarianceRows rows(numObs, numCols);
  rows.SetCodedColumns(numCoded, codes, offsets);
  for (int j = numCoded + 1; j <= numCols; ++j) rows.SetColumn(j, numObs > 0 ? &columns(1, j) : nullptr);
  Array<float, 2> c(numCols, numCols);
  Array<float, 1> row;
  for (int i = 1; i <= numCols; ++i) {
    rows.Row(i, row);
    for (int j = 1; j <= numCols; ++j) c(i, j) = row(j);
  }
  rows.Diagonal(diagonal);
  return c;
}

TEST(CovarianceRows, DividesByTheNumberOfObservations) {
  const float data[3][5] = {{1, 2, 3, 4, 6}, {2, 1, 0, 1, 1}, {0.5f, -1, 2, 3, -0.25f}};
  Array<float, 2> columns(5, 3);
  for (int j = 1; j <= 3; ++j)
    for (int l = 1; l <= 5; ++l) columns(l, j) = data[j - 1][l - 1];
  Array<float, 1> diagonal;
  const Array<float, 2> c = MatrixOfRows(5, 3, columns, diagonal);
  // numpy 1.24: np.cov(data, bias=True).
  const float expected[3][3] = {{2.96f, -0.4f, 0.28f}, {-0.4f, 0.4f, -0.3f}, {0.28f, -0.3f, 2.14f}};
  for (int i = 1; i <= 3; ++i)
    for (int j = 1; j <= 3; ++j) EXPECT_NEAR(c(i, j), expected[i - 1][j - 1], 2e-6f) << i << "," << j;
}

// Columns of uneven sizes and offsets, more of them than one block holds
// and not a multiple of it, with a missing code in one column and a NaN in
// another, and 21 columns of codes less an offset, one of them with a code
// beyond a byte: every element must be the very float of ColumnCovariance,
// on the diagonal too.
TEST(CovarianceRows, EveryElementIsBitIdenticalToColumnCovariance) {
  const int numObs = 53;
  const int numCols = 37;
  Array<float, 2> columns(numObs, numCols);
  std::uint32_t state = 2024u;
  for (int j = 1; j <= numCols; ++j)
    for (int l = 1; l <= numObs; ++l) {
      state = state * 1664525u + 1013904223u;
      columns(l, j) = static_cast<float>(state >> 9) / 8388608.0f * static_cast<float>(j) - 0.3f * static_cast<float>(j);
    }
  columns(7, 25) = -9999.0f;
  columns(40, 30) = std::numeric_limits<float>::quiet_NaN();
  const int numCoded = 21;
  Array<std::int32_t, 2> codes(numCoded, numObs);
  Array<float, 1> offsets(numCoded);
  for (int j = 1; j <= numCoded; ++j) {
    offsets(j) = static_cast<float>(j) / 7.0f - 1.0f;
    for (int l = 1; l <= numObs; ++l) {
      state = state * 1664525u + 1013904223u;
      codes(j, l) = static_cast<std::int32_t>(state >> 30) - 1;
      columns(l, j) = static_cast<float>(codes(j, l)) - offsets(j);
    }
  }
  codes(9, 3) = 300;
  columns(3, 9) = 300.0f - offsets(9);
  Array<float, 1> diagonal;
  const Array<float, 2> c = MatrixOfRows(numObs, numCols, columns, diagonal, numCoded, codes.Data(), offsets.Data());
  for (int i = 1; i <= numCols; ++i) EXPECT_TRUE(SameBits(diagonal(i), c(i, i))) << i;
  for (int i = 1; i <= numCols; ++i)
    for (int j = 1; j <= numCols; ++j) {
      const float direct = ColumnCovariance(numObs, &columns(1, i), &columns(1, j));
      EXPECT_TRUE(SameBits(c(i, j), direct)) << i << "," << j << ": " << c(i, j) << " vs " << direct;
    }
  // Missing values, NaN among them, are skipped pair by pair.
  EXPECT_FALSE(std::isnan(c(25, 6)));
  EXPECT_FALSE(std::isnan(c(30, 1)));
}

TEST(CovarianceRows, NoObservationsGiveNaN) {
  Array<float, 2> columns(0, 2);
  Array<float, 1> diagonal;
  const Array<float, 2> c = MatrixOfRows(0, 2, columns, diagonal);
  for (float v : c) EXPECT_TRUE(std::isnan(v));
  for (float v : diagonal) EXPECT_TRUE(std::isnan(v));
}

}  // namespace
}  // namespace tov
