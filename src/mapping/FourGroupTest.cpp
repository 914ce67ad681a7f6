#include "mapping/FourGroupTest.h"

#include "mapping/LogDensity.h"
#include "mapping/PairEffects.h"
#include "numerics/basic/LaneSelect.h"

namespace tov {

void PairLods(float L0, float L1, float L2, FixedArray<float, 2>& LOD) {
  LOD(1) = L1 - L2;
  LOD(2) = L1 - L0;
  if (LOD(1) < 0.0f) LOD(1) = 0.0f;
  if (LOD(2) < 0.0f) LOD(2) = 0.0f;
  if (LOD(1) > LOD(2)) LOD(1) = LOD(2);
  LOD(1) = OneNaN(LOD(1));
  LOD(2) = OneNaN(LOD(2));
}

void FourGroupTest(int n, const char* codes1, const char* codes2, const float* y, FixedArray<float, 2>& LOD,
                   FixedArray<float, 4>& means, FixedArray<float, 4>& freqs) {
  std::int32_t count[5] = {};
  float sum[5] = {};  // [0] over all cells
  for (int l = 0; l < n; ++l) {
    const int k = PairCell(codes1[l], codes2[l]);
    if (k == 0) continue;
    ++count[k];
    sum[0] = sum[0] + y[l];
    sum[k] = sum[k] + y[l];
  }
  const std::int32_t total = count[1] + count[2] + count[3] + count[4];
  const float m0 = sum[0] / static_cast<float>(total);
  for (int k = 1; k <= 4; ++k) {
    means(k) = sum[k] / static_cast<float>(count[k]);
    freqs(k) = static_cast<float>(count[k]) / static_cast<float>(total);
  }
  float mean = 0.0f, add1 = 0.0f, add2 = 0.0f, addbyadd = 0.0f;
  PairEffects(means.Data(), mean, add1, add2, addbyadd);
  const float additive[5] = {0.0f, mean + add1 + add2, mean + add1 - add2, mean - add1 + add2, mean - add1 - add2};

  float ss0 = 0.0f, ss1 = 0.0f, ss2 = 0.0f;
  for (int l = 0; l < n; ++l) {
    const int k = PairCell(codes1[l], codes2[l]);
    if (k == 0) continue;
    ss0 = ss0 + (y[l] - m0) * (y[l] - m0);
    ss1 = ss1 + (y[l] - means(k)) * (y[l] - means(k));
    ss2 = ss2 + (y[l] - additive[k]) * (y[l] - additive[k]);
  }
  const float divisor = static_cast<float>(total - 1);
  const float v0 = ss0 / divisor, v1 = ss1 / divisor, v2 = ss2 / divisor;

  float L0 = 0.0f, L1 = 0.0f, L2 = 0.0f;
  for (int l = 0; l < n; ++l) {
    const int k = PairCell(codes1[l], codes2[l]);
    if (k == 0) continue;
    L0 = L0 + LogDensity10(y[l], m0, v0);
    L1 = L1 + LogDensity10(y[l], means(k), v1);
    L2 = L2 + LogDensity10(y[l], additive[k], v2);
  }
  PairLods(L0, L1, L2, LOD);
}

}  // namespace tov
