// Student's t distribution function by Hill's algorithm 395 (CACM 1970) in
// single precision: an exact finite series for small whole degrees of
// freedom, the tail series for large t, and Hill's normal approximation
// otherwise.  Each branch gives the two-tailed probability P.

#include <cmath>

#include "numerics/basic/Basic.h"
#include "numerics/distributions/Distributions.h"
#include "numerics/basic/ErrorPolicy.h"

namespace tov {
namespace {

constexpr float kTwoOverPi = 0.63661975f;
constexpr float kOneOverSqrtTwo = 0.70710677f;
// Beyond this z the normal tail is below the smallest float.
constexpr float kNormalTailCutoff = 18.8125f;

bool IsSmallWholeNumber(float df) { return df < 20.0f && std::trunc(df) == df; }

// Exact series for whole df when t2 is small.
float TwoTailSmallT(float df, float y, float b) {
  const float s = std::sqrt(y);
  float z = df == 1.0f ? 0.0f : s;
  float n = df - 2.0f;
  while (n > 1.0f) {
    z = s + ((n - 1.0f) / (b * n)) * z;
    n = n - 2.0f;
  }
  if (n == 0.0f) {
    z = z / std::sqrt(b);
  } else {
    z = (z / b + std::atan(s)) * kTwoOverPi;
  }
  return 1.0f - z;
}

// Tail series for whole df when t2 is 4 or more.
float TwoTailLargeT(float df, float b) {
  float s = 1.0f;
  float u = df;
  float i = 0.0f;
  float previous;
  do {
    previous = s;
    i = i + 2.0f;
    u = (i - 1.0f) * u / (b * i);
    s = s + u / (df + i);
  } while (s != previous);
  float n = df;
  while (n > 1.0f && s >= 1.0e-30f) {
    s = s * (n - 1.0f) / (b * n);
    n = n - 2.0f;
  }
  if (n != 0.0f) s = std::sqrt(b) * kTwoOverPi * s / b;
  return s;
}

// Hill's normal approximation for any df.
float TwoTailNormalApproximation(float df, float y, float b) {
  float w = y;
  if (b - 1.0f != 0.0f) w = y * std::log(b) / (b - 1.0f);
  const float a = df - 0.5f;
  const float c = 48.0f * a * a;
  w = a * w;
  const float r = (((-0.4f * w - 3.3f) * w - 24.0f) * w - 85.5f) / (0.8f * w * w + 100.0f + c);
  const float z = std::sqrt(w) * ((3.0f + w + r) / c + 1.0f);
  // Written as "below the cut-off" so that a NaN z yields a NaN P.
  if (z >= kNormalTailCutoff) return 0.0f;
  return ERFC(z * kOneOverSqrtTwo);
}

}  // namespace

float TDF(float t, float df) {
  if (df < 1.0f) {
    RaiseError(SeverityTerminal, "TDF",
               FillMessage("The input number of degrees of freedom, DF = %(R1), must be at least 1.", {}, {df}));
    return AMACH(6);
  }
  const float t2 = t * t;
  float p;
  if (df <= t2) {
    p = BETAI(df / (t2 + df), df / 2.0f, 0.5f);
  } else {
    const float y = t2 / df;
    const float b = 1.0f + y;
    if (IsSmallWholeNumber(df) && t2 < 4.0f) {
      p = TwoTailSmallT(df, y, b);
    } else if (IsSmallWholeNumber(df) && t2 >= 4.0f) {
      p = TwoTailLargeT(df, b);
    } else {
      p = TwoTailNormalApproximation(df, y, b);
    }
  }
  return t > 0.0f ? 1.0f - 0.5f * p : 0.5f * p;
}

}  // namespace tov
