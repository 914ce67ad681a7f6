#pragma once
// Descriptive statistics of one variable.

#include "core/Array.h"

namespace tov {

// STAT(1..15) of UVSTA.  Rows 1..8: mean, variance (divisor n - 1),
// standard deviation, skewness and excess kurtosis (divisor n), minimum,
// maximum, range; row 10: the count of valid values.  The other rows are
// not formed and hold NaN.
using UnivariateStatistics = FixedArray<float, 15>;

// Statistics of the n values of x; values that are not a number are
// skipped.  The two confidence levels are accepted for the traditional
// call but no confidence limits are formed.
void UVSTA(int n, const float* x, float confidenceMean, float confidenceVariance, UnivariateStatistics& stat);

}  // namespace tov
