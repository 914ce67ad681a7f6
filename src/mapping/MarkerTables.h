#pragma once
// The two tables of a marker scan: every marker with a complete record
// (".rsm", ".ric"), and the flagged markers alone (".qsm", ".qic").

#include <string_view>

#include "mapping/MarkerTest.h"
#include "core/RunData.h"
#include "text/TextOutput.h"

namespace tov {

// varP: the phenotypic variance of the trait in this environment;
// sumVG: the genetic variance summed over the flagged markers; rSquare: the
// share of variance the flagged markers explain together, a fraction.  In
// the full table a marker's PVE is its own share of varP; in the selected
// table the flagged markers share out rSquare in proportion to their
// genetic variance.  Marker IDs and names come from run.KeptMarker and
// run.MarkerName.
void WriteMarkerTables(TextOutput& allUnit, TextOutput& selectedUnit, const RunData& run, int trait,
                       std::string_view traitName, int environment, float varP, float sumVG, float rSquare,
                       const MarkerTestTable& table);

}  // namespace tov
