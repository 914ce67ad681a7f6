#pragma once
// The report of a run as one self-contained HTML page: inline SVG and
// style, no script and no link to the network.

#include <string>
#include <vector>

#include "tools/report/Peaks.h"
#include "tools/report/RunTables.h"

namespace tov {

// The peaks as a table of text, for the page and for its TSV copy.
TextTable PeakTable(const std::vector<Peak>& peaks);

std::string ReportPage(const RunTables& run, const std::vector<std::string>& tsvFiles);

}  // namespace tov
