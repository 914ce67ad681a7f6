#pragma once
// Approximate expected values of normal order statistics (Royston's
// AS 177), the weights of the W test for larger samples.

namespace tov {

// Inverse of the standard normal distribution function at p in (0, 1);
// 0.0 at p = 0 or 1, the ends it cannot reach (Wichura's AS 241, the
// sixteen-digit form, rounded once to single precision).
float InverseNormal(float p);

// Correction of the tail area of the i-th largest score in a sample of n.
float CORREC(int i, int n);

// Expected value of the i-th largest of n standard normal values, n > 2,
// i up to n / 2: positive, largest for i = 1.
float NormalScore(int i, int n);

}  // namespace tov
