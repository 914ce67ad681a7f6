// The matrix kernels: the lane-parallel and packed matrices must give the
// very floats of the pair routines; the rest agrees with numpy 1.24
// (linalg.det, lstsq and eigvalsh of the float32 matrices, in double
// precision).

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "numerics/basic/Basic.h"
#include "numerics/matrix/CorrelationMatrix.h"
#include "numerics/matrix/CovarianceMatrix.h"
#include "numerics/matrix/Determinant.h"
#include "numerics/matrix/LeastSquares.h"
#include "numerics/matrix/PrincipalComponents.h"
#include "support/BitCases.h"
#include "support/MatrixOf.h"
#include "support/RaisedMessages.h"

namespace tov {
namespace {

using testing_support::Bits;
using testing_support::MatrixOf;

// 37 columns (two blocks of lanes and a part): codes less an offset, one
// beyond a byte, reals around 1000 with missing values of both kinds, a
// column without values and a constant one.
TEST(Matrix, MatricesAreThoseOfThePairRoutines) {
  const auto same = [](float a, float b) { return Bits(a) == Bits(b) || (std::isnan(a) && std::isnan(b)); };
  for (const int n : {61, 0}) {
    const int k = 37, numCoded = 21;
    Array<float, 2> columns(n, k);
    Array<std::int32_t, 2> codes(numCoded, n);
    Array<float, 1> offsets(numCoded);
    std::uint32_t state = 2024u;
    for (int j = 1; j <= k; ++j)
      for (int l = 1; l <= n; ++l) {
        state = state * 1664525u + 1013904223u;
        const float v = 1000.0f + static_cast<float>(state >> 9) / 838860.8f;
        if (j > numCoded) {
          columns(l, j) = state % 10u == 0u ? NAN : state % 10u == 1u || j == 25 ? -9999.0f : j == 30 ? 1003.5f : v;
          continue;
        }
        offsets(j) = static_cast<float>(j) / 7.0f - 1.0f;
        codes(j, l) = l == 3 && j == 9 ? 300 : static_cast<std::int32_t>(state >> 30) - 1;
        columns(l, j) = static_cast<float>(codes(j, l)) - offsets(j);
      }
    CovarianceRows rows(n, k);
    rows.SetCodedColumns(numCoded, codes.Data(), offsets.Data());
    for (int j = numCoded + 1; j <= k; ++j) rows.SetColumn(j, n > 0 ? &columns(1, j) : nullptr);
    const Array<float, 2> r = CorrelationMatrixOfValid(columns);
    Array<float, 1> row, diagonal;
    rows.Diagonal(diagonal);
    for (int i = 1; i <= k; ++i) {
      rows.Row(i, row);
      EXPECT_TRUE(same(diagonal(i), row(i))) << n << " " << i;
      for (int j = 1; j <= k && n > 0; ++j) {
        EXPECT_TRUE(same(row(j), ColumnCovariance(n, &columns(1, i), &columns(1, j)))) << i << "," << j;
        EXPECT_EQ(Bits(r(i, j)), Bits(CorrelationOfValid(n, &columns(1, i), &columns(1, j)))) << i << "," << j;
      }
      for (int j = 1; j <= k && n == 0; ++j) EXPECT_TRUE(std::isnan(row(j))) << i << "," << j;
    }
    EXPECT_TRUE(n == 0 || (std::isnan(r(25, 1)) && std::isnan(r(30, 2)) && !std::isnan(row(1))));
  }
}

TEST(Matrix, Determinants) {
  const float max = std::numeric_limits<float>::max();
  const struct {
    Array<float, 2> A;
    float Det, Tolerance;
  } cases[] = {
      {MatrixOf({{2, -1, 0.5f}, {1.5f, 3, -2}, {-0.5f, 4, 1}}), 26.25f, 2e-5f},
      {MatrixOf({{0, 1, 2}, {3, 4, 5}, {6, 7, 9}}), -3.0f, 5e-6f},  // a row exchange
      {MatrixOf({{1, 2, 3}, {1, 2, 3}, {4, 1, 2}}), 0.0f, 0.0f},
      {MatrixOf({{1, 1}, {1, 1.0001f}}), 1.00016594e-4f, 1e-10f},
      {MatrixOf({{1e19f, 0}, {0, 1e19f}}), 9.99999996e37f, 1e32f},
      {MatrixOf({{1e20f, 0, 0}, {0, 1e20f, 0}, {0, 0, 1e20f}}), max, 0.0f},
      {MatrixOf({{1e-20f, 0}, {0, 1e-20f}}), 0.0f, 0.0f},
      {MatrixOf({{1e30f, 0, 0}, {0, 1e-30f, 0}, {0, 0, 2}}), 2.0f, 1e-6f},
  };
  for (const auto& c : cases) EXPECT_NEAR(DET(static_cast<int>(c.A.Extent(1)), c.A), c.Det, c.Tolerance) << c.Det;
  EXPECT_NEAR(DET(2, MatrixOf({{2, 1, 9}, {1, 3, 9}, {9, 9, 9}})), 5.0f, 1e-6f) << "the leading block";
}

TEST(Matrix, LeastSquares) {
  const float x1[] = {1, 2, 3, 4, 5, 6, 7, 8}, x2[] = {0.5f, -1, 0.25f, 2, -0.5f, 1.5f, 0, -2};
  const float y[] = {2.1f, 1.3f, 4.4f, 7.9f, 5.2f, 9.6f, 8.1f, 6.0f};
  Array<float, 2> x(8, 3);
  for (int i = 1; i <= 8; ++i) {
    x(i, 1) = x1[i - 1];
    x(i, 2) = x2[i - 1];
    x(i, 3) = x1[i - 1] + x2[i - 1];  // dependent: coefficient 0, no change
  }
  float b[4], sst = 0.0f, sse = 0.0f;
  RLSE(y, x, b, sst, sse);
  EXPECT_NEAR(b[0], 0.5075562f, 2e-5f);
  EXPECT_NEAR(b[1], 1.0934187f, 5e-6f);
  EXPECT_NEAR(b[2], 1.56863711f, 5e-6f);
  EXPECT_EQ(b[3], 0.0f);
  EXPECT_NEAR(sst, 60.0350064f, 1e-4f);
  EXPECT_NEAR(sse, 0.223953017f, 2e-5f);
}

std::vector<float> Eigenvalues(const std::vector<float>& cov, std::string* text = nullptr) {
  std::vector<float> value(static_cast<std::size_t>(std::lround(std::sqrt(cov.size()))), -1.0f);
  const std::string printed =
      RaisedMessages([&] { EXPECT_TRUE(PRINC(100, static_cast<int>(value.size()), cov.data(), true, value.data())); });
  if (text != nullptr) *text = printed;
  return value;
}

TEST(Matrix, PrincipalComponents) {
  std::vector<float> kms;  // rho^|i - j| with rho = 0.75, n = 10
  for (int j = 0; j < 10; ++j)
    for (int i = 0; i < 10; ++i) kms.push_back(static_cast<float>(std::pow(0.75, std::abs(i - j))));
  const std::vector<double> expected = {4.820959087759398,   2.197805192257433,  1.0471541583105795,
                                        0.587668363103633,   0.37957421757604465, 0.2727693723363721,
                                        0.21291434150755956, 0.17774338899883918, 0.15714645534446892,
                                        0.1462654228056734};
  const std::vector<float> value = Eigenvalues(kms);
  for (int k = 0; k < 10; ++k) EXPECT_NEAR(value[k], expected[k], 1e-5) << k;
  // {{1, 1 + d}, {1 + d, 1}}: eigenvalues 2 + d and -d; the warning starts
  // below -1000 (2 + d) 2^-23, about -2.4E-4.
  std::string text;
  for (const float d : {0x1p-11f, 0x1p-13f}) {
    EXPECT_NEAR(Eigenvalues({1.0f, 1.0f + d, 1.0f + d, 1.0f}, &text)[1], -d, 1e-6f);
    EXPECT_EQ(N1RTY(1), d > 2.4e-4f ? SeverityWarning : 0) << d;
  }
  Eigenvalues({1.0f, 0.9f, -0.9f, 0.9f, 1.0f, 0.9f, -0.9f, 0.9f, 1.0f}, &text);
  EXPECT_NE(text.find("EVAL(3) = -0.79999995.  One or more eigenvalues much less than zero are computed.  The matrix "
                      "COV is not nonnegative definite.  In order to continue computations of STD and A, these "
                      "eigenvalues are treated as zero."),
            std::string::npos)
      << text;
  for (const float v : Eigenvalues({1.0f, NAN, 0.5f, NAN, 1.0f, NAN, 0.5f, NAN, 1.0f}, &text))
    EXPECT_TRUE(std::isnan(v));
  EXPECT_EQ(N1RTY(1), 0) << "NaN quietly";
  const float negative[] = {1.0f, 0.0f, 0.0f, -0.5f};
  float out[2] = {7.0f, 7.0f};
  text = RaisedMessages([&] { EXPECT_FALSE(PRINC(10, 2, negative, true, out)); });
  EXPECT_NE(text.find("COV(2,2) = -0.5.  All diagonal elements of COV must be nonnegative."), std::string::npos);
  EXPECT_EQ(out[0], 7.0f);
}

}  // namespace
}  // namespace tov
