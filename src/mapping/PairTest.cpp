#include "mapping/PairTest.h"

#include <cmath>

namespace tov {

std::int32_t NumPairs(std::int32_t n) {
  // Wraps like the 32-bit product it stands for, without undefined behaviour.
  const auto product = static_cast<std::uint32_t>(n) * static_cast<std::uint32_t>(n - 1);
  return static_cast<std::int32_t>(product) / 2;
}

void AllocPairTests(int methodCode, PairTestTable& table) {
  if (methodCode < EpistaticMapping || methodCode > EpistaticLastCode) return;
  // Value-initialised records are cleared: flag false, markers 0, arrays 0.0.
  table.Test.Allocate(table.NumTests);
}

void FreePairTests(PairTestTable& table) { table.Test.Release(); }

bool HasNaN(const PairTest& test) {
  bool nan = std::isnan(test.LOD(1)) || std::isnan(test.LOD(2));
  for (int k = 1; k <= 4; ++k) nan = nan || std::isnan(test.CellMean(k)) || std::isnan(test.CellFreq(k));
  return nan;
}

}  // namespace tov
