#pragma once
// The empirical LOD threshold of a method: a quantile of the highest LODs
// of all its shuffles, pooled over traits and environments.

namespace tov {

// maxima[0 .. n - 1], in any order; alpha the type I error rate.  With B
// the sorted maxima (1-based) and q = n * (1 - alpha) in 32 bits: the mean
// of B(q) and B(q + 1) when q is a whole number, else B(floor(q) + 1).  An
// index past either end reads the nearest end; no maximum at all gives 0.0.
float PermutationThreshold(int n, const float* maxima, float alpha);

}  // namespace tov
