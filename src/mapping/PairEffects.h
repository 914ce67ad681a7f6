#pragma once
// What the four cell means of a marker pair report: the mean, the two
// additive effects and the additive-by-additive effect, and the variance
// of a two-way table split into two main effects and their interaction.

#include "mapping/PairTest.h"

namespace tov {

// With p1 .. p4 the cell means, each result a sum from 0.0 of +-0.25 p in
// the order p1 .. p4, 0.0 when NaN:
//   mean (+ + + +), add1 (+ + - -), add2 (+ - + -), addbyadd (+ - - +).
// An empty cell (NaN mean) thus makes all four 0.0.
void PairEffects(const float* means, float& mean, float& add1, float& add2, float& addbyadd);

// freqs and means r x c, row by row (element (a, b) at (a - 1) c + b - 1).
// The shares are normalised, each main effect is the mean weighted by the
// margin of the other factor less the grand mean, and the interaction is
// what is left.  V1, V2 and V12 are rescaled to add up to VT, and VT is
// then their sum; each result is 0.0 when NaN.  A null pointer skips that
// result.
void TwoWayVariance(int r, int c, const float* freqs, const float* means, float* VT, float* V1, float* V2,
                    float* V12);

// VT and V12 of a pair as a 2 by 2 table, first marker for rows.
void PairVariance(const PairTest& test, float& VT, float& V12);

// Flags every record without a NaN whose LODaa is strictly above the
// threshold; LODtotal plays no part.
void MarkSignificantPairs(float threshold, PairTestTable& table);

// The VT of the flagged records added in table order from 0.0.
float SumPairVariance(const PairTestTable& table);

}  // namespace tov
