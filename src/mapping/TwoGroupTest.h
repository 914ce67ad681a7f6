#pragma once
// The likelihood ratio test of one marker between the lines of its two
// homozygous genotypes: two normal models (one mean, or one mean per group)
// compared in base-10 log densities.  Single precision, sums from 0.0 over
// the lines in order; every bad case ends as a NaN or 0.0 in the record.

#include <cstddef>

#include "mapping/MarkerTest.h"

namespace tov {

// codes: n one-byte genotypes; y: n values.  LOD receives one value, means
// and freqs two each ('A' first).  Lines with a code other than 'A' or 'B'
// take no part.
void TwoGroupTest(int n, const char* codes, const float* y, float& LOD, FixedArray<float, 2>& means,
                  FixedArray<float, 2>& freqs);

// The same test for TwoGroupBlockWidth markers side by side, into
// records[0 .. TwoGroupBlockWidth - 1]: the code of line l (0-based) at
// marker j is codes[l * stride + j].  Each marker sums in line order exactly
// as TwoGroupTest does, so the results are bit-identical to testing the
// markers one by one.
constexpr int TwoGroupBlockWidth = 32;
void TwoGroupBlock(int n, const char* codes, std::ptrdiff_t stride, const float* y, MarkerTest* records);

// One marker whose codes lie stride apart.
void TwoGroupOne(int n, const char* codes, std::ptrdiff_t stride, const float* y, MarkerTest& record);

}  // namespace tov
