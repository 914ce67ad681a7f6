#pragma once
// Stepwise selection of regressors that jointly explain a response: RSTEP
// selects on the covariance matrix of the centred data, whose rows are
// computed as the selection first needs them (the square matrix is never
// formed; time and memory grow with regressors times steps).  A model that
// fits too well is selected again with stricter thresholds, on the same
// rows.

#include <cstdint>

#include "numerics/stepwise/StepModel.h"

namespace tov {

// CodedGenotype [NumVars, NumObs] holds the integer regressors, the variable
// index fastest; y [NumObs] the response.  PIN and POUT are the entry and
// removal p-values; the caller's values are never changed.  Fills model,
// replacing what it held.
void StepwiseSelection(float PIN, float POUT, int NumVars, int NumObs, const std::int32_t* CodedGenotype,
                       const float* y, StepModel& model);

}  // namespace tov
