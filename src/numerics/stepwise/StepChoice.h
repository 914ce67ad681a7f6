#pragma once
// Which variable one step of a stepwise selection moves.  COEF holds the
// statistics of every variable but the dependent one IDEP (row i, or i - 1
// past IDEP; column 3 t, column 4 p); a variable is in the model when its
// HIST is above 0.  A variable with a NaN p is never chosen, and of equal
// absolute t values the first by index stands.

#include "core/Array.h"

namespace tov {

// The variable in the model at the given level with the smallest absolute
// t; 0 when there is none.
int WeakestInModel(int NVAR, int IDEP, const Array<float, 2>& COEF, const Array<float, 1>& HIST,
                   const Array<int, 1>& LEVEL, int level);

// The variable out of the model at the given level with the largest
// absolute t; 0 when there is none.
int StrongestOutside(int NVAR, int IDEP, const Array<float, 2>& COEF, const Array<float, 1>& HIST,
                     const Array<int, 1>& LEVEL, int level);

}  // namespace tov
