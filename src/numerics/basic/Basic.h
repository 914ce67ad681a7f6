#pragma once
// Missing-value aware column statistics, guarded division, machine
// constants and the analysis-of-variance summary.  All 32-bit, one pass,
// sums from 0.0 in index order: the lost digits are part of the results.

#include "core/Array.h"

namespace tov {

// AOV(1..15): model, error and total DF; model, error and total SS; model
// and error MS; F; P of F; R-square %; adjusted R-square %; est. std. dev.;
// mean; coefficient of variation %.
using AovTable = FixedArray<float, 15>;

// True for a not-a-number and for the missing code -9999.0.
bool IsMissingValue(float value);

// x has n elements; numMissing, when given, receives the skipped count.
float MeanOfValid(int n, const float* x, int* numMissing = nullptr);
float ColumnVariance(int n, const float* x, int* numMissing = nullptr);
float ColumnCovariance(int n, const float* x, const float* y, int* numMissing = nullptr);
float CorrelationOfValid(int n, const float* x, const float* y, int* numMissing = nullptr);

// a / b without a trap: NaN in, NaN out; flushes to 0.0 or infinity.
float GuardedDivide(float a, float b);

// 1 smallest normal, 2 largest, 3 2^-24, 4 2^-23, 5 log10(2), 6 NaN,
// 7 +infinity, 8 -infinity; any other i raises an error and gives NaN.
float AMACH(int i);

// Fills aov from the model and error degrees of freedom and sums of squares.
void G1AOV(float dfr, float ssr, float dfe, float sse, float mean, AovTable& aov);

// P of an F with dfr and dfe degrees of freedom: NaN for a NaN F or a DF
// that is not positive, 0.0 for an infinite F.
float FProbability(float f, float dfr, float dfe);

}  // namespace tov
