#include "text/Format.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>

namespace tov {
namespace {

TEST(FormatInteger, RightAlignedOrAsterisks) {
  EXPECT_EQ(FormatInteger(42, 12), "          42");
  EXPECT_EQ(FormatInteger(-7, 4), "  -7");
  EXPECT_EQ(FormatInteger(12345, 4), "****");
  EXPECT_EQ(FormatInteger(-100, 4), "-100");
  EXPECT_EQ(FormatInteger(-1000, 4), "****");
}

TEST(FormatFixed, RoundsToItsDecimalsAndAligns) {
  EXPECT_EQ(FormatFixed(3.14159f, 12, 4), "      3.1416");
  EXPECT_EQ(FormatFixed(-0.5f, 12, 4), "     -0.5000");
  EXPECT_EQ(FormatFixed(0.0f, 12, 4), "      0.0000");
  EXPECT_EQ(FormatFixed(-9999.0f, 12, 4), "  -9999.0000");
  EXPECT_EQ(FormatFixed(2.5f, 13, 3), "        2.500");
}

TEST(FormatFixed, ZeroDecimalsKeepThePoint) {
  EXPECT_EQ(FormatFixed(12345.4f, 12, 0), "      12345.");
  EXPECT_EQ(FormatFixed(0.4f, 12, 0), "          0.");
}

// The digits are the exact binary value rounded as printf rounds it, ties
// and halfway cases included: checked on random bit patterns.
TEST(FormatFixed, DigitsAreThoseOfPrintf) {
  std::mt19937 random(7u);
  for (int trial = 0; trial < 20000; ++trial) {
    const std::uint32_t bits = random();
    float value = 0.0f;
    std::memcpy(&value, &bits, sizeof value);
    if (!std::isfinite(value)) continue;
    const int decimals = trial % 5;
    char expected[80];
    std::snprintf(expected, sizeof expected, "%#.*f", decimals, static_cast<double>(value));
    ASSERT_EQ(FormatFixed(value, 70, decimals), FormatText(expected, 70)) << expected;
  }
  // Values of a few decimals, where the short conversion is taken, also
  // halfway ones (multiples of 2^-k).
  for (int trial = 0; trial < 20000; ++trial) {
    const float value = std::ldexp(static_cast<float>(static_cast<int>(random() % 2000001u) - 1000000), -(trial % 24));
    const int decimals = 1 + trial % 8;
    char expected[80];
    std::snprintf(expected, sizeof expected, "%#.*f", decimals, static_cast<double>(value));
    ASSERT_EQ(FormatFixed(value, 70, decimals), FormatText(expected, 70)) << expected;
    const int narrow = 4 + trial % 9;
    std::string appended = "|";
    AppendFixed(appended, value, narrow, decimals);
    ASSERT_EQ(appended.substr(1), FormatFixed(value, narrow, decimals)) << expected << " in " << narrow;
  }
  EXPECT_EQ(FormatFixed(0.125f, 12, 2), "        0.12") << "a tie goes to the even digit";
  EXPECT_EQ(FormatFixed(-0.0f, 12, 4), "     -0.0000");
}

TEST(FormatFixed, TooWideFillsTheFieldWithAsterisks) {
  EXPECT_EQ(FormatFixed(1e10f, 12, 4), "************");
  EXPECT_EQ(FormatFixed(1000000.0f, 8, 2), "********");
  EXPECT_EQ(FormatFixed(99999.99f, 8, 2), "99999.99");
  EXPECT_EQ(FormatFixed(-99999.99f, 8, 2), "********");
}

TEST(FormatFixed, TheLeadingZeroGoesWhereTheFieldNeedsIt) {
  EXPECT_EQ(FormatFixed(0.5f, 5, 4), ".5000");
  EXPECT_EQ(FormatFixed(-0.5f, 6, 4), "-.5000");
  EXPECT_EQ(FormatFixed(0.5f, 6, 4), "0.5000");
  EXPECT_EQ(FormatFixed(0.5f, 4, 4), "****");
}

TEST(FormatFixed, WordsForValuesThatAreNotFinite) {
  const float inf = std::numeric_limits<float>::infinity();
  EXPECT_EQ(FormatFixed(std::nanf(""), 12, 4), "         NaN");
  EXPECT_EQ(FormatFixed(inf, 12, 4), "    Infinity");
  EXPECT_EQ(FormatFixed(-inf, 12, 4), "   -Infinity");
  EXPECT_EQ(FormatFixed(inf, 8, 2), "Infinity");
  EXPECT_EQ(FormatFixed(-inf, 8, 2), "    -Inf");
  EXPECT_EQ(FormatFixed(std::nanf(""), 2, 0), "**");
}

TEST(FormatScientific, TwoAndThreeExponentDigits) {
  EXPECT_EQ(FormatScientific(0.001234f, 12, 4, 2), "  0.1234E-02");
  EXPECT_EQ(FormatScientific(0.001234f, 15, 4, 3), "    0.1234E-002");
  EXPECT_EQ(FormatScientific(1.0f, 12, 4, 2), "  0.1000E+01");
  EXPECT_EQ(FormatScientific(-9999.0f, 12, 4, 2), " -0.9999E+04");
  EXPECT_EQ(FormatScientific(0.0f, 12, 4, 2), "  0.0000E+00");
  EXPECT_EQ(FormatScientific(123456.0f, 15, 4, 3), "    0.1235E+006");
}

TEST(FormatScientific, RoundingCarriesIntoTheExponent) {
  EXPECT_EQ(FormatScientific(0.99996f, 12, 4, 2), "  0.1000E+01");
  EXPECT_EQ(FormatScientific(9.99999e-5f, 12, 4, 2), "  0.1000E-03");
}

TEST(FormatScientific, NotFiniteAndTooNarrow) {
  EXPECT_EQ(FormatScientific(std::nanf(""), 12, 4, 2), "         NaN");
  EXPECT_EQ(FormatScientific(-std::numeric_limits<float>::infinity(), 15, 4, 3), "      -Infinity");
  EXPECT_EQ(FormatScientific(0.5f, 9, 4, 2), ".5000E+00");
  EXPECT_EQ(FormatScientific(0.5f, 8, 4, 2), "********");
  EXPECT_EQ(FormatScientific(1e-40f, 12, 4, 1), "************");
}

TEST(FormatText, TrimsAlignsAndCuts) {
  EXPECT_EQ(FormatText("abc   ", 6), "   abc");
  EXPECT_EQ(FormatText("  abc", 6), "   abc") << "leading blanks stay";
  EXPECT_EQ(FormatText("abcdefgh", 5), "abcde");
  EXPECT_EQ(FormatText("", 3), "   ");
}

TEST(Trim, LeftAdjustedTrimmedForm) {
  EXPECT_EQ(TrimBoth("   12.50 "), "12.50");
  EXPECT_EQ(TrimBoth("    "), "");
  EXPECT_EQ(TrimTrailing("  a b  "), "  a b");
}

TEST(Row, JoinsFieldsWithoutSeparators) {
  const std::string row = Row().Integer(1, 12).Blank().Text("Yield", 19).Fixed(0.25f, 12, 4).Str();
  EXPECT_EQ(row, std::string(11, ' ') + "1 " + std::string(14, ' ') + "Yield" + "      0.2500");
}

}  // namespace
}  // namespace tov
