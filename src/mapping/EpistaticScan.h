#pragma once
// RSTEP-LRT epistatic mapping, second stage: every unordered pair of kept
// markers tested by the four-group likelihood ratio tests on the line
// values less the fit of the selected model, the terms of the pair's own
// markers (where they are selected) put back with their slopes alone.

#include "core/Array.h"
#include "mapping/PairTest.h"
#include "numerics/stepwise/StepModel.h"

namespace tov {

// scanGenotype [numMarkers, numLines]; y [numLines].  Fills Marker1,
// Marker2, LOD, CellMean and CellFreq of the n (n - 1) / 2 records of a
// table made by AllocPairTests, in the order (1, 2), (1, 3) ... (n - 1, n);
// a table of any other size is left as it is.  For each pair the phenotype
// is y - fit of the model, plus b * code of the first marker and then of
// the second where the marker is a term (the first term of that marker),
// every other selected marker held at its estimate.  Changes neither y nor
// the model; a model of no term tests every pair on y itself.  Each record
// is bit-identical to FourGroupTest of its pair on that phenotype, and the
// rows of pairs may run on several threads without changing a bit.
void EpistaticScan(int numMarkers, int numLines, const Array<char, 2>& scanGenotype, const float* y,
                   const StepModel& model, PairTestTable& table);

}  // namespace tov
