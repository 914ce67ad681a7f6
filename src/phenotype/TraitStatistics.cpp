#include "phenotype/TraitStatistics.h"

#include "phenotype/LineMeans.h"
#include "phenotype/LineValues.h"
#include "phenotype/PhenotypeSlices.h"
#include "phenotype/TraitStatisticsRow.h"

namespace tov {

void TraitStatistics(const RunData& run, TextOutput& unit) {
  const int numLines = run.PopulationSize;
  const int numEnvs = run.NumEnvs;
  const int numReps = run.NumReps;
  Array<std::int32_t, 1> keptLine;
  for (int t = 1; t <= run.NumTraits; ++t) {
    for (int e = 1; e <= numEnvs; ++e) {
      const Array<float, 2> slice = TraitEnvSlice(run.Phenotype, t, e);
      Array<float, 2> keptValues;
      const int kept = LineValues(numLines, numReps, ConstView(slice), keptLine, keptValues);
      const Array<float, 1> means = LineMeans(kept, numReps, keptValues);
      TraitStatisticsRow(unit, kept, means.Data(), t, run.TraitName(t, e, 1));
    }
    const Array<float, 3> slice = TraitSlice(run.Phenotype, t);
    Array<float, 3> keptValues;
    const int kept = LineValuesAcrossEnvs(numLines, numEnvs, numReps, ConstView(slice), keptLine, keptValues);
    const Array<float, 1> means =
        LineMeansAcrossEnvs(kept, numEnvs, numReps, keptValues, AcrossEnvsOrder::ReplicationsOuter);
    // The across-environment row bears the name of the first environment.
    TraitStatisticsRow(unit, kept, means.Data(), t, run.TraitName(t, 1, 1));
  }
  unit.WriteLine("");
}

}  // namespace tov
