#pragma once
// One row of the trait statistics table of ".sta": the descriptive
// statistics and the W test of normality of a list of line means.

#include <string>
#include <string_view>

#include "core/Array.h"
#include "text/TextOutput.h"

namespace tov {

// What a row shows.  Stat holds mean, variance, standard deviation,
// skewness, excess kurtosis, minimum, maximum and range.
struct TraitSummary {
  int Valid = 0;
  FixedArray<float, 8> Stat;
  float W = 0.0f;
  float P = 0.0f;
};

// The summary of the valid ones among n values.  Without any valid value
// every field but Valid holds the missing code.  Above 2000 valid values
// the W test rests on a random sample of 2000 of them, drawn from the
// run's stream.
TraitSummary SummarizeLineMeans(int n, const float* values);

// The row: TraitID, a blank, the trimmed name in 19 columns, then Valid,
// the eight statistics and W with 4 decimals and P as 0.1234E-02, each in
// 12 columns.
std::string FormatTraitStatisticsRow(int traitId, std::string_view name, const TraitSummary& summary);

// Summarises the values and writes their row.
void TraitStatisticsRow(TextOutput& unit, int n, const float* values, int traitId, std::string_view name);

}  // namespace tov
