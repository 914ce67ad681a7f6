#include "text/FreeFormatRead.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstdint>
#include <fstream>
#include <string>

namespace tov {
namespace {

// A TextInput over the given text, through a real file so that line ends
// are split as for any input file.
class Reader : public testing::Test {
 protected:
  void Load(const std::string& text) {
    const std::string path = testing::TempDir() + "/tov-free_format_read-" + std::to_string(::getpid()) + ".txt";
    std::ofstream(path, std::ios::binary) << text;
    ASSERT_TRUE(input.Open(path));
  }
  TextInput input;
};

TEST_F(Reader, BlanksCommasAndLineEndsSeparateAndTheRestOfTheLastLineIsDropped) {
  Load("1, 2 ,3\t4\n\n   5 6 7\n8\n");
  std::int32_t a = 0, b = 0, c = 0, d = 0, e = 0, f = 0;
  FreeFormatRead first(input);
  ASSERT_TRUE(first.Integer(a) && first.Integer(b) && first.Integer(c) && first.Integer(d) && first.Integer(e) &&
              first.Finish());
  EXPECT_EQ(a + b + c + d + e, 15);
  EXPECT_EQ(d, 4);
  FreeFormatRead second(input);
  ASSERT_TRUE(second.Integer(f) && second.Finish());
  EXPECT_EQ(f, 8) << "6 and 7 stood on the last line of the first read";
}

TEST_F(Reader, QuotedTextsKeepBlanksCommasAndDoubledQuotes) {
  Load("'it''s, here' \"say \"\"hi\"\"\" 'one/two'\n");
  std::string a, b, c;
  FreeFormatRead read(input);
  ASSERT_TRUE(read.Text(a, 12) && read.Text(b, 10) && read.Text(c, 7) && read.Finish());
  EXPECT_EQ(a, "it's, here  ");
  EXPECT_EQ(b, "say \"hi\"  ");
  EXPECT_EQ(c, "one/two");
}

TEST_F(Reader, AQuotedTextMayRunOverALineEnd) {
  Load("'first\nsecond' next\n");
  std::string a, b;
  FreeFormatRead read(input);
  ASSERT_TRUE(read.Text(a, 11) && read.Text(b, 4) && read.Finish());
  EXPECT_EQ(a, "firstsecond");
  EXPECT_EQ(b, "next");
}

TEST_F(Reader, TextsAreCutOrFilledToTheirTargetLength) {
  Load("abcdefghij AB A\n");
  std::string a, b, c;
  FreeFormatRead read(input);
  ASSERT_TRUE(read.Text(a, 4) && read.Text(b, 2) && read.Text(c, 2) && read.Finish());
  EXPECT_EQ(a, "abcd");
  EXPECT_EQ(b, "AB");
  EXPECT_EQ(c, "A ");
}

TEST_F(Reader, RepeatsAndNullValues) {
  Load("3*7 2*'a b' 2* ,, 9\n");
  std::int32_t x[3] = {};
  std::string t1, t2;
  std::int32_t n1 = -1, n2 = -2, n3 = -3, last = 0;
  FreeFormatRead read(input);
  ASSERT_TRUE(read.Integer(x[0]) && read.Integer(x[1]) && read.Integer(x[2]) && read.Text(t1, 3) &&
              read.Text(t2, 3) && read.Integer(n1) && read.Integer(n2) && read.Integer(n3) && read.Integer(last) &&
              read.Finish());
  EXPECT_EQ(x[0], 7);
  EXPECT_EQ(x[2], 7);
  EXPECT_EQ(t1, "a b");
  EXPECT_EQ(t2, "a b");
  EXPECT_EQ(n1, -1) << "2* is two null values";
  EXPECT_EQ(n2, -2);
  EXPECT_EQ(n3, -3) << "an empty place between commas is a null value";
  EXPECT_EQ(last, 9);
}

TEST_F(Reader, ALeadingCommaIsANullFirstValue) {
  Load(", 5\n");
  std::int32_t a = 1, b = 0;
  FreeFormatRead read(input);
  ASSERT_TRUE(read.Integer(a) && read.Integer(b) && read.Finish());
  EXPECT_EQ(a, 1);
  EXPECT_EQ(b, 5);
}

TEST_F(Reader, ACommaAfterALineEndStillSeparatesTheValueBeforeIt) {
  Load("1\n, 2\n");
  std::int32_t a = 0, b = 0;
  FreeFormatRead read(input);
  ASSERT_TRUE(read.Integer(a) && read.Integer(b) && read.Finish());
  EXPECT_EQ(a, 1);
  EXPECT_EQ(b, 2);
}

TEST_F(Reader, ASlashEndsTheReadAndLeavesTheRemainingItems) {
  Load("1 / 2 3\n4\n");
  std::int32_t a = 0, b = 9, c = 9, d = 0;
  FreeFormatRead first(input);
  ASSERT_TRUE(first.Integer(a) && first.Integer(b) && first.Integer(c) && first.Finish());
  EXPECT_EQ(a, 1);
  EXPECT_EQ(b, 9);
  EXPECT_EQ(c, 9);
  FreeFormatRead second(input);
  ASSERT_TRUE(second.Integer(d) && second.Finish());
  EXPECT_EQ(d, 4) << "the read after the slash starts on a new line";
}

TEST_F(Reader, ASlashEndsAnUnquotedValue) {
  Load("5/ 6\n");
  std::int32_t a = 0, b = 0;
  FreeFormatRead read(input);
  ASSERT_TRUE(read.Integer(a) && read.Integer(b) && read.Finish());
  EXPECT_EQ(a, 5);
  EXPECT_EQ(b, 0);
}

TEST_F(Reader, ReadingPastTheEndOfTheFileFailsAndLaterItemsStayAsTheyWere) {
  Load("1 2\n\n");
  std::int32_t a = 0, b = 0, c = 7, d = 8;
  FreeFormatRead read(input);
  EXPECT_TRUE(read.Integer(a) && read.Integer(b));
  EXPECT_FALSE(read.Integer(c));
  EXPECT_FALSE(read.Integer(d));
  EXPECT_FALSE(read.Finish());
  EXPECT_EQ(c, 7);
  EXPECT_EQ(d, 8);
}

TEST_F(Reader, AReadOfNoItemsTakesOneLineAndFailsAtTheEnd) {
  Load("skipped 1\n2\n");
  std::int32_t a = 0;
  FreeFormatRead empty(input);
  EXPECT_TRUE(empty.Finish());
  FreeFormatRead next(input);
  ASSERT_TRUE(next.Integer(a) && next.Finish());
  EXPECT_EQ(a, 2);
  FreeFormatRead atEnd(input);
  EXPECT_FALSE(atEnd.Finish());
}

TEST(ParseInteger, AcceptsOnlyWholeNumbersThatFit) {
  std::int32_t v = 0;
  EXPECT_TRUE(ParseInteger("+7", v));
  EXPECT_EQ(v, 7);
  EXPECT_TRUE(ParseInteger("-2147483648", v));
  EXPECT_EQ(v, INT32_MIN);
  EXPECT_TRUE(ParseInteger("007", v));
  EXPECT_EQ(v, 7);
  for (const char* bad : {"3.5", "1e2", "abc", "", "-", "2147483648", "12a", "5.", " 5", "99999999999999999999"}) {
    v = 42;
    EXPECT_FALSE(ParseInteger(bad, v)) << bad;
    EXPECT_EQ(v, 42) << bad;
  }
}

TEST(ParseReal, AcceptsTheFormsAScientificUserWrites) {
  const struct {
    const char* text;
    float value;
  } cases[] = {{"1", 1.0f},        {"-2.5", -2.5f},    {".5", 0.5f},       {"5.", 5.0f},
               {"1e-3", 1e-3f},    {"1.5E+02", 150.0f}, {"1.5d0", 1.5f},   {"2.5D-1", 0.25f},
               {"1.0+2", 100.0f},  {"3.0-1", 0.3f},    {"+0.1", 0.1f},     {"-9999.0", -9999.0f},
               {"1.5q1", 15.0f},   {"1E5", 1e5f}};
  for (const auto& c : cases) {
    float v = 0.0f;
    ASSERT_TRUE(ParseReal(c.text, v)) << c.text;
    EXPECT_EQ(v, c.value) << c.text;
  }
}

TEST(ParseReal, RoundsOnceToTheNearestSinglePrecisionValue) {
  float v = 0.0f;
  // Just above the midpoint between 1 and the next float: a detour through
  // double would land on the midpoint and round to even, down to 1.0.
  ASSERT_TRUE(ParseReal("1.00000005960464477539062500001", v));
  EXPECT_EQ(v, std::nextafter(1.0f, 2.0f));
  ASSERT_TRUE(ParseReal("16777217", v));
  EXPECT_EQ(v, 16777216.0f);
  ASSERT_TRUE(ParseReal("-9999.00001", v));
  EXPECT_EQ(v, -9999.0f);
}

TEST(ParseReal, WordsForNotANumberAndInfinity) {
  float v = 0.0f;
  ASSERT_TRUE(ParseReal("NaN", v));
  EXPECT_TRUE(std::isnan(v));
  ASSERT_TRUE(ParseReal("-Infinity", v));
  EXPECT_EQ(v, -INFINITY);
  ASSERT_TRUE(ParseReal("inf", v));
  EXPECT_EQ(v, INFINITY);
}

TEST(ParseReal, RefusesWhatIsNoNumber) {
  for (const char* bad : {".", "e5", "1.5e", "abc", "1..2", "--1", "", "+", "1.5e+", "NA", "1,5", "0x10", "1e5.0"}) {
    float v = 42.0f;
    EXPECT_FALSE(ParseReal(bad, v)) << bad;
    EXPECT_EQ(v, 42.0f) << bad;
  }
}

TEST_F(Reader, AnIntegerItemThatIsNotAWholeNumberFailsTheRead) {
  Load("3.5\n");
  std::int32_t a = 1;
  FreeFormatRead read(input);
  EXPECT_FALSE(read.Integer(a));
  EXPECT_EQ(a, 1);
}

TEST_F(Reader, AQuotedValueIsNoNumber) {
  Load("'5' '2.5'\n");
  std::int32_t a = 1;
  float b = 1.0f;
  FreeFormatRead first(input);
  EXPECT_FALSE(first.Integer(a));
  input.OpenText("'2.5'");
  FreeFormatRead second(input);
  EXPECT_FALSE(second.Real(b));
}

TEST(TextInputOverAText, ReadsAValueOutOfAToken) {
  TextInput token;
  token.OpenText("  -100.0            ");
  float v = 0.0f;
  FreeFormatRead read(token);
  ASSERT_TRUE(read.Real(v) && read.Finish());
  EXPECT_EQ(v, -100.0f);
  token.OpenText("                    ");
  FreeFormatRead blank(token);
  EXPECT_FALSE(blank.Real(v)) << "a blank token has no value";
}

}  // namespace
}  // namespace tov
