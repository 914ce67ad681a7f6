#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>

#include "numerics/basic/Basic.h"
#include "numerics/matrix/CorrelationMatrix.h"

namespace tov {
namespace {

std::uint32_t Bits(float v) {
  std::uint32_t bits;
  std::memcpy(&bits, &v, sizeof bits);
  return bits;
}

// Values with a large mean, so that the one-pass sums lose digits and any
// change in their order would show; missing values of both kinds, a column
// with nothing present and a constant column.
Array<float, 2> Columns(int n, int k) {
  std::mt19937 engine(5);
  std::uniform_real_distribution<float> value(1000.0f, 1010.0f);
  std::uniform_int_distribution<int> pick(0, 9);
  Array<float, 2> columns(n, k);
  for (int j = 1; j <= k; ++j)
    for (int l = 1; l <= n; ++l) {
      const int p = pick(engine);
      columns(l, j) = p == 0 ? std::numeric_limits<float>::quiet_NaN() : p == 1 ? -9999.0f : value(engine);
    }
  for (int l = 1; l <= n; ++l) {
    columns(l, 3) = -9999.0f;
    columns(l, 7) = 1003.5f;
  }
  return columns;
}

TEST(CorrelationMatrixOfValid, EveryPairIsThatOfThePairRoutineToTheBit) {
  // 37 columns: two full blocks of lanes and a part block.
  const int n = 61;
  const int k = 37;
  const Array<float, 2> columns = Columns(n, k);
  const Array<float, 2> r = CorrelationMatrixOfValid(columns);
  ASSERT_EQ(r.Extent(1), k);
  for (int i = 1; i <= k; ++i)
    for (int j = 1; j <= k; ++j) {
      const float expected = CorrelationOfValid(n, &columns(1, i), &columns(1, j));
      EXPECT_EQ(Bits(r(i, j)), Bits(expected)) << i << ", " << j;
    }
  EXPECT_TRUE(std::isnan(r(3, 1))) << "no line has both values";
  EXPECT_TRUE(std::isnan(r(7, 2))) << "a constant column has no variance";
}

}  // namespace
}  // namespace tov
