#include <algorithm>

#include "numerics/statistics/Anova.h"

namespace tov {
namespace {

// Responses that are all the same leave no variation at all; the means
// formed in single precision need not reproduce the value exactly, so
// this case is recognised before any deviation is formed.
bool AllEqual(int total, const float* y) {
  return std::all_of(y, y + total, [first = y[0]](float value) { return value == first; });
}

}  // namespace

void AONEW(int ngroup, const int* ni, const float* y, AovTable& aov) {
  int total = 0;
  for (int i = 0; i < ngroup; ++i) total += ni[i];

  Array<float, 1> groupMean(ngroup);
  float grandSum = 0.0f;
  const float* group = y;
  for (int i = 1; i <= ngroup; ++i) {
    float sum = 0.0f;
    for (int j = 0; j < ni[i - 1]; ++j) sum += group[j];
    groupMean(i) = GuardedDivide(sum, static_cast<float>(ni[i - 1]));
    grandSum += sum;
    group += ni[i - 1];
  }
  const float mean = GuardedDivide(grandSum, static_cast<float>(total));

  float ssModel = 0.0f;
  float ssError = 0.0f;
  const bool constant = total > 0 && AllEqual(total, y);
  if (!constant) {
    group = y;
    for (int i = 1; i <= ngroup; ++i) {
      const float between = groupMean(i) - mean;
      ssModel += static_cast<float>(ni[i - 1]) * (between * between);
      float within = 0.0f;
      for (int j = 0; j < ni[i - 1]; ++j) {
        const float deviation = group[j] - groupMean(i);
        within += deviation * deviation;
      }
      ssError += within;
      group += ni[i - 1];
    }
  }
  const float dfModel = static_cast<float>(ngroup - 1);
  const float dfError = static_cast<float>(total - 1) - dfModel;
  G1AOV(dfModel, ssModel, dfError, ssError, mean, aov);
}

}  // namespace tov
