#include "markers/MarkerReports.h"

#include <algorithm>

#include "markers/Binning.h"
#include "markers/Multicollinearity.h"
#include "text/Format.h"

namespace tov {

namespace {

Row Labels() {
  Row row;
  row.Text("MarkerID", 12).Blank().Text("MarkerName", 35);
  return row;
}

// One lower-triangular table over the markers listed in ids (MarkerIDs).
void WriteTriangle(TextOutput& unit, const Array<std::string, 1>& markerName, const Array<float, 2>& values,
                   const Array<std::int32_t, 1>& ids) {
  const int count = static_cast<int>(ids.Size());
  const int shown = std::min(count, CorrelationTableLimit);
  const Array<float, 2> correlation = GenotypeCorrelations(values, ids, shown);
  Row heading = Labels();
  for (int p = 1; p <= count; ++p) heading.Integer(ids(p), 12);
  unit.WriteLine(heading.Str());
  for (int p = 1; p <= shown; ++p) {
    Row row;
    row.Integer(ids(p), 12).Blank().Text(markerName(ids(p)), 35);
    for (int q = 1; q <= p; ++q)
      row.Fixed(correlation(p, q), 12, 4);
    unit.WriteLine(row.Str());
  }
  unit.WriteLine("");
}

}  // namespace

void WriteCorrelationReport(TextOutput& unit, const Array<std::string, 1>& markerName,
                            const Array<char, 2>& markerType, const Array<std::int32_t, 1>& keptMarker) {
  const Array<float, 2> values = GenotypeValues(MarkerColumns(markerType));
  const int numMarkers = static_cast<int>(markerType.Extent(1));
  // The first table's heading stops where its rows stop.
  Array<std::int32_t, 1> all(std::min(numMarkers, CorrelationTableLimit));
  for (int m = 1; m <= static_cast<int>(all.Size()); ++m) all(m) = m;
  WriteTriangle(unit, markerName, values, all);
  WriteTriangle(unit, markerName, values, keptMarker);
}

void WriteMarkerTable(TextOutput& unit, const Array<std::string, 1>& markerName, const Array<char, 2>& markerType,
                      const Array<std::int32_t, 1>& keptMarker) {
  unit.WriteLine(Labels()
                     .Text("Size(Donor)", 12)
                     .Text("Size(Bkgrd)", 12)
                     .Text("Missing", 12)
                     .Text("Deleted", 12)
                     .Str());
  const auto numMarkers = markerType.Extent(1);
  const auto populationSize = markerType.Extent(2);
  std::size_t cursor = 1;
  for (std::int64_t m = 1; m <= numMarkers; ++m) {
    int donor = 0, background = 0, missing = 0;
    for (std::int64_t line = 1; line <= populationSize; ++line) {
      const char code = markerType(m, line);
      donor += code == 'A';
      background += code == 'B';
      missing += code == 'X';
    }
    // A merge of the ascending MarkerIDs with the ascending kept list.
    const bool isKept = cursor <= keptMarker.Size() && keptMarker(cursor) == m;
    if (isKept) ++cursor;
    unit.WriteLine(Row()
                       .Integer(m, 12)
                       .Blank()
                       .Text(markerName(m), 35)
                       .Integer(donor, 12)
                       .Integer(background, 12)
                       .Integer(missing, 12)
                       .Integer(isKept ? 0 : 1, 12)
                       .Str());
  }
}

}  // namespace tov
