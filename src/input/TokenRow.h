#pragma once
// The scratch row of text tokens of a genotype or phenotype row, one token
// of fixed width for each LineID.  The row keeps its tokens from one read
// to the next: a read ended early by a slash, or a null value, leaves the
// token of the row before.  A token never read is blank.  The row grows
// only as tokens are really read, so that a head count the file cannot
// back costs no memory before the read fails.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "text/FreeFormatRead.h"

namespace tov {

class TokenRow {
 public:
  explicit TokenRow(std::size_t width) : width_(width), blank_(width, ' ') {}

  // Reads the tokens of LineIDs 1 to count as the next items of the read.
  // Null items leave their tokens alone and do not grow the row.
  bool Read(FreeFormatRead& read, std::int64_t count);
  // The token of LineID k, at its full width.
  std::string_view Token(std::int64_t k) const;
  // Replaces the token of LineID k, cut or blank-filled to the width.
  void Set(std::int64_t k, std::string_view text);
  // Sets the tokens of LineIDs first to last to one token of full width.
  void Fill(std::int64_t first, std::int64_t last, std::string_view token);

  std::size_t Width() const { return width_; }

 private:
  std::size_t Offset(std::int64_t k) const { return static_cast<std::size_t>(k - 1) * width_; }
  void GrowTo(std::int64_t k);

  std::size_t width_;
  std::string blank_;
  std::string tokens_;   // the tokens read so far, side by side
  std::string scratch_;  // one token on its way through a read
};

}  // namespace tov
