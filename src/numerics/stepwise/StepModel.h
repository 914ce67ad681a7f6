#pragma once
// The regression model that a stepwise selection leaves: which variables
// entered, their partial regression coefficients and the intercept, and how
// well the model fits.

#include <cstdint>
#include <vector>

#include "core/Array.h"

namespace tov {

struct StepModel {
  std::int32_t NumTerms = 0;
  // TermIndex(1..NumTerms): the selected variables, ascending; for markers
  // an index among the kept markers.
  Array<std::int32_t, 1> TermIndex;
  // Coef[0] the intercept, Coef[k] the coefficient of term k.
  std::vector<float> Coef;
  // Percent; 0.0 when the fit leaves them undefined.
  float RSquare = 0.0f;
  float AdjRSquare = 0.0f;
};

// Releases the arrays of the record and leaves it as a model of no term.
void FreeStepModel(StepModel& model);

}  // namespace tov
