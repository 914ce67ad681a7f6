#pragma once
// What the linter found, in the order found: warnings (input that the
// program accepts, or refuses, but that a user almost surely did not mean)
// and notes (what the run will do that is worth knowing).  Findings of one
// kind beyond the first few are counted, not printed.

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

namespace tov {

// "1 value", "2 values".
std::string Counted(std::size_t count, std::string_view noun);

class Findings {
 public:
  // line 0 names no line.  kind groups findings for the count.
  void Warn(std::string_view file, std::size_t line, std::string_view kind, std::string_view text);
  void Note(std::string_view file, std::size_t line, std::string_view kind, std::string_view text);
  // The counts of the findings that were not printed, and the verdict.
  void Close();
  bool HasWarnings() const { return warnings_ > 0; }

  static constexpr std::size_t ShownPerKind = 5;

 private:
  void Add(bool warning, std::string_view file, std::size_t line, std::string_view kind, std::string_view text);

  std::size_t warnings_ = 0;
  std::map<std::string, std::size_t, std::less<>> perKind_;
};

}  // namespace tov
