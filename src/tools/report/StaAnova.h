#pragma once
// The analyses of variance that follow the trait statistics in .sta, read
// back as two tables: the fit of each analysis (R-square, adjusted
// R-square, estimated standard deviation, mean) and its sources of
// variation.  The analyses bear no label in the file; they follow the loop
// over traits, environments and then across environments, from which the
// labels are restored.

#include <string>
#include <vector>

#include "tools/report/FixedColumns.h"

namespace tov {

struct AnovaTables {
  TextTable Fit;      // TraitID, Environment, R-square(%), AdjustedR^2(%), Est.Std.Dev., Mean
  TextTable Sources;  // TraitID, Environment, Part, Source, DF, SS, MS, F, P
};

// lines: the whole of .sta; statistics: its first table, whose rows give
// the traits and the number of environments.
AnovaTables ReadAnovaTables(const std::vector<std::string>& lines, const TextTable& statistics);

}  // namespace tov
