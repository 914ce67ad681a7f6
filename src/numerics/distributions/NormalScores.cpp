#include "numerics/distributions/NormalScores.h"

#include <cmath>

namespace tov {
namespace {

// Rational approximations of AS 241 in the three ranges of p: the centre
// |p - 0.5| <= 0.425 in (p - 0.5)^2, then the tails in sqrt(-log(tail area))
// below and above 5.  Coefficients run from the constant term up.
constexpr double kCentreNumerator[8] = {
    3.3871328727963666080e0, 1.3314166789178437745e+2, 1.9715909503065514427e+3, 1.3731693765509461125e+4,
    4.5921953931549871457e+4, 6.7265770927008700853e+4, 3.3430575583588128105e+4, 2.5090809287301226727e+3};
constexpr double kCentreDenominator[8] = {
    1.0, 4.2313330701600911252e+1, 6.8718700749205790830e+2, 5.3941960214247511077e+3,
    2.1213794301586595867e+4, 3.9307895800092710610e+4, 2.8729085735721942674e+4, 5.2264952788528545610e+3};
constexpr double kNearNumerator[8] = {
    1.42343711074968357734e0, 4.63033784615654529590e0, 5.76949722146069140550e0, 3.64784832476320460504e0,
    1.27045825245236838258e0, 2.41780725177450611770e-1, 2.27238449892691845833e-2, 7.74545014278341407640e-4};
constexpr double kNearDenominator[8] = {
    1.0, 2.05319162663775882187e0, 1.67638483018380384940e0, 6.89767334985100004550e-1,
    1.48103976427480074590e-1, 1.51986665636164571966e-2, 5.47593808499534494600e-4, 1.05075007164441684324e-9};
constexpr double kFarNumerator[8] = {
    6.65790464350110377720e0, 5.46378491116411436990e0, 1.78482653991729133580e0, 2.96560571828504891230e-1,
    2.65321895265761230930e-2, 1.24266094738807843860e-3, 2.71155556874348757815e-5, 2.01033439929228813265e-7};
constexpr double kFarDenominator[8] = {
    1.0, 5.99832206555887937690e-1, 1.36929880922735805310e-1, 1.48753612908506148525e-2,
    7.86869131145613259100e-4, 1.84631831751005468180e-5, 1.42151175831644588870e-7, 2.04426310338993978564e-15};

double Polynomial7(const double (&c)[8], double x) {
  double value = c[7];
  for (int k = 6; k >= 0; --k) value = value * x + c[k];
  return value;
}

double RationalInverseNormal(double p) {
  const double q = p - 0.5;
  if (std::fabs(q) <= 0.425) {
    const double r = 0.180625 - q * q;
    return q * Polynomial7(kCentreNumerator, r) / Polynomial7(kCentreDenominator, r);
  }
  const double tail = q < 0.0 ? p : 1.0 - p;
  if (tail <= 0.0) return 0.0;
  double r = std::sqrt(-std::log(tail));
  double z;
  if (r <= 5.0) {
    r = r - 1.6;
    z = Polynomial7(kNearNumerator, r) / Polynomial7(kNearDenominator, r);
  } else {
    r = r - 5.0;
    z = Polynomial7(kFarNumerator, r) / Polynomial7(kFarDenominator, r);
  }
  return q < 0.0 ? -z : z;
}

// Coefficients of the correction for the seven largest scores.
constexpr float kCorrection1[7] = {9.5f, 28.7f, 1.9f, 0.0f, -7.0f, -6.2f, -1.6f};
constexpr float kCorrection2[7] = {-6195.0f, -9569.0f, -6728.0f, -17614.0f, -8278.0f, -3570.0f, 1075.0f};
constexpr float kCorrection3[7] = {93380.0f, 175160.0f, 410400.0f, 2157000.0f, 2376000.0f, 2065000.0f, 2065000.0f};

// Constants of the tail-area approximation: one set for each of the three
// largest scores, the fourth for all the others.
struct ScoreConstants {
  float P;
  float G;
  float L;
  float D1;
  float D2;
};

constexpr ScoreConstants kLargestScores[3] = {
    {0.419885f, 0.474798f, 0.282765f, 0.112063f, 0.080122f},
    {0.450536f, 0.469051f, 0.304856f, 0.12177f, 0.111348f},
    {0.456936f, 0.208597f, 0.407708f, 0.239299f, -0.211867f},
};

ScoreConstants ConstantsFor(int i) {
  if (i <= 3) return kLargestScores[i - 1];
  const float l = 0.414093f - 0.283833f / (static_cast<float>(i) - 0.106136f);
  return {0.468488f, 0.259784f, l, 0.215159f, -0.115049f};
}

}  // namespace

float InverseNormal(float p) { return static_cast<float>(RationalInverseNormal(static_cast<double>(p))); }

float CORREC(int i, int n) {
  if (i * n == 4) return 1.9E-5f;
  if (i > 7 || n > 40) return 0.0f;
  if (i != 4 && n > 20) return 0.0f;
  const float nf = static_cast<float>(n);
  const float w = 1.0f / (nf * nf);
  return (kCorrection1[i - 1] + w * (kCorrection2[i - 1] + w * kCorrection3[i - 1])) * 1E-6f;
}

float NormalScore(int i, int n) {
  const ScoreConstants c = ConstantsFor(i);
  const float nf = static_cast<float>(n);
  const float e1 = (static_cast<float>(i) - c.P) / (nf + c.G);
  const float e2 = std::pow(e1, c.L);
  const float tailArea = e1 - CORREC(i, n) + e2 * (c.D1 + e2 * c.D2) / nf;
  return -InverseNormal(tailArea);
}

}  // namespace tov
