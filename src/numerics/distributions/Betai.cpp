// Regularised incomplete beta function by its continued fraction, evaluated
// with the modified Lentz method in double precision so that the float
// result is right to single precision even for large parameters.

#include <cmath>
#include <limits>

#include "numerics/distributions/Distributions.h"

namespace tov {
namespace {

constexpr int kMaxTerms = 100000;
constexpr double kRelativeTolerance = 1.0e-15;
constexpr double kTiny = 1.0e-300;

// The continued fraction 1 / (1 + d1 / (1 + d2 / (1 + ...))) of I_x(a, b),
// which converges fast for x below (a + 1) / (a + b + 2).
double BetaContinuedFraction(double x, double a, double b) {
  const auto guard = [](double v) { return std::fabs(v) < kTiny ? kTiny : v; };
  double c = 1.0;
  double d = 1.0 / guard(1.0 - (a + b) * x / (a + 1.0));
  double value = d;
  for (int m = 1; m <= kMaxTerms; ++m) {
    const double twoM = 2.0 * m;
    // Even step: d_2m = m (b - m) x / ((a + 2m - 1)(a + 2m)).
    const double even = m * (b - m) * x / ((a + twoM - 1.0) * (a + twoM));
    d = 1.0 / guard(1.0 + even * d);
    c = guard(1.0 + even / c);
    value *= d * c;
    // Odd step: d_2m+1 = -(a + m)(a + b + m) x / ((a + 2m)(a + 2m + 1)).
    const double odd = -(a + m) * (a + b + m) * x / ((a + twoM) * (a + twoM + 1.0));
    d = 1.0 / guard(1.0 + odd * d);
    c = guard(1.0 + odd / c);
    const double change = d * c;
    value *= change;
    if (std::fabs(change - 1.0) < kRelativeTolerance) break;
  }
  return value;
}

}  // namespace

float BETAI(float x, float a, float b) {
  if (!(x >= 0.0f && x <= 1.0f) || !(a > 0.0f) || !(b > 0.0f) || std::isinf(a) || std::isinf(b))
    return std::numeric_limits<float>::quiet_NaN();
  if (x == 0.0f) return 0.0f;
  if (x == 1.0f) return 1.0f;
  const double xd = x;
  const double ad = a;
  const double bd = b;
  // x^a (1 - x)^b / B(a, b), in logarithms to avoid overflow.
  const double logFront = std::lgamma(ad + bd) - std::lgamma(ad) - std::lgamma(bd) + ad * std::log(xd) +
                          bd * std::log1p(-xd);
  const double front = std::exp(logFront);
  if (xd < (ad + 1.0) / (ad + bd + 2.0)) return static_cast<float>(front * BetaContinuedFraction(xd, ad, bd) / ad);
  // I_x(a, b) = 1 - I_(1-x)(b, a), where the fraction converges fast.
  return static_cast<float>(1.0 - front * BetaContinuedFraction(1.0 - xd, bd, ad) / bd);
}

}  // namespace tov
