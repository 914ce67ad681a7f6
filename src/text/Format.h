#pragma once
// The fixed-column forms of every table and message.  Numbers are right-
// aligned in their width; a number too wide for its field fills it with
// asterisks; NaN and infinities print as the words NaN, Infinity and
// -Infinity (Inf and -Inf where the field is narrower than the word).

#include <cstdint>
#include <string>
#include <string_view>

namespace tov {

// An integer in w columns.
std::string FormatInteger(std::int64_t value, int width);
// A real in w columns with d decimals; d = 0 keeps the decimal point.
std::string FormatFixed(float value, int width, int decimals);
// The same field appended to out, without a string of its own where the
// value has few digits (the rows of the big tables).
void AppendFixed(std::string& out, float value, int width, int decimals);
// A real as 0.dddd followed by E, the exponent's sign and its digits, for
// example 0.1234E-02 (2 exponent digits) or 0.1234E-002 (3).
std::string FormatScientific(float value, int width, int decimals, int exponentDigits);
// A text less its trailing blanks, right-aligned; cut to the field when
// longer.
std::string FormatText(std::string_view text, int width);

// The text less its trailing blanks.
std::string_view TrimTrailing(std::string_view text);
// The text less its leading and trailing blanks: the left-adjusted,
// trimmed form of a number written to a fixed field.
std::string_view TrimBoth(std::string_view text);

// A row of a table, built field by field.
class Row {
 public:
  Row& Integer(std::int64_t value, int width) { return Add(FormatInteger(value, width)); }
  Row& Fixed(float value, int width, int decimals) {
    AppendFixed(text_, value, width, decimals);
    return *this;
  }
  Row& Scientific(float value, int width, int decimals, int exponentDigits) {
    return Add(FormatScientific(value, width, decimals, exponentDigits));
  }
  Row& Text(std::string_view text, int width) { return Add(FormatText(text, width)); }
  Row& Blank() { return Add(" "); }
  Row& Add(std::string_view piece) {
    text_ += piece;
    return *this;
  }
  const std::string& Str() const { return text_; }

 private:
  std::string text_;
};

}  // namespace tov
