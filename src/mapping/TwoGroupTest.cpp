#include "mapping/TwoGroupTest.h"

#include <cstdint>

#include "mapping/LogDensity.h"
#include "numerics/basic/LaneSelect.h"

namespace tov {

namespace {

template <int Lanes>
__attribute__((always_inline)) inline void TestInLanes(int n, const char* codes, std::ptrdiff_t stride, const float* y, MarkerTest* records) {
  std::int32_t numA[Lanes] = {}, numB[Lanes] = {};
  float sumTyped[Lanes] = {}, sumA[Lanes] = {}, sumB[Lanes] = {};
  for (int l = 0; l < n; ++l) {
    const char* c = codes + l * stride;
    const float value = y[l];
    for (int j = 0; j < Lanes; ++j) {
      const bool isA = c[j] == 'A';
      const bool isB = c[j] == 'B';
      numA[j] += isA;
      numB[j] += isB;
      sumTyped[j] = sumTyped[j] + KeepIf(isA | isB, value);
      sumA[j] = sumA[j] + KeepIf(isA, value);
      sumB[j] = sumB[j] + KeepIf(isB, value);
    }
  }

  float mean0[Lanes], meanA[Lanes], meanB[Lanes];
  for (int j = 0; j < Lanes; ++j) {
    const std::int32_t typed = numA[j] + numB[j];
    mean0[j] = sumTyped[j] / static_cast<float>(typed);
    meanA[j] = sumA[j] / static_cast<float>(numA[j]);
    meanB[j] = sumB[j] / static_cast<float>(numB[j]);
  }

  float ss0[Lanes] = {}, ssA[Lanes] = {}, ssB[Lanes] = {};
  for (int l = 0; l < n; ++l) {
    const char* c = codes + l * stride;
    const float value = y[l];
    for (int j = 0; j < Lanes; ++j) {
      const bool isA = c[j] == 'A';
      const bool isB = c[j] == 'B';
      const float d0 = value - mean0[j];
      const float dA = value - meanA[j];
      const float dB = value - meanB[j];
      const float square0 = d0 * d0;
      const float squareA = dA * dA;
      const float squareB = dB * dB;
      ss0[j] = ss0[j] + KeepIf(isA | isB, square0);
      ssA[j] = ssA[j] + KeepIf(isA, squareA);
      ssB[j] = ssB[j] + KeepIf(isB, squareB);
    }
  }

  // Both variances keep the divisor nA + nB - 1.
  float constant0[Lanes], constant1[Lanes], twoV0[Lanes], twoV1[Lanes];
  for (int j = 0; j < Lanes; ++j) {
    const float divisor = static_cast<float>(numA[j] + numB[j] - 1);
    const float v0 = ss0[j] / divisor;
    const float v1 = (ssA[j] + ssB[j]) / divisor;
    constant0[j] = LogDensityConstant(v0);
    constant1[j] = LogDensityConstant(v1);
    twoV0[j] = 2.0f * v0;
    twoV1[j] = 2.0f * v1;
  }

  float logL0[Lanes] = {}, logL1[Lanes] = {};
  for (int l = 0; l < n; ++l) {
    const char* c = codes + l * stride;
    const float value = y[l];
    for (int j = 0; j < Lanes; ++j) {
      const bool isA = c[j] == 'A';
      const bool isB = c[j] == 'B';
      const float groupMean = Choose(isA, meanA[j], meanB[j]);
      const float density0 = constant0[j] - LogDensityDeviation(value, mean0[j], twoV0[j]);
      const float density1 = constant1[j] - LogDensityDeviation(value, groupMean, twoV1[j]);
      logL0[j] = logL0[j] + KeepIf(isA | isB, density0);
      logL1[j] = logL1[j] + KeepIf(isA | isB, density1);
    }
  }

  for (int j = 0; j < Lanes; ++j) {
    MarkerTest& record = records[j];
    const float lod = logL1[j] - logL0[j];
    record.LOD(1) = OneNaN(lod < 0.0f ? 0.0f : lod);
    record.GroupMean(1) = OneNaN(meanA[j]);
    record.GroupMean(2) = OneNaN(meanB[j]);
    const std::int32_t typed = numA[j] + numB[j];
    record.GroupFreq(1) = OneNaN(static_cast<float>(numA[j]) / static_cast<float>(typed));
    record.GroupFreq(2) = OneNaN(static_cast<float>(numB[j]) / static_cast<float>(typed));
  }
}

}  // namespace

// Built for AVX-512 and AVX2 as well, the widest chosen at run time: the
// lanes round exactly as scalar floats do.
__attribute__((target_clones("avx512f", "avx2", "default"))) void TwoGroupBlock(int n, const char* codes,
                                                                                 std::ptrdiff_t stride, const float* y,
                                                                                 MarkerTest* records) {
  TestInLanes<TwoGroupBlockWidth>(n, codes, stride, y, records);
}

void TwoGroupOne(int n, const char* codes, std::ptrdiff_t stride, const float* y, MarkerTest& record) {
  TestInLanes<1>(n, codes, stride, y, &record);
}

void TwoGroupTest(int n, const char* codes, const float* y, float& LOD, FixedArray<float, 2>& means,
                  FixedArray<float, 2>& freqs) {
  MarkerTest record;
  TwoGroupOne(n, codes, 1, y, record);
  LOD = record.LOD(1);
  means = record.GroupMean;
  freqs = record.GroupFreq;
}

}  // namespace tov
