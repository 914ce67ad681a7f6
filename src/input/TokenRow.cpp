#include "input/TokenRow.h"

namespace tov {

void TokenRow::GrowTo(std::int64_t k) {
  if (tokens_.size() < Offset(k + 1)) tokens_.resize(Offset(k + 1), ' ');
}

bool TokenRow::Read(FreeFormatRead& read, std::int64_t k) {
  scratch_.assign(Token(k));
  if (!read.Text(scratch_, width_)) return false;
  Set(k, scratch_);
  return true;
}

std::string_view TokenRow::Token(std::int64_t k) const {
  if (Offset(k + 1) > tokens_.size()) return blank_;
  return std::string_view(tokens_).substr(Offset(k), width_);
}

void TokenRow::Set(std::int64_t k, std::string_view text) {
  GrowTo(k);
  const std::string_view cut = text.substr(0, width_);
  tokens_.replace(Offset(k), width_, cut);
  tokens_.replace(Offset(k) + cut.size(), width_ - cut.size(), width_ - cut.size(), ' ');
}

}  // namespace tov
