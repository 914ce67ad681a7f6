// One pass over the values with updating formulas for the central moments:
// the running mean is kept in 64 bits and the sums of powers of deviations
// in 32 bits, each updated from the older, lower moments.

#include "numerics/statistics/UnivariateStatistics.h"

#include <cmath>

#include "numerics/basic/Basic.h"
#include "numerics/basic/ErrorPolicy.h"

namespace tov {
namespace {

// The one variable of the call, as the messages number it.
constexpr int kVariable = 1;

struct MomentSums {
  int Count = 0;
  double Mean = 0.0;
  float Second = 0.0f;
  float Third = 0.0f;
  float Fourth = 0.0f;
  float Minimum = 0.0f;
  float Maximum = 0.0f;
};

// Adds one value; the fourth moment needs the old second and third, the
// third the old second, so the order of the updates matters.
void AddValue(MomentSums& s, float x) {
  ++s.Count;
  const double n = s.Count;
  const double d = x - s.Mean;
  const double e = d / n;
  s.Fourth = static_cast<float>(s.Fourth + d * d * d * d * (n - 1.0) * (n * n - 3.0 * n + 3.0) / (n * n * n) +
                                6.0 * e * e * s.Second - 4.0 * e * s.Third);
  s.Third = static_cast<float>(s.Third + d * d * d * (n - 1.0) * (n - 2.0) / (n * n) - 3.0 * e * s.Second);
  s.Second = static_cast<float>(s.Second + d * d * (n - 1.0) / n);
  s.Mean = s.Mean + e;
  if (s.Count == 1 || x < s.Minimum) s.Minimum = x;
  if (s.Count == 1 || x > s.Maximum) s.Maximum = x;
}

void Warn(const char* pattern) { RaiseError(SeverityWarningRepaired, "UVSTA", FillMessage(pattern, {kVariable})); }

}  // namespace

void UVSTA(int n, const float* x, float /*confidenceMean*/, float /*confidenceVariance*/,
           UnivariateStatistics& stat) {
  const float nan = AMACH(6);
  stat.Fill(nan);
  MomentSums sums;
  for (int i = 0; i < n; ++i)
    if (!std::isnan(x[i])) AddValue(sums, x[i]);
  stat(10) = static_cast<float>(sums.Count);
  if (sums.Count >= 1) {
    stat(1) = static_cast<float>(sums.Mean);
    stat(6) = sums.Minimum;
    stat(7) = sums.Maximum;
    stat(8) = sums.Maximum - sums.Minimum;
  }
  if (sums.Count < 2) {
    Warn("Fewer than two valid observations are present for variable %(I1).");
    return;
  }
  const float range = stat(8);
  if (range == 0.0f) {
    for (int row = 2; row <= 5; ++row) stat(row) = 0.0f;
    Warn("The observations on variable %(I1) are constant.");
    return;
  }

  // Below these ranges the powers of the deviations may underflow, so the
  // moments that need them are not formed.
  const float tiny = AMACH(1);
  const bool hasSecond = range >= std::sqrt(tiny);
  const bool hasThird = range >= std::cbrt(tiny);
  const bool hasFourth = range >= std::sqrt(std::sqrt(tiny));
  const float count = static_cast<float>(sums.Count);
  if (hasSecond) {
    stat(2) = sums.Second / (count - 1.0f);
    stat(3) = std::sqrt(stat(2));
  }
  const float s2 = sums.Second / count;
  const float s = std::sqrt(s2);
  if (hasThird) stat(4) = sums.Third / (count * (s * s * s));
  if (hasFourth) stat(5) = sums.Fourth / (count * (s2 * s2)) - 3.0f;
  if (!hasThird || !hasFourth)
    Warn("Since the range of variable %(I1) is very small, the higher moments are not computed.");
}

}  // namespace tov
