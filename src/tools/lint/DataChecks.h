#pragma once
// The linter's checks of what the program's readers made of the input:
// phenotype values that look like missing codes but are read as numbers
// (warnings); markers that binning drops or that are monomorphic among the
// phenotyped lines, and the markers the condition number removes (notes:
// the data, not the writing of the file, make them).

#include "core/RunData.h"
#include "tools/lint/Findings.h"

namespace tov {

void CheckPhenotypeValues(const RunData& run, const std::string& file, Findings& findings);
void CheckMarkers(const RunData& run, const std::string& file, const std::string& parFile, Findings& findings);

}  // namespace tov
