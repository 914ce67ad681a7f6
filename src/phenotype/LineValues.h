#pragma once
// The one rule for missing phenotypes shared by every analysis: a missing
// replication takes the mean of the same line's valid values, and a line
// without any valid value leaves the data set.  Afterwards each kept line
// has a full set of cells, so that every consumer sees a balanced table.

#include <cstdint>

#include "core/Array.h"

namespace tov {

// values: [numLines, numReps], left unchanged.  keptLine is released and
// allocated afresh with the 1-based numbers of the kept lines, ascending;
// keptValues [kept, numReps] receives their rows after filling.  Returns
// the number of kept lines.
int LineValues(int numLines, int numReps, const ArrayView<const float, 2>& values,
               Array<std::int32_t, 1>& keptLine, Array<float, 2>& keptValues);

// The same over all environments: values [numLines, numEnvs, numReps]; a
// line is empty only when every cell of every environment is missing, and
// a missing cell takes the mean of the line's valid cells of all
// environments.  keptValues is [kept, numEnvs, numReps].
int LineValuesAcrossEnvs(int numLines, int numEnvs, int numReps, const ArrayView<const float, 3>& values,
                         Array<std::int32_t, 1>& keptLine, Array<float, 3>& keptValues);

}  // namespace tov
