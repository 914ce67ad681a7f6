#pragma once
// Stepwise selection of regressors that jointly explain a response: the
// covariance matrix of the centred data is built once and RSTEP selects on
// it.  A model that fits too well is selected again with stricter
// thresholds.

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
