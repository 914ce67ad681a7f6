// The text layer: free-format reads, numbers as users write them, lines and
// comments of input files, and the fixed-column fields of every table.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <memory>
#include <random>
#include <sstream>
#include <string>

#include "support/ScratchFile.h"
#include "text/Format.h"
#include "text/FreeFormatRead.h"
#include "text/TextInput.h"

namespace tov {
namespace {

// Reads a file of the given text by a program of reads separated by '/',
// each a list of items: 'i' integer, 'r' real, 'tN' text of length N.
// Returns the items as read ('-1', '9.5' and '?'-filled texts where an item
// is left as it was), each read ending in '.' (finished) or '!' (failed to
// finish), or in FAIL where an item failed.
std::string ReadAll(const std::string& text, const std::string& program, const std::string& skipFirst = "") {
  const std::string path = testing_support::ScratchPath("text").string();
  std::ofstream(path, std::ios::binary) << text;
  TextInput input;
  EXPECT_TRUE(input.Open(path));
  std::filesystem::remove(path);
  if (!skipFirst.empty()) SkipComments(input);
  std::ostringstream out;
  std::istringstream reads(program + " /");
  std::unique_ptr<FreeFormatRead> read = std::make_unique<FreeFormatRead>(input);
  bool failed = false;
  for (std::string item; reads >> item;) {
    if (item == "/") {
      out << (failed ? "" : read->Finish() ? ". " : "! ");
      read = std::make_unique<FreeFormatRead>(input);
      failed = false;
      continue;
    }
    if (failed) continue;
    std::int32_t i = -1;
    float r = 9.5f;
    std::string t(item.size() > 1 ? std::stoul(item.substr(1)) : 0, '?');
    const bool ok = item[0] == 'i' ? read->Integer(i) : item[0] == 'r' ? read->Real(r) : read->Text(t, t.size());
    if (!ok) {
      out << "FAIL ";
      failed = true;
    } else {
      out << (item[0] == 'i' ? std::to_string(i) : item[0] == 't' ? "[" + t + "]" : (std::ostringstream() << r).str())
          << " ";
    }
  }
  return out.str();
}

TEST(Text, FreeFormatReads) {
  const struct {
    std::string Text, Program, Read;
  } cases[] = {
      {"1, 2 ,3\t4\n\n   5 6 7\n8\n", "i i i i i / i", "1 2 3 4 5 . 8 . "},  // the rest of a read's last line goes
      {"'it''s, here' \"say \"\"hi\"\"\" 'one/two'\n", "t12 t10 t7", "[it's, here  ] [say \"hi\"  ] [one/two] . "},
      {"'first\nsecond' next\n", "t11 t4", "[firstsecond] [next] . "},
      {"abcdefghij AB A\n", "t4 t2 t2", "[abcd] [AB] [A ] . "},
      {"3*7 2*'a b' 2* ,, 9\n", "i i i t3 t3 i i i i", "7 7 7 [a b] [a b] -1 -1 -1 9 . "},
      {", 5\n", "i i", "-1 5 . "},
      {"1\n, 2\n", "i i", "1 2 . "},
      {"1 / 2 3\n4\n", "i i i / i", "1 -1 -1 . 4 . "},
      {"5/ 6\n", "i i", "5 -1 . "},
      {"1 2\n\n", "i i i", "1 2 FAIL "},
      {"skipped 1\n2\n", "/ i / ", ". 2 . ! "},  // a read of no items takes a line
      {"3.5\n", "i", "FAIL "},
      {"'5' '2.5'\n", "i", "FAIL "},
      {"'2.5'\n", "r", "FAIL "},
      {"  -100.0   1.5d0\n", "r r", "-100 1.5 . "},
      {"first\r\nsecond", "t5 / t6 / t1", "[first] . [second] . FAIL "},
  };
  for (const auto& c : cases) EXPECT_EQ(ReadAll(c.Text, c.Program), c.Read) << c.Text;
}

TEST(Text, CommentsAndLines) {
  const struct {
    std::string Text, Read;
  } cases[] = {
      {"\n    \n! comment\n!\n  !not a comment\nnext\n", "[!not    ] . [next    ] . "},
      {std::string(128, ' ') + "hidden\nvalue\n", "[value   ] . FAIL "},  // the first 128 columns only
      {"! only\n\n! comments\n", "FAIL FAIL "},
      {"\t\n!\nvalue\n", "[!       ] . [value   ] . "},  // only blanks make an empty line
  };
  for (const auto& c : cases) EXPECT_EQ(ReadAll(c.Text, "t8 / t8", "skip"), c.Read) << c.Text;
  TextInput input;
  input.OpenText("a");
  std::string_view line;
  ASSERT_TRUE(input.NextLine(line));
  EXPECT_FALSE(input.NextLine(line));
  input.BackOneLine();
  EXPECT_FALSE(input.NextLine(line)) << "back after the end only undoes the end";
  const std::string folder = testing::TempDir();
  EXPECT_TRUE(FileExists(folder));
  EXPECT_FALSE(input.Open(folder)) << "a folder exists but is no text";
  EXPECT_FALSE(FileExists(""));
}

TEST(Text, Numbers) {
  const struct {
    const char* Text;
    float Value;
  } reals[] = {{"1", 1},        {"-2.5", -2.5f},     {".5", 0.5f},     {"5.", 5},         {"1e-3", 1e-3f},
               {"1.5E+02", 150}, {"1.5d0", 1.5f},    {"2.5D-1", 0.25f}, {"1.0+2", 100},    {"3.0-1", 0.3f},
               {"1.5q1", 15},    {"-9999.00001", -9999.0f}, {"16777217", 16777216.0f}, {"-Infinity", -INFINITY},
               {"1.00000005960464477539062500001", 1.00000012f}};  // above the midpoint: once rounded
  for (const auto& c : reals) {
    float v = 0.0f;
    EXPECT_TRUE(ParseReal(c.Text, v) && v == c.Value) << c.Text;
  }
  float v = 0.0f;
  EXPECT_TRUE(ParseReal("NaN", v) && std::isnan(v));
  for (const char* bad : {".", "e5", "1.5e", "1..2", "--1", "", "+", "1.5e+", "NA", "1,5", "0x10", "1e5.0"}) {
    v = 42.0f;
    EXPECT_FALSE(ParseReal(bad, v) || v != 42.0f) << bad;
  }
  std::int32_t i = 0;
  EXPECT_TRUE(ParseInteger("-2147483648", i) && i == INT32_MIN);
  EXPECT_TRUE(ParseInteger("+007", i) && i == 7);
  for (const char* bad : {"3.5", "1e2", "abc", "", "-", "2147483648", "12a", "5.", " 5", "99999999999999999999"}) {
    i = 42;
    EXPECT_FALSE(ParseInteger(bad, i) || i != 42) << bad;
  }
}

TEST(Text, FixedColumnFields) {
  const float inf = INFINITY;
  const struct {
    char Kind;  // 'I' integer, 'F' fixed, 'E' scientific, 'T' text
    float Value;
    int Width, Decimals, ExponentDigits;
    std::string Field;
  } cases[] = {
      {'I', 42, 12, 0, 0, "          42"},     {'I', -100, 4, 0, 0, "-100"},       {'I', -1000, 4, 0, 0, "****"},
      {'F', 3.14159f, 12, 4, 0, "      3.1416"}, {'F', -9999, 12, 4, 0, "  -9999.0000"}, {'F', 12345.4f, 12, 0, 0, "      12345."},
      {'F', 0.125f, 12, 2, 0, "        0.12"}, {'F', -0.0f, 12, 4, 0, "     -0.0000"}, {'F', 1e10f, 12, 4, 0, "************"},
      {'F', 99999.99f, 8, 2, 0, "99999.99"},  {'F', -99999.99f, 8, 2, 0, "********"}, {'F', 0.5f, 5, 4, 0, ".5000"},
      {'F', -0.5f, 6, 4, 0, "-.5000"},         {'F', 0.5f, 6, 4, 0, "0.5000"},      {'F', 0.5f, 4, 4, 0, "****"},
      {'F', NAN, 12, 4, 0, "         NaN"},    {'F', -inf, 12, 4, 0, "   -Infinity"}, {'F', inf, 8, 2, 0, "Infinity"},
      {'F', -inf, 8, 2, 0, "    -Inf"},        {'F', NAN, 2, 0, 0, "**"},
      {'E', 0.001234f, 12, 4, 2, "  0.1234E-02"}, {'E', 0.001234f, 15, 4, 3, "    0.1234E-002"},
      {'E', -9999, 12, 4, 2, " -0.9999E+04"},  {'E', 0, 12, 4, 2, "  0.0000E+00"}, {'E', 0.99996f, 12, 4, 2, "  0.1000E+01"},
      {'E', 9.99999e-5f, 12, 4, 2, "  0.1000E-03"}, {'E', NAN, 12, 4, 2, "         NaN"},
      {'E', -inf, 15, 4, 3, "      -Infinity"}, {'E', 0.5f, 9, 4, 2, ".5000E+00"}, {'E', 0.5f, 8, 4, 2, "********"},
      {'E', 1e-40f, 12, 4, 1, "************"},
  };
  for (const auto& c : cases) {
    const std::string field = c.Kind == 'I'   ? FormatInteger(static_cast<std::int64_t>(c.Value), c.Width)
                              : c.Kind == 'F' ? FormatFixed(c.Value, c.Width, c.Decimals)
                                              : FormatScientific(c.Value, c.Width, c.Decimals, c.ExponentDigits);
    EXPECT_EQ(field, c.Field) << c.Kind << " " << c.Value;
  }
  EXPECT_EQ(Row().Integer(1, 3).Blank().Text("  abc   ", 6).Text("abcdefgh", 5).Str(), "  1    abcabcde");
  EXPECT_EQ(TrimBoth("   12.50 "), "12.50");
  EXPECT_EQ(TrimTrailing("  a b  "), "  a b");
  // The digits are those of printf, ties and halfway cases included.
  std::mt19937 random(7u);
  for (int trial = 0; trial < 20000; ++trial) {
    const std::uint32_t bits = random();
    float value;
    std::memcpy(&value, &bits, sizeof value);
    if (!std::isfinite(value)) continue;
    char expected[80];
    std::snprintf(expected, sizeof expected, "%#.*f", trial % 5, static_cast<double>(value));
    ASSERT_EQ(FormatFixed(value, 70, trial % 5), FormatText(expected, 70)) << expected;
  }
  // Values of a few decimals, where the short conversion is taken, halfway
  // ones (multiples of 2^-k) among them, and appended in place.
  for (int trial = 0; trial < 20000; ++trial) {
    const float value =
        std::ldexp(static_cast<float>(static_cast<int>(random() % 2000001u) - 1000000), -(trial % 24));
    const int decimals = 1 + trial % 8;
    char expected[80];
    std::snprintf(expected, sizeof expected, "%#.*f", decimals, static_cast<double>(value));
    ASSERT_EQ(FormatFixed(value, 70, decimals), FormatText(expected, 70)) << expected;
    const int narrow = 4 + trial % 9;
    std::string appended = "|";
    AppendFixed(appended, value, narrow, decimals);
    ASSERT_EQ(appended.substr(1), FormatFixed(value, narrow, decimals)) << expected << " in " << narrow;
  }
}

}  // namespace
}  // namespace tov
