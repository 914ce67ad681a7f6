#include "mapping/SelectedPairRSquare.h"

#include "mapping/MarkerCode.h"
#include "mapping/SelectedRSquare.h"

namespace tov {

namespace {

int CountFlagged(const PairTestTable& table) {
  int count = 0;
  for (int p = 1; p <= table.NumTests; ++p) count += table.Test(p).Significant != LogicalFalse;
  return count;
}

}  // namespace

void DesignOfSelectedPairs(int numLines, const Array<char, 2>& scanGenotype, const PairTestTable& table,
                           Array<float, 2>& X) {
  const int flagged = CountFlagged(table);
  X.Allocate(numLines, 3 * flagged);
  int k = 0;
  for (int p = 1; p <= table.NumTests; ++p) {
    const PairTest& test = table.Test(p);
    if (test.Significant == LogicalFalse) continue;
    ++k;
    for (int l = 1; l <= numLines; ++l) {
      const auto code1 = static_cast<float>(MarkerCode(scanGenotype(test.Marker1, l)));
      const auto code2 = static_cast<float>(MarkerCode(scanGenotype(test.Marker2, l)));
      X(l, k) = code1;
      X(l, flagged + k) = code2;
      X(l, 2 * flagged + k) = code1 * code2;
    }
  }
}

float SelectedPairRSquare(int numLines, const Array<char, 2>& scanGenotype, const float* y,
                          const PairTestTable& table) {
  if (CountFlagged(table) == 0) return 0.0f;
  Array<float, 2> X;
  DesignOfSelectedPairs(numLines, scanGenotype, table, X);
  return RSquareOfDesign(y, X);
}

}  // namespace tov
