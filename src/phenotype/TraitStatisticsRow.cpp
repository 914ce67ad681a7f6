#include "phenotype/TraitStatisticsRow.h"

#include "text/Format.h"

namespace tov {

std::string FormatTraitStatisticsRow(int traitId, std::string_view name, const TraitSummary& summary) {
  Row row;
  row.Integer(traitId, 12).Blank().Text(name, 19).Integer(summary.Valid, 12);
  for (int i = 1; i <= 8; ++i) row.Fixed(summary.Stat(i), 12, 4);
  row.Fixed(summary.W, 12, 4).Scientific(summary.P, 12, 4, 2);
  return row.Str();
}

void TraitStatisticsRow(TextOutput& unit, int n, const float* values, int traitId, std::string_view name) {
  unit.WriteLine(FormatTraitStatisticsRow(traitId, name, SummarizeLineMeans(n, values)));
}

}  // namespace tov
