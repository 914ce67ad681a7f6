#pragma once
// Step 1 of marker preprocessing: markers that carry the same information
// over the lines are tied into bins, and one marker of each bin is kept.

#include <cstdint>
#include <string>

#include "core/Array.h"

namespace tov {

// Genotype codes of one marker over all lines, one byte a line.
using GenotypeColumn = const char*;

// The working arrays of preprocessing, one element per MarkerID.
struct MarkerBins {
  Array<float, 1> MissingPercent;
  Array<std::int32_t, 1> BinID;    // 0 in no bin, 1, 2, ... the bin
  Array<std::int32_t, 1> Deleted;  // 1 for a removed marker
};

// The genotypes of every marker as a contiguous column: [PopulationSize,
// NumMarkers], lines fastest, from MarkerType [NumMarkers, PopulationSize].
Array<char, 2> MarkerColumns(const Array<char, 2>& markerType);

// True when the two markers never show different letters on a line where
// neither is missing ('X' matches anything).
bool SameGenotypes(int populationSize, GenotypeColumn first, GenotypeColumn second);

// Missing percentages, bins and the representatives of the bins.
MarkerBins BinMarkers(int numMarkers, int populationSize, const Array<char, 2>& columns);

// Sets Deleted for every bin member but the one with the least missing
// data (the lowest MarkerID on a tie).
void PickLeastMissing(int numMarkers, const Array<float, 1>& missingPercent, const Array<std::int32_t, 1>& binID,
                      Array<std::int32_t, 1>& deleted);

// The MarkerIDs with Deleted 0, ascending.
Array<std::int32_t, 1> CopyKeptMarkers(int numMarkers, const Array<std::int32_t, 1>& deleted);

// The bins table of the log.
void WriteBinsTable(const Array<std::string, 1>& markerName, const MarkerBins& bins);

}  // namespace tov
