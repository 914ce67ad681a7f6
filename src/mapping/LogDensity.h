#pragma once
// The base-10 logarithm of the normal density, so that a difference of
// summed log densities is a LOD score without further scaling.

namespace tov {

// The part that depends on the variance alone, -(0.5 * log10(2 pi v)):
// NaN for a variance that is not NaN and not positive.  A scan computes it
// once per marker and model; the value is the one LogDensity10 uses.
float LogDensityConstant(float v);

// The squared-deviation part, ((y - m) * (y - m)) / twoV / ln 10, with
// twoV = 2.0 * v formed once by the caller.
inline float LogDensityDeviation(float y, float m, float twoV) {
  const float d = y - m;
  return (d * d) / twoV / 2.3025851f;
}

// log10 of the normal density with mean m and variance v at y, in 32 bits.
float LogDensity10(float y, float m, float v);

}  // namespace tov
