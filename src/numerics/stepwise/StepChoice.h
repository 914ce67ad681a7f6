#pragma once
// Which variable one step of a stepwise selection moves.  A variable is in
// the model when its HIST is above 0.  A variable with a NaN p is never
// chosen, and of equal absolute t values the first by index stands.

#include <functional>

#include "core/Array.h"

namespace tov {

// What the choice reads of every variable but the dependent one IDEP:
// T(i) its t, HIST(i) and LEVEL(i).  Its p costs a distribution function,
// so P(i) is asked only of the variable that would be chosen; a NaN there
// drops that variable and the choice is made again.  A NaN t always has a
// NaN p and is passed over without asking.
struct StepCandidates {
  int NVAR;
  int IDEP;
  const Array<float, 1>& T;
  const Array<float, 1>& HIST;
  const Array<int, 1>& LEVEL;
  std::function<float(int)> P;
};

// The variable in the model at the given level with the smallest absolute
// t; 0 when there is none.
int WeakestInModel(const StepCandidates& candidates, int level);

// The variable out of the model at the given level with the largest
// absolute t; 0 when there is none.
int StrongestOutside(const StepCandidates& candidates, int level);

}  // namespace tov
