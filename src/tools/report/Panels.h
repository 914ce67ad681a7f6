#pragma once
// The other drawings of the report: the heat map of LODaa over marker
// pairs, the histograms of the permutation maxima, the power per marker of
// a simulation.  Each returns an empty text when the run has no such table.

#include <string>

#include "tools/report/RunTables.h"

namespace tov {

std::string PairHeatMaps(const RunTables& run);
std::string PermutationHistograms(const RunTables& run);
std::string PowerCharts(const RunTables& run);

}  // namespace tov
