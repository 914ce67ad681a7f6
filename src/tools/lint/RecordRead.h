#pragma once
// One free-format read of an input file as the program's readers make it,
// seen from outside: which lines it spans, what it took, what it left on
// its last line, whether a slash ended it.  Every item is taken as text,
// which consumes the same tokens as a read of numbers; the program's own
// readers judge the values afterwards.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "text/TextInput.h"
#include "tools/lint/Findings.h"

namespace tov {

struct Record {
  std::size_t FirstLine = 0;  // 1-based lines of the file
  std::size_t LastLine = 0;
  std::vector<std::string> Items;  // less trailing blanks
  bool Complete = false;           // false: the file ended first
  bool EndedBySlash = false;
  std::string Unread;  // what the read drops of its last line
};

class LintedFile {
 public:
  // False when the file cannot be read.
  bool Open(const std::string& name);
  const std::string& Name() const { return name_; }
  TextInput& Input() { return input_; }
  // The line the next read starts on, 1-based.
  std::size_t NextLine() const { return lines_.size() - input_.LinesLeft() + 1; }
  std::string_view Line(std::size_t number) const { return lines_[number - 1]; }
  std::size_t NumLines() const { return lines_.size(); }

  // Passes over comment lines and reads numItems items.
  Record Read(std::size_t numItems, bool skipComments);
  // The lines after the current one that hold something other than a
  // comment: what no read of the program ever takes.
  std::size_t LinesNotRead();

 private:
  std::string name_;
  TextInput input_;
  std::vector<std::string> lines_;
};

// The warnings of one record: values beyond the items of the read, a
// slash, a comma inside a word of a row that is written with blanks
// between its values, and a comment line read as a row.  what names the
// row ("the row of marker 3"); hint is added to the count of extra values.
void CheckRecord(const LintedFile& file, const Record& record, std::string_view what, std::string_view hint,
                 Findings& findings);

}  // namespace tov
