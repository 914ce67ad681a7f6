#pragma once
// RSTEP-LRT additive mapping, second stage: every kept marker tested by the
// two-group likelihood ratio test on the line values less the fit of the
// selected model, the marker's own term (if it is one) put back.

#include "mapping/MarkerTest.h"
#include "core/Array.h"
#include "numerics/stepwise/StepModel.h"

namespace tov {

// The two markers of pair number c among n markers, pairs numbered
// (1, 2), (1, 3) ... (1, n), (2, 3) ...: c at most 0 gives (0, 1), c past
// the last pair gives (n, n + 1).
struct MarkerPair {
  int First;
  int Second;
};
MarkerPair PairOfNumber(int n, int c);

// fit [numLines] = the model without its intercept: a term with index up to
// numMarkers is a marker, one above it a marker pair (numbered past the
// markers).  Terms are added in order to each line's 0.0.
void FittedValues(int numMarkers, int numLines, const Array<char, 2>& scanGenotype, const StepModel& model,
                  float* fit);

// scanGenotype [numMarkers, numLines]; y [numLines].  Changes neither y nor
// the model; a model of no term gives the single-marker scan of y.
void AdditiveScan(int numMarkers, int numLines, const Array<char, 2>& scanGenotype, const float* y,
                  const StepModel& model, MarkerTestTable& table);

}  // namespace tov
