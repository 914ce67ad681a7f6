#include "text/Format.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace tov {

namespace {

std::string Fit(std::string text, int width) {
  const auto w = static_cast<std::size_t>(width < 0 ? 0 : width);
  if (text.size() > w) return std::string(w, '*');
  return std::string(w - text.size(), ' ') + text;
}

// The word for a value that is not finite, in the longest form that fits.
std::string NotFinite(float value, int width) {
  if (std::isnan(value)) return Fit("NaN", width);
  const bool negative = value < 0.0f;
  const std::string longForm = negative ? "-Infinity" : "Infinity";
  if (static_cast<int>(longForm.size()) <= width) return Fit(longForm, width);
  return Fit(negative ? "-Inf" : "Inf", width);
}

// "0.5" and "-0.5" may lose their leading zero where the field needs it.
std::string DropLeadingZero(std::string text, int width) {
  if (static_cast<int>(text.size()) <= width) return text;
  const std::size_t zero = text[0] == '-' ? 1 : 0;
  if (text.compare(zero, 2, "0.") == 0) text.erase(zero, 1);
  return text;
}

// The digits of a real with 1 to 8 decimals whose scaled value stays below
// 1e15, without the general conversion: the value times 10^decimals is
// exact in 64 bits (24 + 27 bits of mantissa), so rounding it to an
// integer, ties to even, rounds the exact binary value as printf does.
bool ShortFixed(float value, int decimals, char* out, char*& end) {
  static constexpr double Scale[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8};
  if (decimals < 1 || decimals > 8) return false;
  const double scaled = std::fabs(static_cast<double>(value)) * Scale[decimals];
  if (!(scaled < 1e15)) return false;
  // Adding and taking away 2^52 leaves the nearest integer, ties to even,
  // in the default rounding; cheaper than a call of nearbyint.
  constexpr double Shift = 4503599627370496.0;
  auto units = static_cast<std::uint64_t>((scaled + Shift) - Shift);
  char digits[32];
  int count = 0;
  for (; count <= decimals || units != 0; units /= 10) digits[count++] = static_cast<char>('0' + units % 10);
  end = out;
  if (std::signbit(value)) *end++ = '-';
  while (count > 0) {
    if (count == decimals) *end++ = '.';
    *end++ = digits[--count];
  }
  return true;
}

}  // namespace

std::string FormatInteger(std::int64_t value, int width) { return Fit(std::to_string(value), width); }

std::string FormatFixed(float value, int width, int decimals) {
  if (!std::isfinite(value)) return NotFinite(value, width);
  // The exact binary value rounded to its decimals, digit for digit what
  // printf's "%#.*f" gives, at a fraction of its cost; with no decimals the
  // point stays.
  char buffer[128];
  char* shortEnd = nullptr;
  if (ShortFixed(value, decimals, buffer, shortEnd))
    return Fit(DropLeadingZero(std::string(buffer, shortEnd), width), width);
  const std::to_chars_result end =
      std::to_chars(buffer, buffer + sizeof buffer - 1, value, std::chars_format::fixed, decimals);
  if (end.ec != std::errc()) return Fit(std::string(sizeof buffer, '*'), width);
  char* last = end.ptr;
  if (decimals == 0) *last++ = '.';
  return Fit(DropLeadingZero(std::string(buffer, last), width), width);
}

void AppendFixed(std::string& out, float value, int width, int decimals) {
  char buffer[40];
  char* end = nullptr;
  if (!std::isfinite(value) || !ShortFixed(value, decimals, buffer, end)) {
    out += FormatFixed(value, width, decimals);
    return;
  }
  const auto w = static_cast<std::size_t>(width < 0 ? 0 : width);
  char* text = buffer;
  auto size = static_cast<std::size_t>(end - buffer);
  // As DropLeadingZero: "0." and "-0." lose the zero where the field needs it.
  const std::size_t zero = buffer[0] == '-' ? 1 : 0;
  if (size > w && buffer[zero] == '0' && buffer[zero + 1] == '.') {
    if (zero == 1) buffer[1] = '-';
    ++text;
    --size;
  }
  if (size > w) {
    out.append(w, '*');
    return;
  }
  out.append(w - size, ' ');
  out.append(text, size);
}

std::string FormatScientific(float value, int width, int decimals, int exponentDigits) {
  if (!std::isfinite(value)) return NotFinite(value, width);
  std::string mantissa;
  int exponent = 0;
  if (value != 0.0f) {
    // d significant digits as d.ddd e x, then shifted to 0.dddd e x+1.
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*e", decimals - 1, static_cast<double>(std::fabs(value)));
    const std::string text(buffer);
    const std::size_t e = text.find('e');
    mantissa = text.substr(0, 1) + (e > 2 ? text.substr(2, e - 2) : std::string());
    exponent = std::atoi(text.c_str() + e + 1) + 1;
  } else {
    mantissa.assign(static_cast<std::size_t>(decimals), '0');
  }
  std::string digits = std::to_string(std::abs(exponent));
  if (static_cast<int>(digits.size()) > exponentDigits) return std::string(static_cast<std::size_t>(width), '*');
  digits.insert(0, static_cast<std::size_t>(exponentDigits) - digits.size(), '0');
  std::string text = std::string(std::signbit(value) ? "-" : "") + "0." + mantissa + "E" + (exponent < 0 ? "-" : "+") + digits;
  return Fit(DropLeadingZero(text, width), width);
}

std::string FormatText(std::string_view text, int width) {
  const std::string_view trimmed = TrimTrailing(text);
  const auto w = static_cast<std::size_t>(width < 0 ? 0 : width);
  if (trimmed.size() >= w) return std::string(trimmed.substr(0, w));
  return std::string(w - trimmed.size(), ' ') + std::string(trimmed);
}

std::string_view TrimTrailing(std::string_view text) {
  const std::size_t last = text.find_last_not_of(' ');
  return last == std::string_view::npos ? std::string_view() : text.substr(0, last + 1);
}

std::string_view TrimBoth(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  return first == std::string_view::npos ? std::string_view() : TrimTrailing(text.substr(first));
}

}  // namespace tov
