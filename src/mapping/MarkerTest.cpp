#include "mapping/MarkerTest.h"

#include <cmath>

namespace tov {

void AllocMarkerTests(int methodCode, MarkerTestTable& table) {
  const bool singleMarker = methodCode >= SingleMarkerMapping && methodCode <= SingleMarkerSimulation;
  const bool additive = methodCode >= AdditiveMapping && methodCode <= AdditiveSimulation;
  if (!singleMarker && !additive) return;
  // Value-initialised records are cleared: flag false, index 0, arrays 0.0.
  table.Test.Allocate(table.NumTests);
}

void FreeMarkerTests(MarkerTestTable& table) { table.Test.Release(); }

bool HasNaN(const MarkerTest& test) {
  return std::isnan(test.LOD(1)) || std::isnan(test.GroupMean(1)) || std::isnan(test.GroupMean(2)) ||
         std::isnan(test.GroupFreq(1)) || std::isnan(test.GroupFreq(2));
}

}  // namespace tov
