#include "permutation/PermutationTables.h"

#include "mapping/TablePlace.h"
#include "text/Format.h"

namespace tov {

void WriteShuffleRow(TextOutput& unit, int trait, std::string_view traitName, int environment, int shuffle,
                     float maxLOD) {
  // Environments here never pass the last one, so TablePlace never writes
  // "Mean".
  Row row = TablePlace(trait, traitName, environment, environment);
  row.Integer(shuffle, 12).Fixed(maxLOD, 12, 4);
  unit.WriteLine(row.Str());
}

void WriteThresholdRow(TextOutput& unit, float threshold) {
  Row row;
  row.Text("Threshold", 12).Blank().Text("Threshold", 19).Text("Threshold", 12).Text("Threshold", 12);
  row.Fixed(threshold, 12, 4);
  unit.WriteLine(row.Str());
}

}  // namespace tov
