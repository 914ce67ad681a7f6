#pragma once
// The likelihood ratio tests of a marker pair over the four homozygous
// cells of the pair: the full model of one mean per cell, the additive
// model whose cell means are built from a mean and two additive effects,
// and the null model of one mean.  LODaa (full against additive) is the
// evidence of epistasis, LODtotal (full against null) that of the pair as
// a whole.  Single precision, sums from 0.0 over the lines in order.

#include "mapping/PairTest.h"

namespace tov {

// codes1, codes2: the n one-byte genotypes of the two markers; y: n values.
// A line takes part when both of its codes are 'A' or 'B'; cell k of the
// line is 1 ('A','A'), 2 ('A','B'), 3 ('B','A') or 4 ('B','B').
//   m0 = the mean over the lines taking part, mk = the mean of cell k;
//   freqs(k) = nk / N; the additive cell values e1 = mean + add1 + add2,
//   e2 = mean + add1 - add2, e3 = mean - add1 + add2, e4 = mean - add1 -
//   add2 (PairEffects of m1 .. m4, each added from the left);
//   v0, v1, v2 = the sums of squares about m0, mk and ek, run side by side,
//   each divided by N - 1 (on purpose, though the models spend different
//   degrees of freedom);
//   L0, L1, L2 = the sums of LogDensity10 under the three models;
//   LOD(1) = L1 - L2, LOD(2) = L1 - L0, each set to 0.0 when negative
//   (NaN stays NaN), and LOD(1) bounded by LOD(2).
// An empty cell gives a NaN mean, all effects 0.0 and so a comparison
// against a model of mean zero; N = 1 or a constant y gives NaN LODs.
// This is the plain, line-by-line form of the test: the pair kernel
// (PairKernel.h) must reproduce it bit for bit.
void FourGroupTest(int n, const char* codes1, const char* codes2, const float* y, FixedArray<float, 2>& LOD,
                   FixedArray<float, 4>& means, FixedArray<float, 4>& freqs);

// The cell of a pair of codes, 1 .. 4, or 0 when either is not 'A' or 'B'.
constexpr int PairCell(char code1, char code2) {
  const bool typed = (code1 == 'A' || code1 == 'B') && (code2 == 'A' || code2 == 'B');
  return typed ? 1 + (code1 == 'B' ? 2 : 0) + (code2 == 'B' ? 1 : 0) : 0;
}

// LOD(1) = L1 - L2 and LOD(2) = L1 - L0, clipped at 0.0 (NaN stays NaN),
// LOD(1) bounded by LOD(2).
void PairLods(float L0, float L1, float L2, FixedArray<float, 2>& LOD);

}  // namespace tov
