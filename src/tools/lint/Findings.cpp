#include "tools/lint/Findings.h"

#include <cstdio>

namespace tov {

std::string Counted(std::size_t count, std::string_view noun) {
  return std::to_string(count).append(" ").append(noun).append(count == 1 ? "" : "s");
}

void Findings::Add(bool warning, std::string_view file, std::size_t line, std::string_view kind,
                   std::string_view text) {
  if (warning) ++warnings_;
  const std::size_t seen = ++perKind_[std::string(kind)];
  if (seen > ShownPerKind) return;
  std::string where(file);
  if (line > 0) where.append(":").append(std::to_string(line));
  std::printf("%s: %s: %.*s\n", where.c_str(), warning ? "warning" : "note", static_cast<int>(text.size()),
              text.data());
}

void Findings::Warn(std::string_view file, std::size_t line, std::string_view kind, std::string_view text) {
  Add(true, file, line, kind, text);
}

void Findings::Note(std::string_view file, std::size_t line, std::string_view kind, std::string_view text) {
  Add(false, file, line, kind, text);
}

void Findings::Close() {
  for (const auto& [kind, count] : perKind_)
    if (count > ShownPerKind) std::printf("... and %zu more of the kind \"%s\"\n", count - ShownPerKind, kind.c_str());
  std::printf("tov-lint: %s\n", warnings_ == 0 ? "no warnings" : Counted(warnings_, "warning").c_str());
}

}  // namespace tov
