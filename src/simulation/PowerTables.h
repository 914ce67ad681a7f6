#pragma once
// The power tables of a simulation, ".psm" for single-marker analysis and
// ".pic" for additive mapping: a heading of the kept MarkerIDs, one row of
// estimated additive effects per simulation, and a summary of how often
// each kept marker came out significant, with the true model beside it.
// Every number is right-aligned in 12 columns, reals with 4 decimals, and
// no blank stands between columns.

#include <string>

#include "core/Array.h"
#include "core/RunData.h"
#include "mapping/MarkerTest.h"
#include "text/TextOutput.h"

namespace tov {

// The most MarkerIDs one heading line holds; the IDs beyond continue on
// further lines of as many, without a first column.
constexpr int PowerHeadingWidth = 10000;

// "Simulation", then keptMarker(j) for every kept marker.
void WritePowerHeading(TextOutput& unit, const Array<std::int32_t, 1>& keptMarker);

// simulation, then the additive effect of every record in table order, 0.0
// where a group mean is NaN.
std::string EffectsRow(int simulation, const MarkerTestTable& table);

// detected [NumMarkersKept]: the simulations in which each kept marker was
// significant.  Writes "Power(%)" (detected / NumSimulations * 100, NaN when
// no simulation ran), "TrueAdd", "PGVE(%)" and "PPVE(%)" of the marker's
// QTL, then "GenoVar" and "PhenoVar" with one value each.
void WritePowerSummary(TextOutput& unit, const RunData& run, const Array<float, 1>& detected);

}  // namespace tov
