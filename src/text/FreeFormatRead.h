#pragma once
// One free-format read statement over a TextInput.  Items are taken in
// order by Integer, Real and Text; values are separated by blanks or
// commas, may cross line ends, may be quoted ('...' or "..." with a
// doubled quote inside), may be repeated (n*value) or null (n*, or an
// empty place between commas), and a slash ends the read leaving the
// remaining items as they were.  Finish drops what remains on the last line
// touched, so the next read starts on a new line.
//
//   FreeFormatRead read(input);
//   bool ok = read.Integer(count) && read.Real(limit) && read.Finish();
//
// A failed item (end of file, a value that does not convert) fails the
// whole read; later items then fail too and leave their targets alone.

#include <cstdint>
#include <string>
#include <string_view>

#include "text/TextInput.h"

namespace tov {

class FreeFormatRead {
 public:
  explicit FreeFormatRead(TextInput& input) : input_(input) {}

  bool Integer(std::int32_t& item);
  bool Real(float& item);
  // The text is cut to length characters, or filled with blanks up to it.
  bool Text(std::string& item, std::size_t length);
  // Passes over up to most of the next items when they are certainly null
  // (after a slash, or inside a repeat n*), leaving their targets as they
  // were, without looking at the file; returns how many.  A long run of
  // nulls thus costs no more than one item.
  std::int64_t SkipNulls(std::int64_t most);
  // Passes over up to most of the next items when they repeat the value
  // just read (inside a repeat n*value); returns how many.  The caller gives
  // them that value, so a long repeat costs one item and a copy.
  std::int64_t SkipRepeats(std::int64_t most);
  // Ends the read; true when every item was read or passed over.  A read
  // of no items still takes one line, and fails at the end of the file.
  bool Finish();

  // What the read leaves on the last line it touched, which Finish drops
  // (from the slash on, when a slash ended the read), and whether a slash
  // ended it.  Only looked at, never acted on: for the input linter.
  std::string_view Unread() const { return haveLine_ ? line_.substr(pos_) : std::string_view(); }
  bool EndedBySlash() const { return ended_; }

 private:
  enum class Outcome { Value, Null, Fail };
  struct Value {
    std::string Text;
    bool Quoted = false;
  };

  Outcome NextValue(Value& value);
  // Takes the next value into an item by store, which tells whether the
  // value fits the item; a null value leaves the item as it is.
  template <class Store>
  bool Item(Store store);
  bool SkipBlanks();
  bool ReadQuoted(Value& value);
  std::string ReadUnquoted();

  TextInput& input_;
  std::string_view line_;
  std::size_t pos_ = 0;
  bool haveLine_ = false;
  bool afterValue_ = false;  // a value was read and its separator not yet seen
  bool ended_ = false;       // a slash ended the read
  bool failed_ = false;
  bool itemRequested_ = false;
  std::int64_t repeatLeft_ = 0;
  bool repeatNull_ = false;
  Value repeatValue_;
};

// Value conversions of the reader, also used on single tokens.
bool ParseInteger(std::string_view token, std::int32_t& value);
bool ParseReal(std::string_view token, float& value);

}  // namespace tov
