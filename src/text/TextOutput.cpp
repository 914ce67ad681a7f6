#include "text/TextOutput.h"

namespace tov {

bool TextOutput::Create(const std::string& path) {
  Close();
  file_ = std::fopen(path.c_str(), "wb");
  return file_ != nullptr;
}

bool TextOutput::Append(const std::string& path) {
  Close();
  file_ = std::fopen(path.c_str(), "ab");
  return file_ != nullptr;
}

void TextOutput::Close() {
  if (file_ != nullptr) std::fclose(file_);
  file_ = nullptr;
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
