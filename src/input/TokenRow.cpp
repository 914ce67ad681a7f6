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
    const std::int64_t copies = read.SkipRepeats(count - k);
    if (copies > 0) Fill(k + 1, k + copies, scratch_);
    k += copies;
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

void TokenRow::Fill(std::int64_t first, std::int64_t last, std::string_view token) {
  // Blank tokens past the end of the row are there already.
  if (token == blank_) last = std::min(last, static_cast<std::int64_t>(tokens_.size() / width_));
  if (last < first) return;
  GrowTo(last);
  // The run of tokens already filled is copied after itself: a repeat of a
  // billion tokens takes some thirty copies.
  char* const start = tokens_.data() + Offset(first);
  const std::size_t total = Offset(last + 1) - Offset(first);
  std::copy(token.begin(), token.end(), start);
  for (std::size_t done = width_; done < total;) {
    const std::size_t n = std::min(done, total - done);
    std::copy(start, start + n, start + done);
    done += n;
  }
}

}  // namespace tov
