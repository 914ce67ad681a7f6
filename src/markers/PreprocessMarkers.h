#pragma once
// Marker preprocessing: binning, then the multicollinearity step, leaving
// the markers that mapping and simulation work on.  Progress and tables go
// to the log.

#include <cstdint>
#include <string>

#include "core/Array.h"

namespace tov {

// The ascending MarkerIDs of the kept markers.  markerType is
// [NumMarkers, PopulationSize]; a negative conditionNumber skips step 2.
Array<std::int32_t, 1> PreprocessMarkers(const Array<std::string, 1>& markerName, const Array<char, 2>& markerType,
                                         float conditionNumber);

}  // namespace tov
