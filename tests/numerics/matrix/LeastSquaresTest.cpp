#include "numerics/matrix/LeastSquares.h"

#include <gtest/gtest.h>

#include <vector>

namespace tov {
namespace {

// Reference values: numpy 1.24, linalg.lstsq on [1, X] with the inputs
// rounded to float32, SST and SSE summed in double.

const float kX[8][2] = {{1.0f, 0.5f}, {2.0f, -1.0f}, {3.0f, 0.25f}, {4.0f, 2.0f},
                        {5.0f, -0.5f}, {6.0f, 1.5f}, {7.0f, 0.0f}, {8.0f, -2.0f}};
const std::vector<float> kY = {2.1f, 1.3f, 4.4f, 7.9f, 5.2f, 9.6f, 8.1f, 6.0f};

TEST(RLSE, FitsAnInterceptAndTwoSlopes) {
  Array<float, 2> x(8, 2);
  for (int i = 1; i <= 8; ++i)
    for (int c = 1; c <= 2; ++c) x(i, c) = kX[i - 1][c - 1];
  float b[3], sst = 0.0f, sse = 0.0f;
  RLSE(kY.data(), x, b, sst, sse);
  EXPECT_NEAR(b[0], 0.5075562f, 2e-5f);
  EXPECT_NEAR(b[1], 1.0934187f, 5e-6f);
  EXPECT_NEAR(b[2], 1.56863711f, 5e-6f);
  EXPECT_NEAR(sst, 60.0350064f, 1e-4f);
  EXPECT_NEAR(sse, 0.223953017f, 2e-5f);
}

TEST(RLSE, NearlyCollinearColumnsStillFit) {
  // Column 2 is column 1 plus 0.01 times a +-1 pattern.
  const float z[8] = {1, -1, -1, 1, 1, -1, -1, 1};
  Array<float, 2> x(8, 2);
  for (int i = 1; i <= 8; ++i) {
    x(i, 1) = static_cast<float>(i);
    x(i, 2) = static_cast<float>(i) + 0.01f * z[i - 1];
  }
  float b[3], sst = 0.0f, sse = 0.0f;
  RLSE(kY.data(), x, b, sst, sse);
  EXPECT_NEAR(b[1], 28.3836651f, 0.05f);
  EXPECT_NEAR(b[2], -27.5003318f, 0.05f);
  EXPECT_NEAR(sse, 26.6583053f, 2e-3f);
  EXPECT_NEAR(sst, 60.0350064f, 1e-4f);
}

TEST(RLSE, ADependentColumnGetsZeroAndChangesNothing) {
  Array<float, 2> x(8, 3);
  for (int i = 1; i <= 8; ++i) {
    x(i, 1) = kX[i - 1][0];
    x(i, 2) = kX[i - 1][1];
    x(i, 3) = kX[i - 1][0] + kX[i - 1][1];
  }
  float b[4], sst = 0.0f, sse = 0.0f;
  RLSE(kY.data(), x, b, sst, sse);
  EXPECT_EQ(b[3], 0.0f);
  EXPECT_NEAR(b[1], 1.0934187f, 5e-6f);
  EXPECT_NEAR(b[2], 1.56863711f, 5e-6f);
  EXPECT_NEAR(sse, 0.223953017f, 2e-5f);
}

TEST(RLSE, ConstantResponseHasNoSumsOfSquares) {
  Array<float, 2> x(4, 1);
  for (int i = 1; i <= 4; ++i) x(i, 1) = static_cast<float>(i * i);
  const std::vector<float> y(4, 3.0f);
  float b[2], sst = 1.0f, sse = 1.0f;
  RLSE(y.data(), x, b, sst, sse);
  EXPECT_EQ(sst, 0.0f);
  EXPECT_NEAR(sse, 0.0f, 1e-10f);
  EXPECT_NEAR(b[0], 3.0f, 1e-5f);
  EXPECT_NEAR(b[1], 0.0f, 1e-6f);
}

}  // namespace
}  // namespace tov
