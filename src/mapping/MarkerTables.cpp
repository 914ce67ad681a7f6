#include "mapping/MarkerTables.h"

#include <cmath>

#include "mapping/MarkerEffects.h"
#include "mapping/TablePlace.h"

namespace tov {

namespace {

// A share of variance that came out negative or NaN prints as 0.0.
float ReportedShare(float pve) { return std::isnan(pve) || pve < 0.0f ? 0.0f : pve; }

std::string MarkerRow(const Row& place, int markerId, std::string_view markerName, const MarkerTest& test,
                      float pve, float add) {
  Row row = place;
  row.Integer(markerId, 12).Blank().Text(markerName, 35);
  row.Fixed(test.LOD(1), 12, 4).Fixed(pve, 12, 4).Fixed(add, 12, 4);
  row.Fixed(test.GroupMean(1), 12, 4).Fixed(test.GroupMean(2), 12, 4);
  return row.Str();
}

}  // namespace

void WriteMarkerTables(TextOutput& allUnit, TextOutput& selectedUnit, const RunData& run, int trait,
                       std::string_view traitName, int environment, float varP, float sumVG, float rSquare,
                       const MarkerTestTable& table) {
  const Row place = TablePlace(trait, traitName, environment, run.NumEnvs);
  for (int m = 1; m <= table.NumTests; ++m) {
    const MarkerTest& test = table.Test(m);
    if (HasNaN(test)) continue;
    const int markerId = run.KeptMarker(test.MarkerIndex);
    const std::string& markerName = run.MarkerName(markerId);
    float mean = 0.0f;
    float add = 0.0f;
    GenotypeEffects(test.GroupMean, mean, add);
    const float geneticVariance = MarkerGeneticVariance(test.GroupFreq, test.GroupMean);
    allUnit.WriteLine(MarkerRow(place, markerId, markerName, test, ReportedShare(geneticVariance * 100.0f / varP), add));
    if (test.Significant != LogicalFalse)
      selectedUnit.WriteLine(MarkerRow(place, markerId, markerName, test,
                                       ReportedShare((geneticVariance * 100.0f / sumVG) * rSquare), add));
  }
}

}  // namespace tov
