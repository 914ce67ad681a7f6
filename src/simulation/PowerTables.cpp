#include "simulation/PowerTables.h"

#include "mapping/MarkerEffects.h"
#include "text/Format.h"

namespace tov {

namespace {

constexpr int Width = 12;
constexpr int Decimals = 4;

// A label in the first column and, per kept marker, value(MarkerID).
template <class Value>
void WriteMarkerRow(TextOutput& unit, const char* label, const Array<std::int32_t, 1>& keptMarker, Value value) {
  Row row;
  row.Text(label, Width);
  for (int j = 1; j <= static_cast<int>(keptMarker.Size()); ++j) row.Fixed(value(j), Width, Decimals);
  unit.WriteLine(row.Str());
}

void WriteScalarRow(TextOutput& unit, const char* label, float value) {
  unit.WriteLine(Row().Text(label, Width).Fixed(value, Width, Decimals).Str());
}

}  // namespace

void WritePowerHeading(TextOutput& unit, const Array<std::int32_t, 1>& keptMarker) {
  Row row;
  row.Text("Simulation", Width);
  for (int j = 1; j <= static_cast<int>(keptMarker.Size()); ++j) {
    if (j > 1 && (j - 1) % PowerHeadingWidth == 0) {
      unit.WriteLine(row.Str());
      row = Row();
    }
    row.Integer(keptMarker(j), Width);
  }
  unit.WriteLine(row.Str());
}

std::string EffectsRow(int simulation, const MarkerTestTable& table) {
  Row row;
  row.Integer(simulation, Width);
  for (int j = 1; j <= table.NumTests; ++j) {
    float mean = 0.0f;
    float add = 0.0f;
    GenotypeEffects(table.Test(j).GroupMean, mean, add);
    row.Fixed(add, Width, Decimals);
  }
  return row.Str();
}

void WritePowerSummary(TextOutput& unit, const RunData& run, const Array<float, 1>& detected) {
  const Array<std::int32_t, 1>& kept = run.KeptMarker;
  const float numSimulations = static_cast<float>(run.NumSimulations);
  // Divided, then multiplied, in 32 bits: no simulation gives 0 / 0.
  WriteMarkerRow(unit, "Power(%)", kept, [&](int j) { return detected(j) / numSimulations * 100.0f; });
  WriteMarkerRow(unit, "TrueAdd", kept, [&](int j) { return run.QTLEffect(kept(j)); });
  WriteMarkerRow(unit, "PGVE(%)", kept, [&](int j) { return run.QTLPVEGenetic(kept(j)); });
  WriteMarkerRow(unit, "PPVE(%)", kept, [&](int j) { return run.QTLPVEPhenotypic(kept(j)); });
  WriteScalarRow(unit, "GenoVar", run.GeneticVariance);
  WriteScalarRow(unit, "PhenoVar", run.GeneticVariance + run.ErrorVariance);
}

}  // namespace tov
