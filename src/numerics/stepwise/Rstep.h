#pragma once
// Stepwise regression on a matrix of variances and covariances.  The engine
// never sees the data: it sweeps the matrix it is given, one variable in or
// out per step, and reads every statistic off the swept matrix, forming of
// it only what it reads (SweptMatrix.h).  All arithmetic is 32-bit;
// selections near the thresholds depend on that.

#include "core/Array.h"
#include "numerics/stepwise/SweptMatrix.h"

namespace tov {

// AOV(1..13) of the fitted model: regression, error and total degrees of
// freedom; regression, error and total sums of squares; regression and
// error mean squares; F; p-value of F; R-square in percent; adjusted
// R-square in percent; square root of the error mean square.
using StepAovTable = FixedArray<float, 13>;

// The optional arguments of RSTEP with their defaults.
struct RstepOptions {
  int INVOKE = 0;   // 0 to 3; every call starts from the matrix it is given
  int NFORCE = 0;   // variables at levels up to NFORCE are never removed
  int NSTEP = -1;   // at most NSTEP steps in this call; -1: no such bound
  int ISTEP = -1;   // -1, 0 or 1; the steps always remove before they enter
  float PIN = 0.05f;   // a candidate enters when its p is strictly below PIN
  float POUT = 0.10f;  // a variable leaves when its p is strictly above POUT
  float TOL = 1.0e-5f; // pivot tolerance, relative to the input diagonal
  // LEVEL(1..NVAR): 0 leaves a variable out of the selection, -1 marks the
  // dependent variable, lower positive levels are offered first.  Without
  // it every variable has level 1 and the last one is the dependent one.
  const Array<int, 1>* LEVEL = nullptr;
};

// Runs the selection on the upper triangle of COV [NVAR, NVAR], given a
// row at a time, for data of NOBS observations.
//   AOV                fit of the final model; all NaN when none entered
//   COEF [NVAR-1, 5]   per variable in index order, the dependent one
//                      skipped: estimate, standard error, t, two-sided p,
//                      variance inflation factor
//   SCALE [NVAR]       the diagonal of COV
//   HIST [NVAR]        0 never in the model, +s entered at step s,
//                      -s left at step s
//   IEND               1 when the selection came to rest
//   COVS [NVAR, NVAR]  the swept matrix, upper triangle (the elements below
//                      the diagonal are not written); forming it costs a
//                      replay of every row, so ask for it only when needed
// A failed argument check raises its message and leaves every output as it
// was.  COV is never changed.
void RSTEP(int NVAR, const SymmetricRows& COV, int NOBS, const RstepOptions& options, StepAovTable& AOV,
           Array<float, 2>& COEF, Array<float, 1>* SCALE = nullptr, Array<float, 1>* HIST = nullptr,
           int* IEND = nullptr, Array<float, 2>* COVS = nullptr);

// The same on a matrix held whole; only its upper triangle is read.
void RSTEP(int NVAR, const Array<float, 2>& COV, int NOBS, const RstepOptions& options, StepAovTable& AOV,
           Array<float, 2>& COEF, Array<float, 1>* SCALE = nullptr, Array<float, 1>* HIST = nullptr,
           int* IEND = nullptr, Array<float, 2>* COVS = nullptr);

// t = estimate / stdError by a guarded division, and its two-sided p-value
// with df degrees of freedom: NaN for a NaN t or df 0, 0.0 for an infinite t.
void C1T(float estimate, float stdError, int df, float& t, float& p);

}  // namespace tov
