#pragma once
// The genotypes of the kept markers over the lines at hand, as the scans
// read them: one-byte codes, and the int32 regressors of the stepwise
// selection.  Both are [markers, lines] with the marker index fastest, so
// that for one line the codes of neighbouring markers are contiguous.

#include <cstdint>

#include "core/Array.h"

namespace tov {

// Element (m, l) = markerType(keptMarker(m), keptLine(l)).
Array<char, 2> ScanGenotypeOf(const Array<char, 2>& markerType, const Array<std::int32_t, 1>& keptMarker,
                              const Array<std::int32_t, 1>& keptLine);

// Element (m, l) = MarkerCode(scanGenotype(m, l)).
Array<std::int32_t, 2> CodedGenotypeOf(const Array<char, 2>& scanGenotype);

}  // namespace tov
