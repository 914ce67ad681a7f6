#pragma once
// The reports written right after preprocessing: the marker table (".mtp")
// and the two lower-triangular correlation tables (".coe").

#include <cstdint>
#include <string>

#include "core/Array.h"
#include "text/TextOutput.h"

namespace tov {

// Each correlation table shows this many markers at most.
constexpr int CorrelationTableLimit = 1000;

void WriteCorrelationReport(TextOutput& unit, const Array<std::string, 1>& markerName,
                            const Array<char, 2>& markerType, const Array<std::int32_t, 1>& keptMarker);

void WriteMarkerTable(TextOutput& unit, const Array<std::string, 1>& markerName, const Array<char, 2>& markerType,
                      const Array<std::int32_t, 1>& keptMarker);

}  // namespace tov
