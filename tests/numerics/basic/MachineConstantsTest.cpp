#include <gtest/gtest.h>

#include <cmath>

#include "numerics/basic/Basic.h"
#include "numerics/basic/ErrorPolicy.h"

namespace tov {
namespace {

// IEEE 754 binary32 values: smallest normal 2^-126, largest (2 - 2^-23) 2^127;
// log10(2) = 0.30102999566... rounds to 0.30103000998497009 (python3 numpy.float32).
TEST(AMACH, GivesTheSinglePrecisionConstants) {
  EXPECT_EQ(AMACH(1), 0x1p-126f);
  EXPECT_EQ(AMACH(2), 0x1.fffffep127f);
  EXPECT_EQ(AMACH(3), 5.96046448e-08f);
  EXPECT_EQ(AMACH(4), 1.1920929e-07f);
  EXPECT_EQ(AMACH(5), 0.30103000998497009f);
  EXPECT_TRUE(std::isnan(AMACH(6)));
  EXPECT_EQ(AMACH(7), INFINITY);
  EXPECT_EQ(AMACH(8), -INFINITY);
}

TEST(AMACH, OtherIndexIsAnErrorAndNaN) {
  ERSET(0, 0, 0);
  ClearLastError();
  EXPECT_TRUE(std::isnan(AMACH(0)));
  EXPECT_EQ(N1RTY(1), SeverityTerminal);
  ClearLastError();
  EXPECT_TRUE(std::isnan(AMACH(9)));
  EXPECT_EQ(N1RTY(1), SeverityTerminal);
  ClearLastError();
  ERSET(0, 2, 2);
}

}  // namespace
}  // namespace tov
