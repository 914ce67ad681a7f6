#pragma once
// The LOD profiles of a mapping run: for each trait and environment (and
// the mean over environments), the LOD of single-marker analysis and of
// additive mapping along the markers, the thresholds, the chromosome
// boundaries, and the significant markers marked.

#include <string>

#include "tools/report/MarkerAxis.h"
#include "tools/report/RunTables.h"

namespace tov {

// The threshold of a method: the permutation table's closing row when the
// run has one, else the PAR file's value; source says which.
double MethodThreshold(const RunTables& run, const char* permutationTable, float parValue, std::string& source);

std::string LodProfiles(const RunTables& run, const MarkerAxis& axis);

}  // namespace tov
