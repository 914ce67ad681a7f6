#pragma once
// The running sums of one pair of columns over the rows where both values
// are present, and the correlation they give.  Shared by the pair-by-pair
// routine and the matrix routine, so that both end in the same operations.

namespace tov {

struct PairSums {
  int Valid = 0;
  float SumX = 0.0f;
  float SumY = 0.0f;
  float SumXX = 0.0f;
  float SumYY = 0.0f;
  float SumXY = 0.0f;
};

// E(xy) - E(x)E(y) with m as the divisor; also the population variance
// when x and y are one column.
inline float PopulationMoment(float sumXY, float sumX, float sumY, float m) {
  const float meanX = sumX / m;
  const float meanY = sumY / m;
  return sumXY / m - meanX * meanY;
}

// NaN when no row has both values.
float CorrelationOfSums(const PairSums& sums);

}  // namespace tov
