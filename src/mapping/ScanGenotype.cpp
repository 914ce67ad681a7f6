#include "mapping/ScanGenotype.h"

#include "mapping/MarkerCode.h"

namespace tov {

Array<char, 2> ScanGenotypeOf(const Array<char, 2>& markerType, const Array<std::int32_t, 1>& keptMarker,
                              const Array<std::int32_t, 1>& keptLine) {
  const auto numMarkers = static_cast<int>(keptMarker.Size());
  const auto numLines = static_cast<int>(keptLine.Size());
  Array<char, 2> scanGenotype(numMarkers, numLines);
  for (int l = 1; l <= numLines; ++l)
    for (int m = 1; m <= numMarkers; ++m) scanGenotype(m, l) = markerType(keptMarker(m), keptLine(l));
  return scanGenotype;
}

Array<std::int32_t, 2> CodedGenotypeOf(const Array<char, 2>& scanGenotype) {
  Array<std::int32_t, 2> coded(scanGenotype.Extent(1), scanGenotype.Extent(2));
  const char* code = scanGenotype.Data();
  std::int32_t* regressor = coded.Data();
  for (std::size_t i = 0; i < scanGenotype.Size(); ++i) regressor[i] = MarkerCode(code[i]);
  return coded;
}

}  // namespace tov
