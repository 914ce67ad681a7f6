#include "markers/PreprocessMarkers.h"

#include "markers/Binning.h"
#include "markers/Multicollinearity.h"

namespace tov {

Array<std::int32_t, 1> PreprocessMarkers(const Array<std::string, 1>& markerName, const Array<char, 2>& markerType,
                                         float conditionNumber) {
  const int numMarkers = static_cast<int>(markerType.Extent(1));
  const int populationSize = static_cast<int>(markerType.Extent(2));
  const Array<char, 2> columns = MarkerColumns(markerType);
  MarkerBins bins = BinMarkers(numMarkers, populationSize, columns);
  WriteBinsTable(markerName, bins);
  Array<std::int32_t, 1> kept = CopyKeptMarkers(numMarkers, bins.Deleted);
  if (conditionNumber < 0.0f || kept.Size() > static_cast<std::size_t>(MulticollinearityMarkerLimit)) return kept;
  return HandleMulticollinearity(conditionNumber, markerName, columns, bins.Deleted);
}

}  // namespace tov
