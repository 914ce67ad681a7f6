#pragma once
// The lines of the analysis-of-variance tables of ".sta": fields of 15
// columns, right-aligned.

#include <string>
#include <string_view>
#include <vector>

#include "numerics/basic/Basic.h"

namespace tov {

// The spellings of the summary heading: the one-way and the two-way tables
// differ in their blanks, and each keeps its own.
enum class SummarySpelling { OneWay, TwoWay };

// "R-square(%)", "AdjustedR^2(%)", "Est.Std.Dev.", "Mean" or the two-way
// spelling of them.
std::string SummaryHeading(SummarySpelling spelling);
// AOV 11, 12, 13, 14 with 4 decimals.
std::string SummaryValues(const AovTable& aov);
// "Source", "DF", "SS", "MS", "F", "P".
std::string SourceHeading();

// One row of a source table: the label, DF rounded to a whole number, then
// the first numValues of SS, MS, F (4 decimals) and P (0.1234E-002 form).
// A row stops after its last value.
struct SourceValues {
  float SS = 0.0f;
  float MS = 0.0f;
  float F = 0.0f;
  float P = 0.0f;
};
std::string SourceRow(std::string_view label, float df, const SourceValues& values, int numValues);

// The summary and the source table of a model: heading, values, an empty
// line, the source heading and the rows of model, error and total under the
// given labels.
struct AovLabels {
  std::string_view Model;
  std::string_view Error;
  std::string_view Total;
};
std::vector<std::string> AovTableLines(SummarySpelling spelling, const AovLabels& labels, const AovTable& aov);

}  // namespace tov
