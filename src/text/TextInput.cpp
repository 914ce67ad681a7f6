#include "text/TextInput.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace tov {

namespace {

void SplitLines(std::string_view text, std::vector<std::string>& lines) {
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = text.find('\n', start);
    if (end == std::string_view::npos) end = text.size();
    std::string_view line = text.substr(start, end - start);
    // Files written on other systems end their lines with CR LF.
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    lines.emplace_back(line);
    start = end + 1;
  }
}

}  // namespace

bool FileExists(const std::string& path) {
  std::error_code error;
  return !path.empty() && std::filesystem::exists(path, error);
}

bool TextInput::Open(const std::string& path) {
  Close();
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) return false;
  std::ifstream file(path, std::ios::binary);
  if (!file) return false;
  const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  if (file.bad()) return false;
  SplitLines(text, lines_);
  open_ = true;
  return true;
}

void TextInput::OpenText(std::string_view text) {
  Close();
  lines_.emplace_back(text);
  open_ = true;
}

void TextInput::Close() {
  lines_.clear();
  next_ = 0;
  hitEnd_ = false;
  open_ = false;
}

bool TextInput::NextLine(std::string_view& line) {
  if (next_ >= lines_.size()) {
    hitEnd_ = true;
    return false;
  }
  hitEnd_ = false;
  line = lines_[next_++];
  return true;
}

void TextInput::BackOneLine() {
  if (hitEnd_) {
    hitEnd_ = false;
  } else if (next_ > 0) {
    --next_;
  }
}

void SkipComments(TextInput& input) {
  constexpr std::size_t BufferLength = 128;
  std::string_view line;
  while (input.NextLine(line)) {
    const std::string_view buffer = line.substr(0, BufferLength);
    if (buffer.find_first_not_of(' ') == std::string_view::npos) continue;
    if (buffer.front() == '!') continue;
    input.BackOneLine();
    return;
  }
  input.BackOneLine();
}

}  // namespace tov
