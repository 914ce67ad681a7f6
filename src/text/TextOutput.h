#pragma once
// A text file written line by line, and the console.

#include <cstdio>
#include <memory>
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
  // Files are written through a buffer of this size: the tables of a large
  // pair scan run to tens of megabytes, and small writes would cost a
  // system call every few kilobytes.
  static constexpr std::size_t BufferSize = 1 << 18;
  void UseLargeBuffer();

  std::FILE* file_ = nullptr;
  std::unique_ptr<char[]> buffer_;
};

// One line on standard output.
void WriteConsoleLine(std::string_view line);

}  // namespace tov
