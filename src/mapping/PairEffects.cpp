#include "mapping/PairEffects.h"

#include <cmath>
#include <vector>

namespace tov {

namespace {

float ZeroIfNaN(float value) { return std::isnan(value) ? 0.0f : value; }

// sum from 0.0 of weight(k) * means[k], k in order.
float Contrast(const float* means, const float (&weight)[4]) {
  float sum = 0.0f;
  for (int k = 0; k < 4; ++k) sum = sum + weight[k] * means[k];
  return ZeroIfNaN(sum);
}

// (sum of w x squared) - (sum of w x) squared, both sums from 0.0 in order.
float WeightedVariance(int count, const float* weight, const float* x) {
  float squares = 0.0f;
  float sum = 0.0f;
  for (int k = 0; k < count; ++k) {
    squares = squares + weight[k] * (x[k] * x[k]);
    sum = sum + weight[k] * x[k];
  }
  return squares - sum * sum;
}

void Store(float* place, float value) {
  if (place != nullptr) *place = value;
}

}  // namespace

void PairEffects(const float* means, float& mean, float& add1, float& add2, float& addbyadd) {
  mean = Contrast(means, {0.25f, 0.25f, 0.25f, 0.25f});
  add1 = Contrast(means, {0.25f, 0.25f, -0.25f, -0.25f});
  add2 = Contrast(means, {0.25f, -0.25f, 0.25f, -0.25f});
  addbyadd = Contrast(means, {0.25f, -0.25f, -0.25f, 0.25f});
}

void TwoWayVariance(int r, int c, const float* freqs, const float* means, float* VT, float* V1, float* V2,
                    float* V12) {
  const auto cells = static_cast<std::size_t>(r < 0 || c < 0 ? 0 : r * c);
  const auto at = [c](int a, int b) { return static_cast<std::size_t>(a * c + b); };  // 0-based a, b
  const auto rows = static_cast<std::size_t>(r < 0 ? 0 : r);
  const auto columns = static_cast<std::size_t>(c < 0 ? 0 : c);
  // One piece of scratch for the shares, margins, effects and interactions,
  // on the stack for the tables of a pair and the like.
  const std::size_t scratch = 2 * cells + 2 * rows + 2 * columns;
  float small[64] = {};
  std::vector<float> large(scratch > std::size(small) ? scratch : 0);
  float* p = scratch > std::size(small) ? large.data() : small;
  float* rowShare = p + cells;
  float* columnShare = rowShare + rows;
  float* rowEffect = columnShare + columns;
  float* columnEffect = rowEffect + rows;
  float* interaction = columnEffect + columns;

  float total = 0.0f;
  for (std::size_t k = 0; k < cells; ++k) total = total + freqs[k];
  float mu = 0.0f;
  for (std::size_t k = 0; k < cells; ++k) {
    p[k] = freqs[k] / total;
    mu = mu + p[k] * means[k];
  }

  for (int a = 0; a < r; ++a)
    for (int b = 0; b < c; ++b) rowShare[a] = rowShare[a] + p[at(a, b)];
  for (int b = 0; b < c; ++b)
    for (int a = 0; a < r; ++a) columnShare[b] = columnShare[b] + p[at(a, b)];

  // Each main effect weighted by the margin of the other factor.
  for (int a = 0; a < r; ++a) {
    float sum = 0.0f;
    for (int b = 0; b < c; ++b) sum = sum + columnShare[b] * means[at(a, b)];
    rowEffect[a] = sum - mu;
  }
  for (int b = 0; b < c; ++b) {
    float sum = 0.0f;
    for (int a = 0; a < r; ++a) sum = sum + rowShare[a] * means[at(a, b)];
    columnEffect[b] = sum - mu;
  }
  for (int a = 0; a < r; ++a)
    for (int b = 0; b < c; ++b)
      interaction[at(a, b)] = means[at(a, b)] - rowEffect[a] - columnEffect[b] - mu;

  float squares = 0.0f;
  for (std::size_t k = 0; k < cells; ++k) squares = squares + p[k] * (means[k] * means[k]);
  const float vt = squares - mu * mu;
  float v1 = WeightedVariance(r, rowShare, rowEffect);
  float v2 = WeightedVariance(c, columnShare, columnEffect);
  float v12 = WeightedVariance(static_cast<int>(cells), p, interaction);

  const float scale = vt / (v1 + v2 + v12);
  v1 = v1 * scale;
  v2 = v2 * scale;
  v12 = v12 * scale;
  Store(VT, ZeroIfNaN(v1 + v2 + v12));
  Store(V1, ZeroIfNaN(v1));
  Store(V2, ZeroIfNaN(v2));
  Store(V12, ZeroIfNaN(v12));
}

void PairVariance(const PairTest& test, float& VT, float& V12) {
  TwoWayVariance(2, 2, test.CellFreq.Element.data(), test.CellMean.Element.data(), &VT, nullptr, nullptr, &V12);
}

void MarkSignificantPairs(float threshold, PairTestTable& table) {
  for (int p = 1; p <= table.NumTests; ++p) {
    PairTest& test = table.Test(p);
    if (!HasNaN(test) && test.LOD(1) > threshold) test.Significant = LogicalTrue;
  }
}

float SumPairVariance(const PairTestTable& table) {
  float sum = 0.0f;
  for (int p = 1; p <= table.NumTests; ++p) {
    const PairTest& test = table.Test(p);
    if (test.Significant == LogicalFalse) continue;
    float vt = 0.0f;
    float v12 = 0.0f;
    PairVariance(test, vt, v12);
    sum = sum + vt;
  }
  return sum;
}

}  // namespace tov
