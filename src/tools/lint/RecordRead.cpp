#include "tools/lint/RecordRead.h"

#include <fstream>

#include "text/Format.h"
#include "text/FreeFormatRead.h"

namespace tov {

namespace {

// Long enough for any name or value a user writes; only the tokens matter.
constexpr std::size_t ItemLength = 1024;

bool IsSeparator(char c) { return c == ' ' || c == '\t' || c == ','; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

std::vector<std::string_view> SplitOn(std::string_view text, bool (*separates)(char)) {
  std::vector<std::string_view> words;
  std::size_t i = 0;
  while (i < text.size()) {
    while (i < text.size() && separates(text[i])) ++i;
    const std::size_t start = i;
    while (i < text.size() && !separates(text[i])) ++i;
    if (i > start) words.push_back(text.substr(start, i - start));
  }
  return words;
}

// The words of the lines, split at blanks, with quoted texts left out.
std::vector<std::string> UnquotedWords(const LintedFile& file, const Record& record) {
  std::vector<std::string> words;
  for (std::size_t n = record.FirstLine; n <= record.LastLine; ++n) {
    std::string word;
    char quote = 0;
    for (const char c : file.Line(n)) {
      if (quote != 0) {
        if (c == quote) quote = 0;
      } else if (c == '\'' || c == '"') {
        quote = c;
      } else if (c == ' ' || c == '\t') {
        if (!word.empty()) words.push_back(std::move(word));
        word.clear();
      } else {
        word += c;
      }
    }
    if (!word.empty()) words.push_back(std::move(word));
  }
  return words;
}

}  // namespace

bool LintedFile::Open(const std::string& name) {
  name_ = name;
  lines_.clear();
  if (!input_.Open(name)) return false;
  std::ifstream file(name, std::ios::binary);
  for (std::string line; std::getline(file, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines_.push_back(std::move(line));
  }
  return lines_.size() == input_.LinesLeft();
}

Record LintedFile::Read(std::size_t numItems, bool skipComments) {
  if (skipComments) SkipComments(input_);
  Record record;
  record.FirstLine = NextLine();
  FreeFormatRead read(input_);
  std::string item;
  bool ok = true;
  for (std::size_t i = 0; ok && i < numItems; ++i) {
    item.clear();
    ok = read.Text(item, ItemLength);
    if (ok) record.Items.emplace_back(TrimTrailing(item));
  }
  record.LastLine = NextLine() - 1;
  record.EndedBySlash = read.EndedBySlash();
  record.Unread = read.Unread();
  record.Complete = read.Finish() && ok;
  return record;
}

std::size_t LintedFile::LinesNotRead() {
  std::size_t count = 0;
  std::string_view line;
  while (input_.NextLine(line))
    if (line.find_first_not_of(" \t") != std::string_view::npos && line.front() != '!') ++count;
  return count;
}

void CheckRecord(const LintedFile& file, const Record& record, std::string_view what, std::string_view hint,
                 Findings& findings) {
  const std::string subject(what);
  if (file.Line(record.FirstLine).starts_with("!"))
    findings.Warn(file.Name(), record.FirstLine, "comment line read as data",
                  "this comment line stands inside a block and is read as " + subject);
  if (record.EndedBySlash) {
    const std::size_t column = file.Line(record.LastLine).size() - record.Unread.size() + 1;
    findings.Warn(file.Name(), record.LastLine, "slash ends a read",
                  "the slash in column " + std::to_string(column) + " ends the read of " + subject +
                      ": its later items keep the values of the row before (a name with a slash must be quoted)");
  } else if (const std::size_t extra = SplitOn(record.Unread, IsSeparator).size(); extra > 0) {
    findings.Warn(file.Name(), record.LastLine, "more values than the read takes",
                  subject + " has " + Counted(extra, "value") + " more than the " +
                      Counted(record.Items.size(), "item") + " the read takes, and the rest of the line is ignored" +
                      std::string(hint));
  }
  const std::vector<std::string> words = UnquotedWords(file, record);
  if (words.size() < 2) return;  // a row written with commas alone
  for (const std::string& word : words) {
    const std::size_t comma = word.find(',', 1);
    if (comma == std::string::npos || comma + 1 == word.size()) continue;
    const bool decimal = IsDigit(word[comma - 1]) && IsDigit(word[comma + 1]);
    findings.Warn(file.Name(), record.FirstLine, decimal ? "decimal comma" : "comma inside a name",
                  "in " + subject + " \"" + word + "\" is read as two values: a comma separates values" +
                      (decimal ? " (write a decimal point)" : " (quote a name with a comma)"));
  }
}

}  // namespace tov
