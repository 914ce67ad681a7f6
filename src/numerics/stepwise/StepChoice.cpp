#include "numerics/stepwise/StepChoice.h"

#include <cmath>

namespace tov {
namespace {

bool Eligible(int i, int IDEP, const Array<float, 2>& COEF, const Array<int, 1>& LEVEL, int level) {
  const int row = i < IDEP ? i : i - 1;
  return i != IDEP && !std::isnan(COEF(row, 4)) && LEVEL(i) == level;
}

float AbsT(int i, int IDEP, const Array<float, 2>& COEF) { return std::fabs(COEF(i < IDEP ? i : i - 1, 3)); }

}  // namespace

int WeakestInModel(int NVAR, int IDEP, const Array<float, 2>& COEF, const Array<float, 1>& HIST,
                   const Array<int, 1>& LEVEL, int level) {
  int weakest = 0;
  for (int i = 1; i <= NVAR; ++i) {
    if (!Eligible(i, IDEP, COEF, LEVEL, level) || !(HIST(i) > 0.0f)) continue;
    if (weakest == 0 || AbsT(i, IDEP, COEF) < AbsT(weakest, IDEP, COEF)) weakest = i;
  }
  return weakest;
}

int StrongestOutside(int NVAR, int IDEP, const Array<float, 2>& COEF, const Array<float, 1>& HIST,
                     const Array<int, 1>& LEVEL, int level) {
  int strongest = 0;
  float strongestT = -1.0f;
  for (int i = 1; i <= NVAR; ++i) {
    if (!Eligible(i, IDEP, COEF, LEVEL, level) || HIST(i) > 0.0f) continue;
    if (AbsT(i, IDEP, COEF) > strongestT) {
      strongest = i;
      strongestT = AbsT(i, IDEP, COEF);
    }
  }
  return strongest;
}

}  // namespace tov
