#include "numerics/matrix/Determinant.h"

#include <gtest/gtest.h>

#include <limits>

#include "support/MatrixOf.h"

namespace tov {
namespace {

using testing_support::MatrixOf;

float Det(const Array<float, 2>& a) { return DET(static_cast<int>(a.Extent(1)), a); }

// Reference values: numpy 1.24, linalg.det of the float32-rounded matrix.

TEST(DET, GeneralMatrices) {
  EXPECT_NEAR(Det(MatrixOf({{2.0f, -1.0f, 0.5f}, {1.5f, 3.0f, -2.0f}, {-0.5f, 4.0f, 1.0f}})), 26.25f, 2e-5f);
  // A zero first pivot needs a row exchange, which flips the sign.
  EXPECT_NEAR(Det(MatrixOf({{0.0f, 1.0f, 2.0f}, {3.0f, 4.0f, 5.0f}, {6.0f, 7.0f, 9.0f}})), -3.0f, 5e-6f);
  EXPECT_EQ(Det(MatrixOf({{0.0f, 1.0f}, {1.0f, 0.0f}})), -1.0f);
  EXPECT_NEAR(Det(MatrixOf({{1.75f, 3.125f, -4.875f, 3.125f, -0.375f},
                          {0.125f, 1.375f, -2.125f, 4.875f, -4.5f},
                          {-2.25f, -1.125f, 0.75f, -0.875f, -3.75f},
                          {-4.625f, -5.0f, -4.625f, -3.5f, 5.0f},
                          {-3.125f, 1.5f, 2.5f, -2.75f, -2.25f}})),
              -2009.59979f, 2e-2f);
  EXPECT_EQ(Det(MatrixOf({{-2.5f}})), -2.5f);
}

TEST(DET, SingularAndNearlySingular) {
  EXPECT_EQ(Det(MatrixOf({{1.0f, 2.0f, 3.0f}, {1.0f, 2.0f, 3.0f}, {4.0f, 1.0f, 2.0f}})), 0.0f);
  EXPECT_EQ(Det(MatrixOf({{1.0f, 0.0f}, {3.0f, 0.0f}})), 0.0f);
  EXPECT_NEAR(Det(MatrixOf({{1.0f, 1.0f}, {1.0f, 1.0001f}})), 1.00016594e-4f, 1e-10f);
}

TEST(DET, TakesTheLeadingBlock) {
  // [[2, 1], [1, 3]] inside a larger matrix.
  const Array<float, 2> a = MatrixOf({{2.0f, 1.0f, 9.0f}, {1.0f, 3.0f, 9.0f}, {9.0f, 9.0f, 9.0f}});
  EXPECT_NEAR(DET(2, a), 5.0f, 1e-6f);
}

TEST(DET, RangeOfTheResult) {
  // 1e38 is a float: no false overflow on the way.
  EXPECT_NEAR(Det(MatrixOf({{1e19f, 0.0f}, {0.0f, 1e19f}})), 9.99999996e37f, 1e32f);
  // 1e60 is not: the largest float instead.
  EXPECT_EQ(Det(MatrixOf({{1e20f, 0.0f, 0.0f}, {0.0f, 1e20f, 0.0f}, {0.0f, 0.0f, 1e20f}})),
            std::numeric_limits<float>::max());
  // 1e-40 and 1e-60 lie below the normal floats: 0.0.
  EXPECT_EQ(Det(MatrixOf({{1e-20f, 0.0f}, {0.0f, 1e-20f}})), 0.0f);
  EXPECT_EQ(Det(MatrixOf({{1e-20f, 0.0f, 0.0f}, {0.0f, 1e-20f, 0.0f}, {0.0f, 0.0f, 1e-20f}})), 0.0f);
  // Pivots far apart in size still multiply out: 1e30 * 1e-30 * 2.
  EXPECT_NEAR(Det(MatrixOf({{1e30f, 0.0f, 0.0f}, {0.0f, 1e-30f, 0.0f}, {0.0f, 0.0f, 2.0f}})), 2.0f, 1e-6f);
}

}  // namespace
}  // namespace tov
