#include "phenotype/AnovaTables.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tov {
namespace {

// Expected lines were composed in python with '%15s', '%15d', '%15.4f' and
// a hand-written 0.dddd E form, independent of the writer under test.

TEST(AnovaTables, DegreesOfFreedomAreRoundedToNearest) {
  EXPECT_EQ(SourceRow("x", 2.5f, {}, 0), "              x              3");
  EXPECT_EQ(SourceRow("x", 3.4999f, {}, 0), "              x              3");
  EXPECT_EQ(SourceRow("x", -1.0f, {}, 0), "              x             -1");
}

TEST(AnovaTables, NotANumberAndInfinityPrintAsWords) {
  const float inf = std::numeric_limits<float>::infinity();
  EXPECT_EQ(SourceRow("Among Groups", 2.0f, {0.0f, 0.0f, std::nanf(""), std::nanf("")}, 4),
            "   Among Groups              2         0.0000         0.0000            NaN            NaN");
  EXPECT_EQ(SourceRow("Model", 1.0f, {3.0f, 3.0f, inf, 0.0f}, 4),
            "          Model              1         3.0000         3.0000       Infinity    0.0000E+000");
}

}  // namespace
}  // namespace tov
