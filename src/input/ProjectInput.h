#pragma once
// The project input file: the head (Indicator, NumMarkers, PopulationSize
// and, in a mapping project, NumTraits, NumEnvs, NumReps, each on a line
// of its own), the genotype block, and then the phenotype block of a
// mapping project or the genetic model of a simulation project.

#include <cstdint>
#include <string_view>

#include "core/RunData.h"
#include "text/TextInput.h"

namespace tov {

// The number of marker pairs, NumMarkers * (NumMarkers - 1) / 2, as the
// memory test of the marker count computes it: in 32-bit arithmetic that
// wraps around from 46342 markers on, a negative result counting as 0.
std::int32_t TriangleSize(std::int32_t numMarkers);

// Reads the file of that name (trailing blanks are dropped) into the run
// data.  On return StatusCode is 0 or the code of the first fault, whose
// message has been written; the arrays filled so far stay for
// ReleaseRunData.
void ReadProjectInput(RunData& run, std::string_view name);

// The same on a file the caller has opened, for a caller that has to
// answer a file that cannot be opened with a status code of its own.
void ReadProjectInput(RunData& run, TextInput& input);

}  // namespace tov
