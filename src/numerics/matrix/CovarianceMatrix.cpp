#include "numerics/matrix/CovarianceMatrix.h"

#include <cstring>

#include "numerics/basic/Basic.h"

namespace tov {
namespace {

// Columns are packed in panels of this many, interleaved by observation.
constexpr int kPanel = 8;
// Panels summed side by side in one pass over the observations, so that
// independent sums hide each other's latency.
constexpr int kPanelsAtOnce = 4;

// Eight floats side by side; each lane is an independent float, added and
// multiplied on its own, so a lane's sum keeps its order.
typedef float Lanes __attribute__((vector_size(kPanel * sizeof(float))));

// sums[c] = sum over observations, in order and from 0.0, of x(l) * b(l, c)
// for the columns c of each of count panels starting at b; one lane per
// column.  Built for AVX2 as well where it exists: the lanes round exactly
// as scalar floats do.
template <int kCount>
void PanelRowSums(int numObs, const float* x, const float* b, std::size_t panelSize, float* sums) {
  Lanes s[kCount] = {};
  for (int l = 0; l < numObs; ++l) {
    Lanes xl;
    for (int c = 0; c < kPanel; ++c) xl[c] = x[l];
    const float* at = b + static_cast<std::size_t>(l) * kPanel;
    for (int p = 0; p < kCount; ++p) {
      Lanes v;
      std::memcpy(&v, at + p * panelSize, sizeof v);
      s[p] = s[p] + xl * v;
    }
  }
  std::memcpy(sums, s, sizeof s);
}

__attribute__((target_clones("avx2", "default"))) void RowSums(int numObs, const float* x, int numPanels,
                                                                const float* panels, std::size_t panelSize,
                                                                float* sums) {
  int q = 0;
  for (; q + kPanelsAtOnce <= numPanels; q += kPanelsAtOnce)
    PanelRowSums<kPanelsAtOnce>(numObs, x, panels + q * panelSize, panelSize, sums + q * kPanel);
  for (; q < numPanels; ++q) PanelRowSums<1>(numObs, x, panels + q * panelSize, panelSize, sums + q * kPanel);
}

// sums[c] = sum over observations of b(l, c) * b(l, c), per panel.
__attribute__((target_clones("avx2", "default"))) void SquareSums(int numObs, int numPanels, const float* panels,
                                                                   std::size_t panelSize, float* sums) {
  for (int q = 0; q < numPanels; ++q) {
    Lanes s = {};
    for (int l = 0; l < numObs; ++l) {
      Lanes v;
      std::memcpy(&v, panels + q * panelSize + static_cast<std::size_t>(l) * kPanel, sizeof v);
      s = s + v * v;
    }
    std::memcpy(sums + q * kPanel, &s, sizeof s);
  }
}

}  // namespace

CovarianceRows::CovarianceRows(int numObs, int numCols)
    : numObs_(numObs < 0 ? 0 : numObs),
      numCols_(numCols),
      numPanels_((numCols + kPanel - 1) / kPanel),
      panelSize_(static_cast<std::size_t>(numObs_) * kPanel),
      panels_(static_cast<std::size_t>(numPanels_) * panelSize_, 0.0f),
      mean_(static_cast<std::size_t>(numCols) + 1, 0.0f),
      hasMissing_(static_cast<std::size_t>(numCols) + 1, numObs < 1) {}

void CovarianceRows::SetColumn(int j, const float* values) {
  // The mean is formed once, exactly as ColumnCovariance forms it for a
  // complete pair.
  float sum = 0.0f;
  float* panel = panels_.data() + static_cast<std::size_t>((j - 1) / kPanel) * panelSize_ + (j - 1) % kPanel;
  for (int l = 0; l < numObs_; ++l) {
    if (IsMissingValue(values[l])) hasMissing_[static_cast<std::size_t>(j)] = true;
    sum = sum + values[l];
    panel[static_cast<std::size_t>(l) * kPanel] = values[l];
  }
  mean_[static_cast<std::size_t>(j)] = sum / static_cast<float>(numObs_);
}

void CovarianceRows::ColumnOf(int j, std::vector<float>& values) const {
  values.resize(static_cast<std::size_t>(numObs_));
  const float* panel = panels_.data() + static_cast<std::size_t>((j - 1) / kPanel) * panelSize_ + (j - 1) % kPanel;
  for (int l = 0; l < numObs_; ++l) values[static_cast<std::size_t>(l)] = panel[static_cast<std::size_t>(l) * kPanel];
}

float CovarianceRows::PairwiseCovariance(int i, int j) const {
  std::vector<float> x;
  std::vector<float> y;
  ColumnOf(i, x);
  ColumnOf(j, y);
  return ColumnCovariance(numObs_, x.data(), y.data());
}

void CovarianceRows::Row(int i, Array<float, 1>& row) const {
  row.Allocate(numCols_);
  std::vector<float> x;
  ColumnOf(i, x);
  std::vector<float> sums(static_cast<std::size_t>(numPanels_) * kPanel);
  RowSums(numObs_, x.data(), numPanels_, panels_.data(), panelSize_, sums.data());
  const float count = static_cast<float>(numObs_);
  for (int j = 1; j <= numCols_; ++j) {
    const auto uj = static_cast<std::size_t>(j);
    if (hasMissing_[static_cast<std::size_t>(i)] || hasMissing_[uj])
      row(j) = PairwiseCovariance(i, j);
    else
      row(j) = sums[uj - 1] / count - mean_[static_cast<std::size_t>(i)] * mean_[uj];
  }
}

void CovarianceRows::Diagonal(Array<float, 1>& diagonal) const {
  diagonal.Allocate(numCols_);
  std::vector<float> sums(static_cast<std::size_t>(numPanels_) * kPanel);
  SquareSums(numObs_, numPanels_, panels_.data(), panelSize_, sums.data());
  const float count = static_cast<float>(numObs_);
  for (int j = 1; j <= numCols_; ++j) {
    const auto uj = static_cast<std::size_t>(j);
    if (hasMissing_[uj])
      diagonal(j) = PairwiseCovariance(j, j);
    else
      diagonal(j) = sums[uj - 1] / count - mean_[uj] * mean_[uj];
  }
}

}  // namespace tov
