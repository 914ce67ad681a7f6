#pragma once
// The rows of the permutation tables ".tsm", ".tic" and ".tice": one per
// shuffle, then the threshold.  Their headings are written when the files
// are opened.

#include <string_view>

#include "text/TextOutput.h"

namespace tov {

// TraitID, TraitName, Environment, the shuffle's number within the trait
// and environment, and its highest LOD.
void WriteShuffleRow(TextOutput& unit, int trait, std::string_view traitName, int environment, int shuffle,
                     float maxLOD);

// "Threshold" in each leading column, then the threshold.
void WriteThresholdRow(TextOutput& unit, float threshold);

}  // namespace tov
