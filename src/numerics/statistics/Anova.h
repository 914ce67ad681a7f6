#pragma once
// Analyses of variance of balanced and one-way layouts.

#include "numerics/basic/Basic.h"

namespace tov {

// One-way analysis: ngroup groups, group i with ni[i - 1] responses; the
// responses of a group are together in y, the groups in order.
void AONEW(int ngroup, const int* ni, const float* y, AovTable& aov);

// One effect of a factorial model.
struct AnovaEffect {
  float DF = 0.0f;
  float SS = 0.0f;
  float F = 0.0f;
  float P = 0.0f;
};

// The effects of the two-factor model with interaction, in table order.
struct TwoWayEffects {
  AnovaEffect A;
  AnovaEffect B;
  AnovaEffect AxB;
};

// Balanced two-factor analysis with interaction: nl = {levels of A, levels
// of B, replications}, and y holds the responses with the last subscript
// fastest, y[((a - 1) * nl[1] + (b - 1)) * nl[2] + (r - 1)].  The model is
// A + B + AxB, the replications give the error.  Each effect's F is its
// mean square over the error mean square.  Returns false, with aov and
// effects untouched, when a subscript has fewer than two levels.
bool ANWAY(const int* nl, const float* y, AovTable& aov, TwoWayEffects& effects);

}  // namespace tov
