#include "phenotype/TraitStatisticsRow.h"

#include <vector>

#include "numerics/basic/Basic.h"
#include "numerics/random/ReservoirSample.h"
#include "numerics/statistics/ShapiroWilk.h"
#include "numerics/statistics/UnivariateStatistics.h"
#include "core/RunData.h"
#include "text/Format.h"

namespace tov {

namespace {

// The most values the W test takes; a longer list is sampled down to it.
constexpr int WTestLimit = 2000;

// W and P of the values.  A list the test refuses (1 or 2 values) raises
// its error under the policy in force; when the run goes on, W and P show
// the missing code.
void WTest(const std::vector<float>& valid, float& w, float& p) {
  const int n = static_cast<int>(valid.size());
  int numMissing = 0;
  bool accepted = false;
  if (n <= WTestLimit) {
    accepted = SPWLK(n, valid.data(), w, p, numMissing);
  } else {
    std::vector<float> sample(WTestLimit);
    std::vector<int> index(WTestLimit);
    RNSRS(n, valid.data(), WTestLimit, sample.data(), index.data());
    accepted = SPWLK(WTestLimit, sample.data(), w, p, numMissing);
  }
  if (!accepted) {
    w = MissingValue;
    p = MissingValue;
  }
}

}  // namespace

TraitSummary SummarizeLineMeans(int n, const float* values) {
  std::vector<float> valid;
  valid.reserve(static_cast<std::size_t>(n > 0 ? n : 0));
  for (int i = 0; i < n; ++i)
    if (!IsMissingValue(values[i])) valid.push_back(values[i]);

  TraitSummary summary;
  summary.Valid = static_cast<int>(valid.size());
  if (valid.empty()) {
    summary.Stat.Fill(MissingValue);
    summary.W = MissingValue;
    summary.P = MissingValue;
    return summary;
  }
  UnivariateStatistics stat;
  UVSTA(summary.Valid, valid.data(), 95.0f, 95.0f, stat);
  for (int i = 1; i <= 8; ++i) summary.Stat(i) = stat(i);
  WTest(valid, summary.W, summary.P);
  return summary;
}

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
