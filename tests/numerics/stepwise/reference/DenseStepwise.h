#pragma once
// The stepwise engine that sweeps the whole upper triangle at every step:
// the reference of the library's engine, for valid arguments only.

#include <cstdint>

#include "numerics/stepwise/Rstep.h"
#include "numerics/stepwise/StepModel.h"

namespace tov::reference {

// RSTEP on COV [NVAR, NVAR], all outputs; COVS [NVAR, NVAR] is the whole
// swept matrix.
void DenseRSTEP(int NVAR, const Array<float, 2>& COV, int NOBS, const RstepOptions& options, StepAovTable& AOV,
                Array<float, 2>& COEF, Array<float, 2>& COVS, Array<float, 1>& HIST, int& IEND);

// StepwiseSelection on the covariance matrix built whole, each element by
// ColumnCovariance; returns the number of selections run (1 + retries).
int DenseStepwiseSelection(float PIN, float POUT, int NumVars, int NumObs, const std::int32_t* CodedGenotype,
                           const float* y, StepModel& model);

}  // namespace tov::reference
