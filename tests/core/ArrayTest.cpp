#include "core/Array.h"

#include <gtest/gtest.h>


namespace tov {
namespace {

TEST(Array, FirstIndexVariesFastestAndIndicesStartAtOne) {
  Array<int, 3> a(2, 3, 4);
  int v = 0;
  for (int k = 1; k <= 4; ++k)
    for (int j = 1; j <= 3; ++j)
      for (int i = 1; i <= 2; ++i) a(i, j, k) = v++;
  for (int n = 0; n < 24; ++n) EXPECT_EQ(a.Data()[n], n);
  EXPECT_EQ(&a(1, 2, 3) - &a(1, 1, 1), 2 + 2 * 3 * 2);
  EXPECT_EQ(a.Extent(1), 2);
  EXPECT_EQ(a.Extent(3), 4);
}

TEST(Array, ViewSharesStorage) {
  float raw[6] = {1, 2, 3, 4, 5, 6};
  ArrayView<float, 2> m(raw, 3, 2);
  EXPECT_EQ(m(3, 1), 3.0f);
  EXPECT_EQ(m(1, 2), 4.0f);
  m(2, 2) = 9.0f;
  EXPECT_EQ(raw[4], 9.0f);
}

}  // namespace
}  // namespace tov
