#include "mapping/PairTables.h"

#include <cmath>
#include <string>
#include <vector>

#include "mapping/PairEffects.h"
#include "mapping/TablePlace.h"

namespace tov {

namespace {

// A share of variance that came out negative or NaN prints as 0.0.
float ReportedShare(float pve) { return std::isnan(pve) || pve < 0.0f ? 0.0f : pve; }

struct PairRow {
  Row Place;       // trait, environment and the two markers
  float Add1 = 0.0f;
  float Add2 = 0.0f;
  float AddByAdd = 0.0f;
};

std::string RowOf(const PairRow& pair, const PairTest& test, float pveAA, float pveTotal) {
  Row row = pair.Place;
  row.Fixed(test.LOD(1), 12, 4).Fixed(test.LOD(2), 12, 4).Fixed(pveAA, 12, 4).Fixed(pveTotal, 12, 4);
  row.Fixed(pair.Add1, 12, 4).Fixed(pair.Add2, 12, 4).Fixed(pair.AddByAdd, 12, 4);
  for (int k = 1; k <= 4; ++k) row.Fixed(test.CellMean(k), 12, 4);
  return row.Str();
}

}  // namespace

void WritePairTables(TextOutput& allUnit, TextOutput& selectedUnit, const RunData& run, int trait,
                     std::string_view traitName, int environment, float varP, float sumVG, float rSquare,
                     const PairTestTable& table) {
  const Row place = TablePlace(trait, traitName, environment, run.NumEnvs);
  // The ID and name of each kept marker, formed once for all its pairs.
  std::vector<std::string> markerField(static_cast<std::size_t>(run.KeptMarker.Size()) + 1);
  for (std::size_t m = 1; m < markerField.size(); ++m) {
    const int markerId = run.KeptMarker(m);
    markerField[m] = Row().Integer(markerId, 12).Blank().Text(run.MarkerName(markerId), 35).Str();
  }
  for (int p = 1; p <= table.NumTests; ++p) {
    const PairTest& test = table.Test(p);
    if (HasNaN(test)) continue;
    PairRow pair{place};
    for (int marker : {test.Marker1, test.Marker2}) pair.Place.Add(markerField[static_cast<std::size_t>(marker)]);
    float mean = 0.0f;
    PairEffects(test.CellMean.Element.data(), mean, pair.Add1, pair.Add2, pair.AddByAdd);
    float vt = 0.0f;
    float v12 = 0.0f;
    PairVariance(test, vt, v12);
    allUnit.WriteLine(RowOf(pair, test, ReportedShare((100.0f * v12) / varP), ReportedShare((100.0f * vt) / varP)));
    if (test.Significant != LogicalFalse)
      selectedUnit.WriteLine(RowOf(pair, test, ReportedShare(((100.0f * v12) / sumVG) * rSquare),
                                   ReportedShare(((100.0f * vt) / sumVG) * rSquare)));
  }
}

}  // namespace tov
