#include "tools/report/StaAnova.h"

#include <utility>

#include "text/Format.h"

namespace tov {

namespace {

constexpr std::size_t AnovaWidth = 15;

Layout Fifteens(std::size_t count) {
  Layout layout;
  static const char* const Titles[] = {"1", "2", "3", "4", "5", "6"};
  for (std::size_t i = 0; i < count; ++i) layout.Fields.push_back({Titles[i], AnovaWidth});
  return layout;
}

// The (TraitID, environment) of each analysis in the order written: each
// environment of a trait, then "Across" when the trait has several.
std::vector<std::pair<std::string, std::string>> AnalysisLabels(const TextTable& statistics) {
  std::vector<std::pair<std::string, std::string>> labels;
  for (std::size_t r = 0; r < statistics.Rows.size();) {
    const std::string& trait = statistics.Rows[r][0];
    std::size_t rows = 0;
    while (r + rows < statistics.Rows.size() && statistics.Rows[r + rows][0] == trait) ++rows;
    const std::size_t environments = rows > 1 ? rows - 1 : 1;
    for (std::size_t e = 1; e <= environments; ++e) labels.push_back({trait, std::to_string(e)});
    if (environments > 1) labels.push_back({trait, "Across"});
    r += rows;
  }
  return labels;
}

}  // namespace

AnovaTables ReadAnovaTables(const std::vector<std::string>& lines, const TextTable& statistics) {
  AnovaTables tables;
  tables.Fit.Header = {"TraitID", "Environment", "R-square(%)", "AdjustedR^2(%)", "Est.Std.Dev.", "Mean"};
  tables.Sources.Header = {"TraitID", "Environment", "Part", "Source", "DF", "SS", "MS", "F", "P"};
  const auto labels = AnalysisLabels(statistics);
  std::size_t analysis = 0;
  std::pair<std::string, std::string> label;
  std::string part;
  for (std::size_t i = statistics.Rows.size() + 1; i < lines.size(); ++i) {
    const std::string_view text = TrimBoth(lines[i]);
    if (text.starts_with("R-square") && i + 1 < lines.size()) {
      label =
          analysis < labels.size() ? labels[analysis] : std::make_pair(std::string("?"), std::to_string(analysis + 1));
      ++analysis;
      part = "all";
      std::vector<std::string> row = {label.first, label.second};
      for (std::string& field : SplitFixed(lines[++i], Fifteens(4))) row.push_back(std::move(field));
      tables.Fit.Rows.push_back(std::move(row));
    } else if (text == "Variation due to the model") {
      part = "model";
    } else if (text.starts_with("Source")) {
      for (; i + 1 < lines.size() && !TrimBoth(lines[i + 1]).empty(); ++i) {
        std::vector<std::string> row = {label.first, label.second, part};
        for (std::string& field : SplitFixed(lines[i + 1], Fifteens(6))) row.push_back(std::move(field));
        tables.Sources.Rows.push_back(std::move(row));
      }
    }
  }
  return tables;
}

}  // namespace tov
