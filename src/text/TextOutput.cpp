#include "text/TextOutput.h"

#include <new>

namespace tov {

bool TextOutput::Create(const std::string& path) {
  Close();
  file_ = std::fopen(path.c_str(), "wb");
  UseLargeBuffer();
  return file_ != nullptr;
}

bool TextOutput::Append(const std::string& path) {
  Close();
  file_ = std::fopen(path.c_str(), "ab");
  UseLargeBuffer();
  return file_ != nullptr;
}

void TextOutput::Close() {
  if (file_ != nullptr) std::fclose(file_);
  file_ = nullptr;
  buffer_.reset();
}

// Without the memory for it the stream keeps its own buffer.
void TextOutput::UseLargeBuffer() {
  if (file_ == nullptr) return;
  buffer_.reset(new (std::nothrow) char[BufferSize]);
  if (buffer_ != nullptr) std::setvbuf(file_, buffer_.get(), _IOFBF, BufferSize);
}

void TextOutput::Write(std::string_view piece) {
  if (file_ != nullptr) std::fwrite(piece.data(), 1, piece.size(), file_);
}

void TextOutput::WriteLine(std::string_view line) {
  Write(line);
  Write("\n");
}

void WriteConsoleLine(std::string_view line) {
  std::fwrite(line.data(), 1, line.size(), stdout);
  std::fputc('\n', stdout);
}

}  // namespace tov
