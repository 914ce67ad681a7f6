#pragma once
// The analyses of variance of ".sta" over the filled, balanced line values:
// lines by replications in one environment, and lines by environments with
// replications as the error across environments.

#include "core/Array.h"
#include "text/TextOutput.h"

namespace tov {

// values [kept, numReps]: one-way table with the lines as groups.
void EnvironmentAnova(TextOutput& unit, int kept, int numReps, const Array<float, 2>& values);

// values [kept, numEnvs, numReps]: lines (A), environments (B) and their
// interaction, then the table of the three effects.
void AcrossEnvironmentAnova(TextOutput& unit, int kept, int numEnvs, int numReps, const Array<float, 3>& values);

}  // namespace tov
