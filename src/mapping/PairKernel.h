#pragma once
// The four-group test of many marker pairs side by side: the inner work of
// the epistatic scan and of its permutation test.  One call tests a first
// marker against a range of second markers, the pairs in blocks of
// PairBlockWidth lanes; each lane follows one pair and keeps its own sums
// over the lines in line order, so every record is bit-identical to
// FourGroupTest of that pair (FourGroupTest.h).  Lanes never split the
// lines of one pair.  Within a block a line's cell is found with masks, not
// branches, and what is constant within a test (means, variances, the
// constant of the log density) is formed once per test.
//
// The instruction set is chosen when the program runs: AVX-512 where the
// processor has it, else AVX2, else baseline x86-64.  All variants give the
// same bits; tests run each one the machine supports.

#include <cstdint>
#include <vector>

#include "core/Array.h"
#include "mapping/PairTest.h"

namespace tov {

constexpr int PairBlockWidth = 32;

// A line-major copy of the codes of the kept markers as regressors
// (MarkerCode: +1 'A', -1 'B', 0 missing), padded with 0 so that a block of
// lanes may read past the last marker: Code(m, l) is the code of marker m
// at line l, and the codes of one line are contiguous, one lane wide each.
struct PairCodes {
  std::int32_t NumMarkers = 0;
  std::int32_t NumLines = 0;
  Array<std::int32_t, 2> Code;  // [Stride, NumLines], Stride >= NumMarkers + PairBlockWidth - 1
};

// scanGenotype [numMarkers, numLines], markers fastest.
PairCodes PairCodesOf(int numMarkers, int numLines, const Array<char, 2>& scanGenotype);

// The terms of a selected model that come back for the second marker of a
// pair: where Selected(m) is nonzero, the phenotype of a pair whose second
// marker is m gets Slope(m) * MarkerCode(code of m) added, line by line.
struct SecondMarkerTerms {
  Array<std::int32_t, 1> Selected;  // [NumMarkers]
  Array<float, 1> Slope;            // [NumMarkers]
};

// Tests the pairs (first, s) for s = secondFrom .. secondTo (1-based kept
// markers; secondFrom > secondTo tests none) on y [NumLines], the
// phenotype of this first marker, and fills Marker1, Marker2, LOD,
// CellMean and CellFreq of records[0 .. secondTo - secondFrom].  terms may
// be null: no second marker gets a term back.  Allocates only scratch of
// the size of one row of lines.
void FourGroupRow(const PairCodes& codes, int first, int secondFrom, int secondTo, const float* y,
                  const SecondMarkerTerms* terms, PairTest* records);

// The instruction sets of the kernel.
enum class PairKernelIsa { Baseline, Avx2, Avx512 };

// Those this processor can run, Baseline first; and the widest of them,
// which FourGroupRow uses.
std::vector<PairKernelIsa> SupportedPairKernels();
PairKernelIsa BestPairKernel();

// FourGroupRow on a given instruction set, for tests and benchmarks; isa
// must be one of SupportedPairKernels().
void FourGroupRowWith(PairKernelIsa isa, const PairCodes& codes, int first, int secondFrom, int secondTo,
                      const float* y, const SecondMarkerTerms* terms, PairTest* records);

}  // namespace tov
