#pragma once
// The loop of QTL mapping over traits, environments and the mean over all
// environments: one value per line, the methods the parameter file switched
// on, and their tables.

#include "core/RunData.h"

namespace tov {

// Reads the run data, sets PopulationSizeKept and KeptLine for each pass
// (the last pass's values remain) and writes through the open units.  Does
// nothing unless a method indicator is nonzero.
void MappingDriver(RunData& run);

}  // namespace tov
