#pragma once
// Step 2 of marker preprocessing: while the condition index of the kept
// markers' correlation matrix lies above the user's limit, one marker of
// the most correlated pair is removed.

#include <cstdint>
#include <string>

#include "core/Array.h"

namespace tov {

// The genotype codes as the numbers the correlations are taken on: each
// byte's character code, 'A' 65, 'B' 66, 'X' 88 (so a missing genotype
// counts as a number).  [PopulationSize, NumMarkers], lines fastest.
Array<float, 2> GenotypeValues(const Array<char, 2>& columns);

// The correlations over all lines of the genotype values of the first
// count markers listed in ids, the diagonal included: [count, count].
Array<float, 2> GenotypeCorrelations(const Array<float, 2>& values, const Array<std::int32_t, 1>& ids, int count);

// 1.0 on the diagonal, the correlations of the kept markers elsewhere.
Array<float, 2> BuildCorrelationMatrix(const Array<float, 2>& values, const Array<std::int32_t, 1>& keptMarker);

// The plain ratio of the largest to the smallest eigenvalue; infinity for
// a smallest eigenvalue below 100 times the smallest normal number; the
// previous value when the eigenanalysis reports an error.
void ComputeConditionIndex(int populationSize, const Array<float, 2>& correlation, float& conditionIndex);

// The removal loop with its table in the log.  Sets Deleted of the removed
// markers and returns the kept MarkerIDs.
Array<std::int32_t, 1> HandleMulticollinearity(float conditionNumber, const Array<std::string, 1>& markerName,
                                               const Array<char, 2>& columns, Array<std::int32_t, 1>& deleted);

// Step 2 looks at this many markers at most.
constexpr int MulticollinearityMarkerLimit = 200;

}  // namespace tov
