#include "mapping/EpistaticScan.h"

#include <cstdint>
#include <vector>

#include "core/Parallel.h"
#include "mapping/AdditiveScan.h"
#include "mapping/MarkerCode.h"
#include "mapping/PairKernel.h"

namespace tov {

namespace {

// The slope of each marker's first term in the model; whether any marker
// has one.
bool TermsOfMarkers(int numMarkers, const StepModel& model, SecondMarkerTerms& terms) {
  terms.Selected.Allocate(numMarkers);
  terms.Slope.Allocate(numMarkers);
  bool any = false;
  for (int k = 1; k <= model.NumTerms; ++k) {
    const int m = model.TermIndex(k);
    if (m < 1 || m > numMarkers || terms.Selected(m) != 0) continue;
    terms.Selected(m) = 1;
    terms.Slope(m) = model.Coef[static_cast<std::size_t>(k)];
    any = true;
  }
  return any;
}

}  // namespace

void EpistaticScan(int numMarkers, int numLines, const Array<char, 2>& scanGenotype, const float* y,
                   const StepModel& model, PairTestTable& table) {
  const std::int64_t numPairs = static_cast<std::int64_t>(numMarkers) * (numMarkers - 1) / 2;
  if (numMarkers < 2 || table.NumTests != numPairs || !table.Test.IsAllocated()) return;
  const auto size = static_cast<std::size_t>(numLines < 0 ? 0 : numLines);
  std::vector<float> residual(size);
  FittedValues(numMarkers, numLines, scanGenotype, model, residual.data());
  for (std::size_t l = 0; l < size; ++l) residual[l] = y[l] - residual[l];

  SecondMarkerTerms terms;
  const bool anyTerm = TermsOfMarkers(numMarkers, model, terms);
  const PairCodes codes = PairCodesOf(numMarkers, numLines, scanGenotype);

  // Row i holds the pairs (i, i + 1) .. (i, n); each row writes only its
  // own records.
  ParallelFor(numMarkers - 1, [&](int row) {
    const int first = row + 1;
    const std::int64_t before = static_cast<std::int64_t>(row) * numMarkers - static_cast<std::int64_t>(row) * first / 2;
    std::vector<float> rowY(residual);
    if (terms.Selected(first) != 0) {
      const float b = terms.Slope(first);
      for (int l = 1; l <= numLines; ++l)
        rowY[l - 1] = rowY[l - 1] + b * static_cast<float>(MarkerCode(scanGenotype(first, l)));
    }
    FourGroupRow(codes, first, first + 1, numMarkers, rowY.data(), anyTerm ? &terms : nullptr,
                 &table.Test(before + 1));
  });
}

}  // namespace tov
