#pragma once
// Distribution functions in single precision.

namespace tov {

// Student's t distribution function at t with df degrees of freedom
// (Hill, CACM algorithm 395).  df below 1 raises a terminal error, NaN.
float TDF(float t, float df);

// Standard normal distribution function.
float ANORDF(float x);

// Complementary error function.
float ERFC(float x);

// Regularised incomplete beta function I_x(a, b).
float BETAI(float x, float a, float b);

}  // namespace tov
