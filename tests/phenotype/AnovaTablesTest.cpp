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

TEST(AnovaTables, SummaryValuesAreAov11To14) {
  AovTable aov;
  for (int i = 1; i <= 15; ++i) aov(i) = static_cast<float>(100 + i);
  EXPECT_EQ(SummaryValues(aov), "       111.0000       112.0000       113.0000       114.0000");
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

TEST(AnovaTables, ATableIsSummaryThenSources) {
  AovTable aov;
  // A one-way layout worked by hand: DF 2, 6, 8; SS 12, 8, 20; MS 6,
  // 1.3333; F 4.5; R-square 60 %.
  aov(1) = 2, aov(2) = 6, aov(3) = 8, aov(4) = 12, aov(5) = 8, aov(6) = 20, aov(7) = 6, aov(8) = 4.0f / 3.0f;
  aov(9) = 4.5f, aov(10) = 0.0639f, aov(11) = 60, aov(12) = 46.6667f, aov(13) = 1.1547f, aov(14) = 5;
  const std::vector<std::string> lines =
      AovTableLines(SummarySpelling::OneWay, {"Among Groups", "Within Groups", "Total"}, aov);
  ASSERT_EQ(lines.size(), 7u);
  EXPECT_EQ(lines[0], SummaryHeading(SummarySpelling::OneWay));
  EXPECT_EQ(lines[1], "        60.0000        46.6667         1.1547         5.0000");
  EXPECT_EQ(lines[2], "");
  EXPECT_EQ(lines[3], SourceHeading());
  EXPECT_EQ(lines[4], "   Among Groups              2        12.0000         6.0000         4.5000    0.6390E-001");
  EXPECT_EQ(lines[5], "  Within Groups              6         8.0000         1.3333");
  EXPECT_EQ(lines[6], "          Total              8        20.0000");
}

}  // namespace
}  // namespace tov
