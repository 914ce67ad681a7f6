#pragma once
// Tab-separated copies of the tables of a run, one file per table, named
// OutputBase.<table>.tsv, with a header row and the values as printed.

#include <string>
#include <vector>

#include "tools/report/RunTables.h"

namespace tov {

// Writes the files and returns their names; a file that cannot be written
// is left out and named in fault.
std::vector<std::string> WriteTsvTables(const RunTables& run, std::string& fault);

}  // namespace tov
