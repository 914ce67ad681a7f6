// The balanced two-factor model with interaction, from cell, row and
// column means: with r replications in each of the a x b cells,
//   SS(A)   = b r sum (row mean - grand mean)^2,
//   SS(B)   = a r sum (column mean - grand mean)^2,
//   SS(AxB) = r sum (cell - row - column + grand mean)^2,
//   SS(E)   = sum (response - cell mean)^2.

#include "numerics/statistics/Anova.h"
#include "numerics/basic/ErrorPolicy.h"

namespace tov {
namespace {

constexpr int kSubscripts = 3;

AnovaEffect Effect(float df, float ss, const AovTable& aov) {
  AnovaEffect effect;
  effect.DF = df;
  effect.SS = ss;
  effect.F = GuardedDivide(GuardedDivide(ss, df), aov(8));
  effect.P = FProbability(effect.F, df, aov(2));
  return effect;
}

}  // namespace

bool ANWAY(const int* nl, const float* y, AovTable& aov, TwoWayEffects& effects) {
  for (int k = 1; k <= kSubscripts; ++k) {
    if (nl[k - 1] < 2) {
      RaiseError(SeverityTerminal, "ANWAY",
                 FillMessage("NL(%(I1)) = %(I2).  There must be at least two levels per factor.", {k, nl[k - 1]}));
      return false;
    }
  }
  const int numA = nl[0];
  const int numB = nl[1];
  const int numReps = nl[2];
  const ArrayView<const float, 3> response(y, numReps, numB, numA);

  Array<float, 2> cellMean(numB, numA);
  Array<float, 1> meanA(numA);
  Array<float, 1> meanB(numB);
  float grandSum = 0.0f;
  for (int a = 1; a <= numA; ++a) {
    for (int b = 1; b <= numB; ++b) {
      float sum = 0.0f;
      for (int r = 1; r <= numReps; ++r) sum += response(r, b, a);
      cellMean(b, a) = sum / static_cast<float>(numReps);
      meanA(a) += sum;
      meanB(b) += sum;
      grandSum += sum;
    }
  }
  for (int a = 1; a <= numA; ++a) meanA(a) = meanA(a) / static_cast<float>(numB * numReps);
  for (int b = 1; b <= numB; ++b) meanB(b) = meanB(b) / static_cast<float>(numA * numReps);
  const float grandMean = grandSum / static_cast<float>(numA * numB * numReps);

  float sumA = 0.0f;
  for (int a = 1; a <= numA; ++a) {
    const float d = meanA(a) - grandMean;
    sumA += d * d;
  }
  float sumB = 0.0f;
  for (int b = 1; b <= numB; ++b) {
    const float d = meanB(b) - grandMean;
    sumB += d * d;
  }
  float sumAB = 0.0f;
  float ssError = 0.0f;
  for (int a = 1; a <= numA; ++a) {
    for (int b = 1; b <= numB; ++b) {
      const float interaction = cellMean(b, a) - meanA(a) - meanB(b) + grandMean;
      sumAB += interaction * interaction;
      for (int r = 1; r <= numReps; ++r) {
        const float d = response(r, b, a) - cellMean(b, a);
        ssError += d * d;
      }
    }
  }
  const float ssA = static_cast<float>(numB * numReps) * sumA;
  const float ssB = static_cast<float>(numA * numReps) * sumB;
  const float ssAB = static_cast<float>(numReps) * sumAB;

  const float dfA = static_cast<float>(numA - 1);
  const float dfB = static_cast<float>(numB - 1);
  const float dfAB = dfA * dfB;
  const float dfModel = static_cast<float>(numA * numB - 1);
  const float dfError = static_cast<float>(numA * numB * (numReps - 1));
  G1AOV(dfModel, ssA + ssB + ssAB, dfError, ssError, grandMean, aov);
  effects.A = Effect(dfA, ssA, aov);
  effects.B = Effect(dfB, ssB, aov);
  effects.AxB = Effect(dfAB, ssAB, aov);
  return true;
}

}  // namespace tov
