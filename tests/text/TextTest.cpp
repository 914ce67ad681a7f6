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

#include "support/CaseTable.h"
#include "support/ScratchFile.h"
#include "text/Format.h"
#include "text/FreeFormatRead.h"
#include "text/TextInput.h"

namespace tov {
namespace {

// Reads a file of the given text by a program of reads (the first table of
// tests/text/data/reads.txt tells the notation) and returns the items read.
std::string ReadAll(const std::string& text, const std::string& program) {
  const std::string path = testing_support::ScratchPath("text").string();
  std::ofstream(path, std::ios::binary) << text;
  TextInput input;
  EXPECT_TRUE(input.Open(path));
  std::filesystem::remove(path);
  std::string out;
  std::istringstream items(program + " /");
  auto read = std::make_unique<FreeFormatRead>(input);
  bool failed = false;
  for (std::string item; items >> item;) {
    std::int32_t i = -1;
    float r = 9.5f;
    std::string t(item.size() > 1 ? std::stoul(item.substr(1)) : 0, '?');
    if (item == "c") {
      SkipComments(input);
    } else if (item == "/") {
      out += failed ? "" : read->Finish() ? " ." : " !";
      read = std::make_unique<FreeFormatRead>(input);
      failed = false;
    } else if (!failed && item[0] == 'i') {
      failed = !read->Integer(i);
      out.append(" ").append(failed ? "FAIL" : std::to_string(i));
    } else if (!failed && item[0] == 'r') {
      failed = !read->Real(r);
      out.append(" ").append(failed ? "FAIL" : (std::ostringstream() << r).str());
    } else if (!failed) {
      failed = !read->Text(t, t.size());
      out.append(" ").append(failed ? "FAIL" : "[" + t + "]");
    }
  }
  return out.substr(1);
}

TEST(Text, FreeFormatReadsAndCommentLines) {
  for (const auto& c : testing_support::ReadCaseTable("text/data/reads.txt"))
    EXPECT_EQ(ReadAll(c.at(0), c.at(1)), c.at(2)) << c[0];
  // Only the first 128 columns tell a blank line.
  EXPECT_EQ(ReadAll(std::string(128, ' ') + "hidden\nvalue\n", "c t8 / t8"), "[value   ] . FAIL");
}

TEST(Text, Numbers) {
  for (const auto& c : testing_support::ReadCaseTable("text/data/numbers.txt")) {
    float real = 42.0f;
    std::int32_t integer = 42;
    const bool read = c.at(0) == "R" ? ParseReal(c.at(1), real) : ParseInteger(c.at(1), integer);
    EXPECT_EQ(read, c.at(2) != "refused") << c[1];
    if (!read) {
      EXPECT_TRUE(real == 42.0f && integer == 42) << c[1] << " leaves its item as it was";
    } else if (c[0] == "I") {
      EXPECT_EQ(integer, std::stol(c[2])) << c[1];
    } else {
      const float value = std::strtof(c[2].c_str(), nullptr);
      EXPECT_TRUE(real == value || (std::isnan(real) && std::isnan(value))) << c[1] << " read as " << real;
    }
  }
}

TEST(Text, FixedColumnFields) {
  for (const auto& c : testing_support::ReadCaseTable("text/data/fields.txt")) {
    const float value = std::strtof(c.at(1).c_str(), nullptr);
    const int width = std::stoi(c.at(2)), decimals = std::stoi(c.at(3));
    const std::string field = c[0] == "I"   ? FormatInteger(static_cast<std::int64_t>(value), width)
                              : c[0] == "F" ? FormatFixed(value, width, decimals)
                                            : FormatScientific(value, width, decimals, std::stoi(c.at(4)));
    EXPECT_EQ("[" + field + "]", c.at(5)) << c[0] << " " << c[1];
  }
  EXPECT_EQ(Row().Integer(1, 3).Blank().Text("  abc   ", 6).Text("abcdefgh", 5).Str(), "  1    abcabcde");
  // The digits are those of printf, ties and halfway cases included: on
  // random bit patterns, and on values of a few decimals, where the short
  // conversion is taken, halfway ones (multiples of 2^-k) among them; the
  // same field appended in place.
  std::mt19937 random(7u);
  for (int trial = 0; trial < 40000; ++trial) {
    const std::uint32_t bits = random();
    float value = std::ldexp(static_cast<float>(static_cast<int>(bits % 2000001u) - 1000000), -(trial / 2 % 24));
    if (trial % 2 == 0) std::memcpy(&value, &bits, sizeof value);
    if (!std::isfinite(value)) continue;
    const int decimals = trial / 2 % 9, narrow = 4 + trial % 9;
    char expected[80];
    std::snprintf(expected, sizeof expected, "%#.*f", decimals, static_cast<double>(value));
    ASSERT_EQ(FormatFixed(value, 70, decimals), FormatText(expected, 70)) << expected;
    std::string appended = "|";
    AppendFixed(appended, value, narrow, decimals);
    ASSERT_EQ(appended.substr(1), FormatFixed(value, narrow, decimals)) << expected << " in " << narrow;
  }
}

}  // namespace
}  // namespace tov
