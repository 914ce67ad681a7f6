#pragma once
// The two tables of an epistatic scan: every pair with a complete record
// (".rice"), and the flagged pairs alone (".qice").

#include <string_view>

#include "core/RunData.h"
#include "mapping/PairTest.h"
#include "text/TextOutput.h"

namespace tov {

// varP: the phenotypic variance of the trait in this environment; sumVG:
// VT summed over the flagged pairs; rSquare: the share of variance the
// flagged pairs explain together, a fraction.  In the full table PVEaa and
// PVEtotal are V12 and VT of the pair's 2 by 2 table as shares of varP; in
// the selected table the flagged pairs share out rSquare in proportion to
// their VT (and V12).  Marker IDs and names come from run.KeptMarker and
// run.MarkerName.
void WritePairTables(TextOutput& allUnit, TextOutput& selectedUnit, const RunData& run, int trait,
                     std::string_view traitName, int environment, float varP, float sumVG, float rSquare,
                     const PairTestTable& table);

}  // namespace tov
