#pragma once
// One value per kept line: the mean of its filled cells.  The order of the
// additions is part of the result and differs between callers, so each
// caller names it.

#include "core/Array.h"

namespace tov {

// keptValues [kept, numReps]: each line's replications added in order from
// 0.0 in 32 bits, divided by numReps.
Array<float, 1> LineMeans(int kept, int numReps, const Array<float, 2>& keptValues);

enum class AcrossEnvsOrder {
  ReplicationsOuter,  // trait statistics, mapping and permutation
  EnvironmentsOuter,  // the phenotypic variance
};

// keptValues [kept, numEnvs, numReps]: all cells of a line added in the
// given order, divided by numReps * numEnvs formed as an integer.
Array<float, 1> LineMeansAcrossEnvs(int kept, int numEnvs, int numReps, const Array<float, 3>& keptValues,
                                    AcrossEnvsOrder order);

}  // namespace tov
