#pragma once
// A text file seen as a sequence of lines with a cursor that can step back
// one line, which is what the comment skipper needs.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tov {

class TextInput {
 public:
  // Reads the whole file; false when it cannot be opened.
  bool Open(const std::string& path);
  // Serves a text as a one-line file, for reading a value out of a token.
  void OpenText(std::string_view text);
  void Close();
  bool IsOpen() const { return open_; }

  // The next line, without its line end; false at end of file.
  bool NextLine(std::string_view& line);
  // Steps back over the line just read; after a read that hit the end of
  // the file it only undoes that, so the next read meets the end again.
  void BackOneLine();
  // Lines not yet read: an upper bound on the rows a reader can still find.
  std::size_t LinesLeft() const { return lines_.size() - next_; }

 private:
  std::vector<std::string> lines_;
  std::size_t next_ = 0;
  bool hitEnd_ = false;
  bool open_ = false;
};

// True when a file (or a folder) of that name exists.
bool FileExists(const std::string& path);

// Passes over blank lines and lines with '!' in the first column, looking
// at the first 128 characters of each, and leaves the stream before the
// first other line (or at the end of the file).
void SkipComments(TextInput& input);

}  // namespace tov
