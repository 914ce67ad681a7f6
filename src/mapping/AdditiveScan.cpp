#include "mapping/AdditiveScan.h"

#include <cstdint>
#include <vector>

#include "mapping/MarkerCode.h"
#include "mapping/SingleMarkerScan.h"
#include "mapping/TwoGroupTest.h"

namespace tov {

namespace {

// The regressor of marker m at line l; a marker outside 1..numMarkers, which
// only an undecodable pair number yields, contributes nothing.
float CodeAt(const Array<char, 2>& scanGenotype, int numMarkers, int m, int l) {
  if (m < 1 || m > numMarkers) return 0.0f;
  return static_cast<float>(MarkerCode(scanGenotype(m, l)));
}

}  // namespace

MarkerPair PairOfNumber(int n, int c) {
  const std::int64_t numPairs = static_cast<std::int64_t>(n) * (n - 1) / 2;
  if (c <= 0) return {0, 1};
  if (c > numPairs) return {n, n + 1};
  int p = 1;
  int q = c;
  while (p + q - n >= 1) {
    q = p + q - n;
    p = p + 1;
  }
  return {p, p + q};
}

void FittedValues(int numMarkers, int numLines, const Array<char, 2>& scanGenotype, const StepModel& model,
                  float* fit) {
  for (int l = 0; l < numLines; ++l) fit[l] = 0.0f;
  for (int k = 1; k <= model.NumTerms; ++k) {
    const float b = model.Coef[static_cast<std::size_t>(k)];
    const int i = model.TermIndex(k);
    if (i <= numMarkers) {
      for (int l = 1; l <= numLines; ++l) fit[l - 1] = fit[l - 1] + b * CodeAt(scanGenotype, numMarkers, i, l);
    } else {
      const MarkerPair pair = PairOfNumber(numMarkers, i - numMarkers);
      for (int l = 1; l <= numLines; ++l)
        fit[l - 1] = fit[l - 1] + b * CodeAt(scanGenotype, numMarkers, pair.First, l) *
                                      CodeAt(scanGenotype, numMarkers, pair.Second, l);
    }
  }
}

void AdditiveScan(int numMarkers, int numLines, const Array<char, 2>& scanGenotype, const float* y,
                  const StepModel& model, MarkerTestTable& table) {
  const auto size = static_cast<std::size_t>(numLines < 0 ? 0 : numLines);
  std::vector<float> fit(size), adjusted(size);
  FittedValues(numMarkers, numLines, scanGenotype, model, fit.data());
  for (std::size_t l = 0; l < size; ++l) adjusted[l] = y[l] - fit[l];

  // Every marker out of the model sees the same residual: scan them all on
  // it at once, then redo the markers of the model, each with its own term
  // put back.
  SingleMarkerScan(numMarkers, numLines, scanGenotype, adjusted.data(), table);
  std::vector<float> ownTerm(size);
  for (int k = 1; k <= model.NumTerms; ++k) {
    const int m = model.TermIndex(k);
    if (m < 1 || m > numMarkers) continue;
    bool firstHit = true;
    for (int earlier = 1; earlier < k; ++earlier) firstHit = firstHit && model.TermIndex(earlier) != m;
    if (!firstHit) continue;
    const float b = model.Coef[static_cast<std::size_t>(k)];
    for (int l = 1; l <= numLines; ++l)
      ownTerm[static_cast<std::size_t>(l - 1)] =
          adjusted[static_cast<std::size_t>(l - 1)] + b * static_cast<float>(MarkerCode(scanGenotype(m, l)));
    TwoGroupOne(numLines, scanGenotype.Data() + (m - 1), numMarkers, ownTerm.data(), table.Test(m));
  }
}

}  // namespace tov
