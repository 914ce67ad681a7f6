#include "mapping/MarkerEffects.h"

#include <cmath>

namespace tov {

namespace {

float ZeroIfNaN(float value) { return std::isnan(value) ? 0.0f : value; }

}  // namespace

void MarkSignificant(float threshold, MarkerTestTable& table) {
  for (int m = 1; m <= table.NumTests; ++m) {
    MarkerTest& test = table.Test(m);
    if (!HasNaN(test) && test.LOD(1) > threshold) test.Significant = LogicalTrue;
  }
}

void GenotypeEffects(const FixedArray<float, 2>& means, float& mean, float& add) {
  mean = ZeroIfNaN(0.5f * means(1) + 0.5f * means(2));
  add = ZeroIfNaN(0.5f * means(1) - 0.5f * means(2));
}

float MarkerGeneticVariance(const FixedArray<float, 2>& freqs, const FixedArray<float, 2>& means) {
  const float total = freqs(1) + freqs(2);
  const float p1 = freqs(1) / total;
  const float p2 = freqs(2) / total;
  const float mu = p1 * means(1) + p2 * means(2);
  const float q = p1 * (means(1) * means(1)) + p2 * (means(2) * means(2));
  return ZeroIfNaN(q - mu * mu);
}

float SumGeneticVariance(const MarkerTestTable& table) {
  float sum = 0.0f;
  for (int m = 1; m <= table.NumTests; ++m) {
    const MarkerTest& test = table.Test(m);
    if (test.Significant != LogicalFalse) sum = sum + MarkerGeneticVariance(test.GroupFreq, test.GroupMean);
  }
  return sum;
}

}  // namespace tov
