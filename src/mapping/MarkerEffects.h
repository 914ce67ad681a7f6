#pragma once
// What a finished marker table reports: which markers pass the threshold,
// the additive effect and the genetic variance of each marker.

#include "mapping/MarkerTest.h"

namespace tov {

// Flags every record without a NaN whose LOD is strictly above the
// threshold.  Nothing clears a flag.
void MarkSignificant(float threshold, MarkerTestTable& table);

// mean = 0.5 M1 + 0.5 M2 and add = 0.5 M1 - 0.5 M2 from the group means,
// each 0.0 when NaN: add is positive when the 'A' lines score higher.
void GenotypeEffects(const FixedArray<float, 2>& means, float& mean, float& add);

// The variance of the two-point distribution of the group means under the
// group shares: the genetic variance of the marker, 0.0 when NaN.
float MarkerGeneticVariance(const FixedArray<float, 2>& freqs, const FixedArray<float, 2>& means);

// The genetic variances of the flagged records added in table order.
float SumGeneticVariance(const MarkerTestTable& table);

}  // namespace tov
