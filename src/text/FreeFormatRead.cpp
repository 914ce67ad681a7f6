#include "text/FreeFormatRead.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <limits>

namespace tov {

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t'; }
bool EndsUnquoted(char c) { return IsBlank(c) || c == ',' || c == '/'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i]))) return false;
  return true;
}

}  // namespace

bool ParseInteger(std::string_view token, std::int32_t& value) {
  std::size_t i = 0;
  bool negative = false;
  if (i < token.size() && (token[i] == '+' || token[i] == '-')) negative = token[i++] == '-';
  if (i == token.size()) return false;
  std::int64_t magnitude = 0;
  for (; i < token.size(); ++i) {
    if (!IsDigit(token[i])) return false;
    magnitude = magnitude * 10 + (token[i] - '0');
    if (magnitude > std::int64_t{std::numeric_limits<std::int32_t>::max()} + 1) return false;
  }
  const std::int64_t signedValue = negative ? -magnitude : magnitude;
  if (signedValue > std::numeric_limits<std::int32_t>::max()) return false;
  value = static_cast<std::int32_t>(signedValue);
  return true;
}

// Accepts [sign] mantissa [exponent] where the mantissa has digits on at
// least one side of an optional point and the exponent is a letter E, D or
// Q with an optional sign, or a bare sign, followed by digits; also the
// words Inf, Infinity and NaN in any case.  The value is rounded once to
// the nearest 32-bit real.
bool ParseReal(std::string_view token, float& value) {
  std::string normal;
  std::size_t i = 0;
  if (i < token.size() && (token[i] == '+' || token[i] == '-')) normal += token[i++];
  const std::string_view word = token.substr(i);
  if (EqualsIgnoringCase(word, "nan")) {
    value = std::numeric_limits<float>::quiet_NaN();
    return true;
  }
  if (EqualsIgnoringCase(word, "inf") || EqualsIgnoringCase(word, "infinity")) {
    value = normal == "-" ? -std::numeric_limits<float>::infinity() : std::numeric_limits<float>::infinity();
    return true;
  }
  std::size_t digits = 0;
  for (; i < token.size() && IsDigit(token[i]); ++i, ++digits) normal += token[i];
  if (i < token.size() && token[i] == '.') {
    normal += token[i++];
    for (; i < token.size() && IsDigit(token[i]); ++i, ++digits) normal += token[i];
  }
  if (digits == 0) return false;
  if (i < token.size()) {
    const char c = static_cast<char>(std::toupper(static_cast<unsigned char>(token[i])));
    if (c == 'E' || c == 'D' || c == 'Q') {
      ++i;
    } else if (c != '+' && c != '-') {
      return false;
    }
    normal += 'e';
    if (i < token.size() && (token[i] == '+' || token[i] == '-')) normal += token[i++];
    if (i == token.size()) return false;
    for (; i < token.size(); ++i) {
      if (!IsDigit(token[i])) return false;
      normal += token[i];
    }
  }
  value = std::strtof(normal.c_str(), nullptr);
  return true;
}

bool FreeFormatRead::SkipBlanks() {
  for (;;) {
    if (!haveLine_) {
      if (!input_.NextLine(line_)) return false;
      haveLine_ = true;
      pos_ = 0;
    }
    while (pos_ < line_.size() && IsBlank(line_[pos_])) ++pos_;
    if (pos_ < line_.size()) return true;
    haveLine_ = false;  // a line end separates like a blank
  }
}

// A quoted text may run on over line ends; the line ends add nothing.
bool FreeFormatRead::ReadQuoted(Value& value) {
  const char quote = line_[pos_++];
  value.Quoted = true;
  for (;;) {
    if (pos_ >= line_.size()) {
      if (!input_.NextLine(line_)) return false;
      pos_ = 0;
      continue;
    }
    const char c = line_[pos_++];
    if (c != quote) {
      value.Text += c;
    } else if (pos_ < line_.size() && line_[pos_] == quote) {
      value.Text += quote;
      ++pos_;
    } else {
      return true;
    }
  }
}

std::string FreeFormatRead::ReadUnquoted() {
  const std::size_t start = pos_;
  while (pos_ < line_.size() && !EndsUnquoted(line_[pos_])) ++pos_;
  return std::string(line_.substr(start, pos_ - start));
}

bool FreeFormatRead::Finish() {
  std::string_view line;
  if (!itemRequested_ && !failed_ && !input_.NextLine(line)) failed_ = true;
  return !failed_;
}

FreeFormatRead::Outcome FreeFormatRead::NextValue(Value& value) {
  itemRequested_ = true;
  if (failed_) return Outcome::Fail;
  if (repeatLeft_ > 0) {
    --repeatLeft_;
    if (repeatNull_) return Outcome::Null;
    value = repeatValue_;
    return Outcome::Value;
  }
  if (ended_) return Outcome::Null;
  for (;;) {
    if (!SkipBlanks()) {
      failed_ = true;
      return Outcome::Fail;
    }
    const char c = line_[pos_];
    if (c == ',') {
      ++pos_;
      if (afterValue_) {
        afterValue_ = false;
        continue;
      }
      return Outcome::Null;
    }
    if (c == '/') {
      ended_ = true;
      return Outcome::Null;
    }
    break;
  }
  afterValue_ = true;
  value = Value();
  if (line_[pos_] == '\'' || line_[pos_] == '"') {
    if (ReadQuoted(value)) return Outcome::Value;
    failed_ = true;
    return Outcome::Fail;
  }
  std::string token = ReadUnquoted();
  // n*value and n*: a count of digits then a star.
  std::size_t digits = 0;
  while (digits < token.size() && IsDigit(token[digits])) ++digits;
  if (digits == 0 || digits >= token.size() || token[digits] != '*') {
    value.Text = std::move(token);
    return Outcome::Value;
  }
  std::int32_t count = 0;
  if (!ParseInteger(std::string_view(token).substr(0, digits), count) || count < 1) {
    failed_ = true;
    return Outcome::Fail;
  }
  const std::size_t afterStar = pos_ - token.size() + digits + 1;
  if (afterStar < line_.size() && (line_[afterStar] == '\'' || line_[afterStar] == '"')) {
    pos_ = afterStar;
    repeatValue_ = Value();
    if (!ReadQuoted(repeatValue_)) {
      failed_ = true;
      return Outcome::Fail;
    }
    repeatNull_ = false;
  } else {
    repeatNull_ = digits + 1 == token.size();
    repeatValue_ = Value{token.substr(digits + 1), false};
  }
  repeatLeft_ = count;
  return NextValue(value);
}

std::int64_t FreeFormatRead::SkipNulls(std::int64_t most) {
  if (failed_ || most <= 0) return 0;
  std::int64_t skipped = 0;
  if (repeatLeft_ > 0 && repeatNull_) {
    skipped = std::min(most, repeatLeft_);
    repeatLeft_ -= skipped;
  } else if (ended_ && repeatLeft_ == 0) {
    skipped = most;
  }
  if (skipped > 0) itemRequested_ = true;
  return skipped;
}

std::int64_t FreeFormatRead::SkipRepeats(std::int64_t most) {
  if (failed_ || most <= 0 || repeatLeft_ == 0 || repeatNull_) return 0;
  const std::int64_t skipped = std::min(most, repeatLeft_);
  repeatLeft_ -= skipped;
  return skipped;
}

template <class Store>
bool FreeFormatRead::Item(Store store) {
  Value value;
  switch (NextValue(value)) {
    case Outcome::Null:
      return true;
    case Outcome::Fail:
      return false;
    case Outcome::Value:
      break;
  }
  if (!store(value)) failed_ = true;
  return !failed_;
}

bool FreeFormatRead::Integer(std::int32_t& item) {
  return Item([&](const Value& value) { return !value.Quoted && ParseInteger(value.Text, item); });
}

bool FreeFormatRead::Real(float& item) {
  return Item([&](const Value& value) { return !value.Quoted && ParseReal(value.Text, item); });
}

bool FreeFormatRead::Text(std::string& item, std::size_t length) {
  return Item([&](const Value& value) {
    item = value.Text.substr(0, length);
    item.resize(length, ' ');
    return true;
  });
}

}  // namespace tov
