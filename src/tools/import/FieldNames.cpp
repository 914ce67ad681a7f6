#include "tools/import/FieldNames.h"

#include <set>

#include "text/Format.h"

namespace tov {

namespace {

bool NeedsQuotes(std::string_view name) {
  if (name.empty() || name.front() == '!') return true;
  if (name.find_first_of(" \t,/'\"") != std::string_view::npos) return true;
  // Digits and a star make a repeat count: 3*x is three values x.
  const std::size_t digits = name.find_first_not_of("0123456789");
  return digits != 0 && digits != std::string_view::npos && name[digits] == '*';
}

std::string WithoutControls(std::string name) {
  for (char& c : name)
    if (static_cast<unsigned char>(c) < 32 || c == 127) c = '_';
  return name;
}

}  // namespace

std::vector<std::string> FitNames(const std::vector<std::string>& names, std::size_t length) {
  std::vector<std::string> fitted(names.size());
  std::set<std::string, std::less<>> taken;
  std::vector<std::size_t> toCut;
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::string clean = WithoutControls(names[i]);
    if (clean == names[i] && clean.size() <= length && taken.insert(std::string(TrimTrailing(clean))).second) {
      fitted[i] = clean;
    } else {
      toCut.push_back(i);
    }
  }
  for (const std::size_t i : toCut) {
    const std::string clean = WithoutControls(names[i]);
    std::string candidate(TrimTrailing(clean.substr(0, length)));
    for (int n = 1; candidate.empty() || taken.count(candidate) > 0; ++n) {
      const std::string suffix = std::string(1, '~').append(std::to_string(n));
      candidate = std::string(TrimTrailing(clean.substr(0, length - suffix.size()))) + suffix;
    }
    taken.insert(candidate);
    fitted[i] = candidate;
  }
  return fitted;
}

std::string QuotedIfNeeded(std::string_view name) {
  if (!NeedsQuotes(name)) return std::string(name);
  std::string quoted = "\"";
  for (const char c : name) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + '"';
}

}  // namespace tov
