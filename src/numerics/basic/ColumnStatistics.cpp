// One-pass 32-bit column statistics that skip missing values.  The sums
// run from 0.0 in index order and the moments are formed from raw sums
// ("sum of squares over M less the squared mean"): with large means this
// loses digits, and that loss is part of the defined results.

#include <cmath>

#include "numerics/basic/Basic.h"
#include "numerics/basic/PairSums.h"

namespace tov {
namespace {

constexpr float kMissingCode = -9999.0f;
constexpr float kMissingTolerance = 0.0001f;

struct ColumnSums {
  int Valid = 0;
  float Sum = 0.0f;
  float SumOfSquares = 0.0f;
};

ColumnSums SumColumn(int n, const float* x, int* numMissing) {
  ColumnSums sums;
  for (int i = 0; i < n; ++i) {
    if (IsMissingValue(x[i])) continue;
    ++sums.Valid;
    sums.Sum += x[i];
    sums.SumOfSquares += x[i] * x[i];
  }
  if (numMissing != nullptr) *numMissing = (n > 0 ? n : 0) - sums.Valid;
  return sums;
}

// A pair counts only when both of its values are present.  The covariance
// needs no squares, and it is the hot one (a whole matrix of it per
// selection), so the squares are summed only on demand.
template <bool kWithSquares>
PairSums SumPairs(int n, const float* x, const float* y, int* numMissing) {
  PairSums sums;
  for (int i = 0; i < n; ++i) {
    if (IsMissingValue(x[i]) || IsMissingValue(y[i])) continue;
    ++sums.Valid;
    sums.SumX += x[i];
    sums.SumY += y[i];
    if constexpr (kWithSquares) {
      sums.SumXX += x[i] * x[i];
      sums.SumYY += y[i] * y[i];
    }
    sums.SumXY += x[i] * y[i];
  }
  if (numMissing != nullptr) *numMissing = (n > 0 ? n : 0) - sums.Valid;
  return sums;
}

}  // namespace

bool IsMissingValue(float value) {
  return std::isnan(value) || std::fabs(value - kMissingCode) < kMissingTolerance;
}

float MeanOfValid(int n, const float* x, int* numMissing) {
  const ColumnSums sums = SumColumn(n, x, numMissing);
  if (sums.Valid < 1) return AMACH(6);
  return sums.Sum / static_cast<float>(sums.Valid);
}

float ColumnVariance(int n, const float* x, int* numMissing) {
  const ColumnSums sums = SumColumn(n, x, numMissing);
  if (sums.Valid <= 1) return AMACH(6);
  const float m = static_cast<float>(sums.Valid);
  const float population = PopulationMoment(sums.SumOfSquares, sums.Sum, sums.Sum, m);
  return population * m / static_cast<float>(sums.Valid - 1);
}

float ColumnCovariance(int n, const float* x, const float* y, int* numMissing) {
  const PairSums sums = SumPairs<false>(n, x, y, numMissing);
  if (sums.Valid < 1) return AMACH(6);
  return PopulationMoment(sums.SumXY, sums.SumX, sums.SumY, static_cast<float>(sums.Valid));
}

float CorrelationOfSums(const PairSums& sums) {
  if (sums.Valid < 1) return AMACH(6);
  const float m = static_cast<float>(sums.Valid);
  const float covariance = PopulationMoment(sums.SumXY, sums.SumX, sums.SumY, m);
  const float varianceX = PopulationMoment(sums.SumXX, sums.SumX, sums.SumX, m);
  const float varianceY = PopulationMoment(sums.SumYY, sums.SumY, sums.SumY, m);
  return covariance / std::sqrt(varianceX * varianceY);
}

float CorrelationOfValid(int n, const float* x, const float* y, int* numMissing) {
  return CorrelationOfSums(SumPairs<true>(n, x, y, numMissing));
}

}  // namespace tov
