#include "phenotype/AnovaTables.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tov {
namespace {

// Expected lines were composed in python with '%15s', '%15d', '%15.4f' and
// a hand-written 0.dddd E form, independent of the writer under test.

TEST(AnovaTables, TheTwoSummarySpellingsDifferInTheirBlanks) {
  EXPECT_EQ(SummaryHeading(SummarySpelling::OneWay),
            "    R-square(%) AdjustedR^2(%)   Est.Std.Dev.           Mean");
  EXPECT_EQ(SummaryHeading(SummarySpelling::TwoWay),
            "   R-square (%) AdjustedR^2(%) Est. Std. Dev.           Mean");
  EXPECT_EQ(SourceHeading(),
            "         Source             DF             SS             MS              F              P");
}

TEST(AnovaTables, RowsStopAfterTheirLastValue) {
  EXPECT_EQ(SourceRow("A (Lines)", 4.0f, {12.5f, 3.125f, 2.5f, 0.0123456f}, 4),
            "      A (Lines)              4        12.5000         3.1250         2.5000    0.1235E-001");
  EXPECT_EQ(SourceRow("Within Groups", 10.0f, {8.0f, 0.8f}, 2), "  Within Groups             10         8.0000         0.8000");
  EXPECT_EQ(SourceRow("Total", 14.0f, {20.5f}, 1), "          Total             14        20.5000");
}

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
