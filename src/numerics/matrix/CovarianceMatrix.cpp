#include "numerics/matrix/CovarianceMatrix.h"

#include <cstring>
#include <vector>

#include "numerics/basic/Basic.h"

namespace tov {
namespace {

// Columns are packed in panels of this many, interleaved by observation.
constexpr int kPanel = 8;

// Eight floats side by side; each lane is an independent float, added and
// multiplied on its own, so a lane's sum keeps its order.
typedef float Lanes __attribute__((vector_size(kPanel * sizeof(float))));

// sums[r][c] = sum over observations, in order and from 0.0, of
// a(r) * b(c), for the two panels a and b.  The 64 sums run side by side,
// one row of them per vector.  Built for AVX2 as well where it exists: the
// lanes round exactly as scalar floats do.
__attribute__((target_clones("avx2", "default"))) void PanelPairSums(int numObs, const float* a, const float* b,
                                                                      float sums[kPanel][kPanel]) {
  Lanes s[kPanel] = {};
  for (int l = 0; l < numObs; ++l) {
    const float* x = a + static_cast<std::size_t>(l) * kPanel;
    Lanes y;
    std::memcpy(&y, b + static_cast<std::size_t>(l) * kPanel, sizeof y);
    for (int r = 0; r < kPanel; ++r) s[r] = s[r] + x[r] * y;
  }
  for (int r = 0; r < kPanel; ++r) std::memcpy(sums[r], &s[r], sizeof s[r]);
}

}  // namespace

void CovarianceOfColumns(int numObs, int numCols, const Array<float, 2>& columns, Array<float, 2>& C) {
  // A pair with a missing value has fewer observations than numObs: such
  // columns go through ColumnCovariance itself.  For the others the means
  // are formed once, exactly as ColumnCovariance forms them for a complete
  // pair.
  std::vector<char> hasMissing(static_cast<std::size_t>(numCols) + 1, numObs < 1);
  std::vector<float> mean(static_cast<std::size_t>(numCols) + 1, 0.0f);
  const float count = static_cast<float>(numObs);
  for (int j = 1; j <= numCols; ++j) {
    float sum = 0.0f;
    for (int l = 1; l <= numObs; ++l) {
      const float x = columns(l, j);
      if (IsMissingValue(x)) hasMissing[j] = true;
      sum = sum + x;
    }
    mean[j] = sum / count;
  }

  const int numPanels = (numCols + kPanel - 1) / kPanel;
  const std::size_t panelSize = static_cast<std::size_t>(numObs) * kPanel;
  std::vector<float> panels(static_cast<std::size_t>(numPanels) * panelSize, 0.0f);
  // Indices rather than pointers: with no observations the panels are empty
  // and have no storage to point into.
  for (int j = 1; j <= numCols; ++j) {
    const std::size_t first = static_cast<std::size_t>((j - 1) / kPanel) * panelSize + (j - 1) % kPanel;
    for (int l = 1; l <= numObs; ++l) panels[first + static_cast<std::size_t>(l - 1) * kPanel] = columns(l, j);
  }

  // Each pair once, mirrored: x * y and y * x are the same float, so both
  // halves are exactly what ColumnCovariance gives in either order.
  float sums[kPanel][kPanel];
  for (int q = 0; q < numPanels; ++q) {
    for (int p = 0; p <= q; ++p) {
      PanelPairSums(numObs, panels.data() + p * panelSize, panels.data() + q * panelSize, sums);
      for (int c = 0; c < kPanel; ++c) {
        const int j = q * kPanel + c + 1;
        if (j > numCols || hasMissing[j]) continue;
        for (int r = 0; r < kPanel; ++r) {
          const int i = p * kPanel + r + 1;
          if (i > j || hasMissing[i]) continue;
          const float value = sums[r][c] / count - mean[i] * mean[j];
          C(i, j) = value;
          C(j, i) = value;
        }
      }
    }
  }

  for (int j = 1; j <= numCols; ++j) {
    if (!hasMissing[j]) continue;
    for (int i = 1; i <= numCols; ++i) {
      const float value = ColumnCovariance(numObs, &columns(1, i), &columns(1, j));
      C(i, j) = value;
      C(j, i) = value;
    }
  }
}

}  // namespace tov
