#include <charconv>
#include <string>

#include "numerics/basic/ErrorPolicy.h"

namespace tov {
namespace {

std::string RealText(float value) {
  char buffer[32];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  return std::string(buffer, result.ptr);
}

template <class T>
const T* Nth(std::initializer_list<T> values, std::size_t number) {
  if (number < 1 || number > values.size()) return nullptr;
  return values.begin() + (number - 1);
}

}  // namespace

std::string FillMessage(std::string_view pattern, std::initializer_list<long long> integers,
                        std::initializer_list<float> reals, std::initializer_list<std::string_view> names) {
  std::string text;
  std::size_t pos = 0;
  while (pos < pattern.size()) {
    // A placeholder is "%(" kind digits ")".
    const std::size_t open = pattern.find("%(", pos);
    if (open == std::string_view::npos) break;
    text.append(pattern.substr(pos, open - pos));
    const std::size_t close = pattern.find(')', open);
    const bool wellFormed = close != std::string_view::npos && close >= open + 4;
    std::string replacement;
    bool found = false;
    if (wellFormed) {
      const char kind = pattern[open + 2];
      std::size_t number = 0;
      const std::string_view digits = pattern.substr(open + 3, close - open - 3);
      const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), number);
      if (parsed.ec == std::errc() && parsed.ptr == digits.data() + digits.size()) {
        if (kind == 'I' && Nth(integers, number)) {
          replacement = std::to_string(*Nth(integers, number));
          found = true;
        }
        if (kind == 'R' && Nth(reals, number)) {
          replacement = RealText(*Nth(reals, number));
          found = true;
        }
        if (kind == 'L' && Nth(names, number)) {
          replacement = std::string(*Nth(names, number));
          found = true;
        }
      }
    }
    if (!found) {
      // Not one of ours, or no value for it: keep the text as written.
      const std::size_t end = wellFormed ? close + 1 : open + 2;
      text.append(pattern.substr(open, end - open));
      pos = end;
    } else {
      text += replacement;
      pos = close + 1;
    }
  }
  if (pos < pattern.size()) text.append(pattern.substr(pos));
  return text;
}

}  // namespace tov
