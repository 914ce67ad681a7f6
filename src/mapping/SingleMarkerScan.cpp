#include "mapping/SingleMarkerScan.h"

#include "mapping/TwoGroupTest.h"

namespace tov {

void SingleMarkerScan(int numMarkers, int numLines, const Array<char, 2>& scanGenotype, const float* y,
                      MarkerTestTable& table) {
  const char* codes = scanGenotype.Data();
  // Markers tested side by side: for one line the codes of neighbouring
  // markers are contiguous, so each lane follows one marker in line order.
  int m = 1;
  for (; m + TwoGroupBlockWidth - 1 <= numMarkers; m += TwoGroupBlockWidth) {
    for (int j = 0; j < TwoGroupBlockWidth; ++j) table.Test(m + j).MarkerIndex = m + j;
    TwoGroupBlock(numLines, codes + (m - 1), numMarkers, y, &table.Test(m));
  }
  for (; m <= numMarkers; ++m) {
    table.Test(m).MarkerIndex = m;
    TwoGroupOne(numLines, codes + (m - 1), numMarkers, y, table.Test(m));
  }
}

}  // namespace tov
