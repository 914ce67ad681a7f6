// W is (sum of a(i) times the spread of the i-th pair of order
// statistics)^2 over the sum of squares, with the weights a(i) from the
// expected normal order statistics, normalised by 2Q; its P-value comes
// from Royston's transformations of W towards normality.

#include "numerics/statistics/ShapiroWilk.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "core/Array.h"
#include "numerics/distributions/Distributions.h"
#include "numerics/basic/ErrorPolicy.h"
#include "numerics/distributions/NormalScores.h"

namespace tov {
namespace {

constexpr int kMinObservations = 3;
constexpr int kMaxObservations = 2000;

// Normalised weights a(1) .. a(n / 2) of the samples of 3 to 6 (Q = 0.5).
constexpr float kSmallSampleWeights[4][3] = {
    {0.70710677f, 0.0f, 0.0f},
    {0.6869f, 0.1678f, 0.0f},
    {0.6647f, 0.2412f, 0.0f},
    {0.6431f, 0.2806f, 0.0875f},
};

constexpr float kPiOverThree = 1.0471976f;
constexpr float kSixOverPi = 1.9098593f;

// Coefficients c0..c4 of c(y) for n = 4, 5, 6, for y at most 1.4 (low)
// and, in log(y), above it (high).
constexpr float kLowCoefficients[3][5] = {
    {-1.26233f, 1.87969f, 0.0649583f, -0.0475604f, -0.0139682f},
    {-2.28135f, 2.26186f, 0.0f, 0.0f, -0.00865763f},
    {-3.30623f, 2.76287f, -0.83484f, 1.20857f, -0.50759f},
};
constexpr float kHighCoefficients[3][5] = {
    {-0.287696f, 1.78953f, -0.180114f, 0.0f, 0.0f},
    {-1.63638f, 5.60924f, -3.63738f, 1.08439f, 0.0f},
    {-5.991908f, 21.04575f, -24.58061f, 13.78661f, -2.835295f},
};

// Polynomials in u = log(n) - 3 (n up to 20) or log(n) - 5 (above) for the
// power that makes 1 - W near normal, and the log of its mean and sd.
struct PowerPolynomials {
  std::vector<double> Lambda;
  std::vector<double> LogMu;
  std::vector<double> LogSigma;
};

const PowerPolynomials& PolynomialsFor(int n) {
  static const PowerPolynomials kUpTo20 = {
      {0.118898, 0.133414, 0.327907},
      {-0.37542, -0.492145, -1.124332, -0.199422},
      {-3.15805, 0.729399, 3.01855, 1.558776},
  };
  static const PowerPolynomials kAbove20 = {
      {0.480385, 0.318828, 0.0, -0.0241665, 0.00879701, 0.002989646},
      {-1.91487, -1.37888, -0.04183209, 0.1066339, -0.03513666, -0.01504614},
      {-3.73538, -1.015807, -0.331885, 0.1773538, -0.01638782, -0.03215018, 0.003852646},
  };
  return n <= 20 ? kUpTo20 : kAbove20;
}

double Polynomial(const std::vector<double>& c, double u) {
  double value = 0.0;
  for (auto k = c.size(); k-- > 0;) value = value * u + c[k];
  return value;
}

float SmallSampleCurve(const float (&c)[5], float y) {
  return c[0] + c[1] * y + y * y * (c[2] + y * (c[3] + y * c[4]));
}

// The values that are numbers, in ascending order.
std::vector<float> SortedValidValues(int nobs, const float* x) {
  std::vector<float> sorted;
  sorted.reserve(static_cast<std::size_t>(nobs));
  for (int i = 0; i < nobs; ++i)
    if (!std::isnan(x[i])) sorted.push_back(x[i]);
  if (!std::is_sorted(sorted.begin(), sorted.end())) std::sort(sorted.begin(), sorted.end());
  return sorted;
}

// Weight of the extreme pair for n >= 7 from the sum Q of the squared
// scores of the other pairs.
double ExtremeWeight(int n, double q) {
  const float v = static_cast<float>(n > 20 ? n : n - 1);
  const float f = ((6.0f * v + 7.0f) / (6.0f * v + 13.0f)) *
                  std::sqrt(std::pow((v + 1.0f) / (v + 2.0f), v - 2.0f) * 2.7182817f / (v + 2.0f));
  return std::sqrt(2.0 * f * q / (1.0 - 2.0 * f));
}

float SmallSampleProbability(int n, float w, float a1) {
  const float nf = static_cast<float>(n);
  float y = std::log((w - a1 * a1 * nf / (nf - 1.0f)) / (1.0f - w));
  float z;
  if (y <= 1.4f) {
    z = std::exp(SmallSampleCurve(kLowCoefficients[n - 4], y));
  } else {
    y = std::log(y);
    z = std::exp(std::exp(SmallSampleCurve(kHighCoefficients[n - 4], y)));
  }
  return (std::asin(std::sqrt((z + 0.75f) / (z + 1.0f))) - kPiOverThree) * kSixOverPi;
}

float LargeSampleProbability(int n, float w) {
  const float u = std::log(static_cast<float>(n)) - (n <= 20 ? 3.0f : 5.0f);
  const PowerPolynomials& poly = PolynomialsFor(n);
  const double lambda = Polynomial(poly.Lambda, u);
  const double mu = std::exp(Polynomial(poly.LogMu, u));
  const double sigma = std::exp(Polynomial(poly.LogSigma, u));
  const double z = (std::pow(1.0 - static_cast<double>(w), lambda) - mu) / sigma;
  return 1.0f - ANORDF(static_cast<float>(z));
}

}  // namespace

bool SPWLK(int nobs, const float* x, float& w, float& p, int& numMissing) {
  if (nobs < kMinObservations || nobs > kMaxObservations) {
    RaiseError(SeverityTerminal, "SPWLK",
               FillMessage("%(L1) = %(I1).  %(L1) must be greater than or equal to %(I2) and less than or equal to "
                           "%(I3).",
                           {nobs, kMinObservations, kMaxObservations}, {}, {"NOBS"}));
    return false;
  }
  const std::vector<float> sorted = SortedValidValues(nobs, x);
  const int n = static_cast<int>(sorted.size());
  numMissing = nobs - n;
  if (n < kMinObservations) {
    RaiseError(SeverityTerminal, "SPWLK",
               FillMessage("After removing the missing observations only %(I1) observations remain.  The test "
                           "cannot proceed.",
                           {n}));
    return false;
  }
  const ArrayView<const float, 1> order(sorted.data(), n);

  float sum = 0.0f;
  for (float value : sorted) sum += value;
  const float mean = sum / static_cast<float>(n);
  // Tied values have no spread at all, though the float mean of many
  // copies of one value need not reproduce it exactly.
  double ss = 0.0;
  if (order(1) != order(n)) {
    for (float value : sorted) {
      const float deviation = value - mean;
      ss += deviation * deviation;
    }
  }

  // The pairs 2 .. n/2 first: for n >= 7 the weight of the extreme pair
  // follows from the sum Q of their squared scores.
  Array<float, 1> weight(n / 2);
  double q = 0.5;
  if (n <= 6) {
    for (int i = 1; i <= n / 2; ++i) weight(i) = kSmallSampleWeights[n - 3][i - 1];
  } else {
    q = 0.0;
    for (int i = 2; i <= n / 2; ++i) {
      weight(i) = NormalScore(i, n);
      q += static_cast<double>(weight(i)) * weight(i);
    }
  }
  double a = 0.0;
  for (int i = 2; i <= n / 2; ++i) a += static_cast<double>(weight(i)) * (order(n + 1 - i) - order(i));
  double a1 = weight(1);
  if (n >= 7) {
    a1 = ExtremeWeight(n, q);
    q += a1 * a1;
  }
  a += a1 * (order(n) - order(1));

  if (ss == 0.0) {
    RaiseError(SeverityWarning, "SPWLK", "All observations in X are tied.");
    w = 0.0f;
    p = 1.0f;
    return true;
  }
  w = static_cast<float>(a * a / (ss * 2.0 * q));
  if (n == 3) {
    p = (std::atan(std::sqrt(w / (1.0f - w))) - kPiOverThree) * kSixOverPi;
  } else if (n <= 6) {
    p = SmallSampleProbability(n, w, static_cast<float>(a1));
  } else {
    p = LargeSampleProbability(n, w);
  }
  return true;
}

}  // namespace tov
