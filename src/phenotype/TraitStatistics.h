#pragma once
// The first table of ".sta": for each trait, one row of statistics of the
// line means in each environment and one across environments, then one
// empty line after the last trait.

#include "core/RunData.h"
#include "text/TextOutput.h"

namespace tov {

// Reads the sizes, Phenotype and TraitName of the run; changes nothing.
void TraitStatistics(const RunData& run, TextOutput& unit);

}  // namespace tov
