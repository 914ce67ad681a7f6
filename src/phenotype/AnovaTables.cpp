#include "phenotype/AnovaTables.h"

#include <array>
#include <cmath>

#include "text/Format.h"

namespace tov {

namespace {

constexpr int FieldWidth = 15;

template <std::size_t N>
std::string Heading(const std::array<const char*, N>& titles) {
  Row row;
  for (const char* title : titles) row.Text(title, FieldWidth);
  return row.Str();
}

// DF is a whole number held as a real; it is written rounded to nearest,
// halves away from zero.
std::int64_t WholeDF(float df) { return std::llround(df); }

}  // namespace

std::string SummaryHeading(SummarySpelling spelling) {
  if (spelling == SummarySpelling::OneWay)
    return Heading(std::array{"R-square(%)", "AdjustedR^2(%)", "Est.Std.Dev.", "Mean"});
  return Heading(std::array{"R-square (%)", "AdjustedR^2(%)", "Est. Std. Dev.", "Mean"});
}

std::string SummaryValues(const AovTable& aov) {
  Row row;
  for (int i = 11; i <= 14; ++i) row.Fixed(aov(i), FieldWidth, 4);
  return row.Str();
}

std::string SourceHeading() { return Heading(std::array{"Source", "DF", "SS", "MS", "F", "P"}); }

std::string SourceRow(std::string_view label, float df, const SourceValues& values, int numValues) {
  Row row;
  row.Text(label, FieldWidth).Integer(WholeDF(df), FieldWidth);
  const std::array<float, 3> fixed = {values.SS, values.MS, values.F};
  for (int i = 0; i < numValues && i < 3; ++i) row.Fixed(fixed[static_cast<std::size_t>(i)], FieldWidth, 4);
  if (numValues >= 4) row.Scientific(values.P, FieldWidth, 4, 3);
  return row.Str();
}

std::vector<std::string> AovTableLines(SummarySpelling spelling, const AovLabels& labels, const AovTable& aov) {
  return {SummaryHeading(spelling),
          SummaryValues(aov),
          std::string(),
          SourceHeading(),
          SourceRow(labels.Model, aov(1), {aov(4), aov(7), aov(9), aov(10)}, 4),
          SourceRow(labels.Error, aov(2), {aov(5), aov(8)}, 2),
          SourceRow(labels.Total, aov(3), {aov(6)}, 1)};
}

}  // namespace tov
