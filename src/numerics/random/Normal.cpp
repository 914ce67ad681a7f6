// Standard normal deviates by the acceptance-rejection method of Kinderman
// and Ramage (1976), in single precision.  The constants are the method's
// own, rounded to float; the order of the draws is part of the stream.

#include <algorithm>
#include <cmath>

#include "numerics/basic/ErrorPolicy.h"
#include "numerics/random/Random.h"

namespace tov {
namespace {

constexpr float kXi = 2.2160358f;       // split point of centre and tail
constexpr float kTailStart = 2.4554074f;  // xi * xi / 2
constexpr float kDensityFactor = 0.3989423f;  // 1 / sqrt(2 pi)
constexpr float kTriangleSlope = 0.18002519f;

// Difference of the normal density and the triangular density at x.
float DensityExcess(float x) {
  return std::exp(0.0f - 0.5f * x * x) * kDensityFactor - (kXi - std::fabs(x)) * kTriangleSlope;
}

// Regions 3 to 5 draw a pair (a, b) until the rule accepts the candidate
// made from the smaller one; the sign comes from the order of the pair.
template <class Candidate>
float DrawFromWedge(Candidate candidate, float quickAccept, float excessFactor, bool rejectNegative) {
  for (;;) {
    const float a = UniformDraw();
    const float b = UniformDraw();
    const float lo = std::min(a, b);
    const float hi = std::max(a, b);
    const float d = a - b;
    const float x = candidate(lo);
    if (rejectNegative && x < 0.0f) continue;
    if (hi <= quickAccept || DensityExcess(x) >= std::fabs(d) * excessFactor) return d >= 0.0f ? 0.0f - x : x;
  }
}

float NormalDeviate() {
  const float u = UniformDraw();
  if (u < 0.8840704f) {
    const float v = UniformDraw();
    return ((u * 1.1311316f - 1.0f) + v) * kXi;
  }
  if (u >= 0.97331095f) {
    float t;
    for (;;) {
      const float p = UniformDraw();
      const float q = UniformDraw();
      t = kTailStart - std::log(q);
      if (!(p * p * t > kTailStart)) break;
    }
    const float r = std::sqrt(t + t);
    return u >= 0.9866555f ? 0.0f - r : r;
  }
  if (u >= 0.9587208f)
    return DrawFromWedge([](float lo) { return kXi - lo * 0.6308348f; }, 0.7555915f, 0.034240503f, false);
  if (u >= 0.91131276f)
    return DrawFromWedge([](float lo) { return 0.47972742f + lo * 1.1054736f; }, 0.872835f, 0.049264498f, false);
  return DrawFromWedge([](float lo) { return 0.47972742f - lo * 0.59550714f; }, 0.80557793f, 0.05337755f, true);
}

}  // namespace

void RNNOA(int nr, float* r) {
  if (nr < 1) {
    RaiseError(SeverityTerminal, "RNNOA",
               FillMessage("NR = %(I1).  NR must be greater than or equal to 1.", {nr}));
    return;
  }
  for (int i = 0; i < nr; ++i) r[i] = NormalDeviate();
}

}  // namespace tov
