#include "input/TokenRow.h"

#include <algorithm>

namespace tov {

void TokenRow::GrowTo(std::int64_t k) {
  if (tokens_.size() < Offset(k + 1)) tokens_.resize(Offset(k + 1), ' ');
}

bool TokenRow::Read(FreeFormatRead& read, std::int64_t count) {
  for (std::int64_t k = 1; k <= count; ++k) {
    k += read.SkipNulls(count - k + 1);
    if (k > count) break;
    const std::string_view before = Token(k);
    scratch_.assign(before);
    if (!read.Text(scratch_, width_)) return false;
    if (scratch_ != before) Set(k, scratch_);
  }
  return true;
}

std::string_view TokenRow::Token(std::int64_t k) const {
  if (Offset(k + 1) > tokens_.size()) return blank_;
  return std::string_view(tokens_).substr(Offset(k), width_);
}

void TokenRow::Set(std::int64_t k, std::string_view text) {
  GrowTo(k);
  const std::string_view cut = text.substr(0, width_);
  const auto start = tokens_.begin() + static_cast<std::ptrdiff_t>(Offset(k));
  std::fill(std::copy(cut.begin(), cut.end(), start), start + static_cast<std::ptrdiff_t>(width_), ' ');
}

}  // namespace tov
