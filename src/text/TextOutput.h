#pragma once
// A text file written line by line, and the console.

#include <cstdio>
#include <string>
#include <string_view>

namespace tov {

class TextOutput {
 public:
  TextOutput() = default;
  TextOutput(const TextOutput&) = delete;
  TextOutput& operator=(const TextOutput&) = delete;
  ~TextOutput() { Close(); }

  // A new file, replacing any old one; false when it cannot be created.
  bool Create(const std::string& path);
  // Appends to an existing file; false when it cannot be opened.
  bool Append(const std::string& path);
  void Close();
  bool IsOpen() const { return file_ != nullptr; }

  void WriteLine(std::string_view line);
  // Part of a line: the next piece continues it.
  void Write(std::string_view piece);

 private:
  std::FILE* file_ = nullptr;
};

// One line on standard output.
void WriteConsoleLine(std::string_view line);

}  // namespace tov
