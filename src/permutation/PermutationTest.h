#pragma once
// Empirical LOD thresholds.  For each method whose permutation indicator is
// 1, the line means of every trait and environment are shuffled and scanned
// as the method scans them; the highest LOD of each shuffle goes to the
// method's table, and a quantile of all of them, pooled over traits and
// environments, replaces the method's LOD threshold in the run data before
// the mapping reads it.

#include "core/RunData.h"

namespace tov {

// Reads the phenotypes, kept markers and permutation parameters of run;
// writes the rows of ".tsm", ".tic", ".tice", their threshold rows, and
// SMALOD, AddLOD, EpiLOD for the methods that ran.  Sets KeptLine and
// PopulationSizeKept for each pass.  With all three indicators 0 it does
// nothing.
void PermutationTest(RunData& run);

}  // namespace tov
