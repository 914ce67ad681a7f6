#include "mapping/SingleMarkerScan.h"

#include "mapping/TwoGroupTest.h"

namespace tov {

namespace {

// Markers tested side by side: for one line the codes of neighbouring
// markers are contiguous, so each lane follows one marker in line order.
constexpr int MarkerLanes = 16;

}  // namespace

void SingleMarkerScan(int numMarkers, int numLines, const Array<char, 2>& scanGenotype, const float* y,
                      MarkerTestTable& table) {
  const char* codes = scanGenotype.Data();
  int m = 1;
  for (; m + MarkerLanes - 1 <= numMarkers; m += MarkerLanes) {
    for (int j = 0; j < MarkerLanes; ++j) table.Test(m + j).MarkerIndex = m + j;
    TwoGroupLanes<MarkerLanes>(numLines, codes + (m - 1), numMarkers, y, &table.Test(m));
  }
  for (; m <= numMarkers; ++m) {
    table.Test(m).MarkerIndex = m;
    TwoGroupLanes<1>(numLines, codes + (m - 1), numMarkers, y, &table.Test(m));
  }
}

}  // namespace tov
