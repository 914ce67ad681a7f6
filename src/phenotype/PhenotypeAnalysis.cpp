#include "phenotype/PhenotypeAnalysis.h"

#include "numerics/basic/Basic.h"
#include "phenotype/EnvironmentAnova.h"
#include "phenotype/LineMeans.h"
#include "phenotype/LineValues.h"
#include "phenotype/PhenotypeSlices.h"

namespace tov {

void PhenotypeAnalysis(TextOutput& unit, int populationSize, int numTraits, int numEnvs, int numReps,
                       const Array<float, 4>& phenotype, Array<float, 2>& phenotypicVariance) {
  const int numLines = populationSize;
  Array<std::int32_t, 1> keptLine;
  for (int t = 1; t <= numTraits; ++t) {
    for (int e = 1; e <= numEnvs; ++e) {
      const Array<float, 2> slice = TraitEnvSlice(phenotype, t, e);
      Array<float, 2> keptValues;
      const int kept = LineValues(numLines, numReps, ConstView(slice), keptLine, keptValues);
      const Array<float, 1> means = LineMeans(kept, numReps, keptValues);
      phenotypicVariance(t, e) = ColumnVariance(kept, means.Data());
      if (numReps >= 2) EnvironmentAnova(unit, kept, numReps, keptValues);
    }
    if (numEnvs == 1) {
      phenotypicVariance(t, 2) = phenotypicVariance(t, 1);
      continue;
    }
    const Array<float, 3> slice = TraitSlice(phenotype, t);
    Array<float, 3> keptValues;
    const int kept = LineValuesAcrossEnvs(numLines, numEnvs, numReps, ConstView(slice), keptLine, keptValues);
    // Environments outer here, unlike the trait statistics and the mapping.
    const Array<float, 1> means =
        LineMeansAcrossEnvs(kept, numEnvs, numReps, keptValues, AcrossEnvsOrder::EnvironmentsOuter);
    phenotypicVariance(t, numEnvs + 1) = ColumnVariance(kept, means.Data());
    if (numReps >= 2) AcrossEnvironmentAnova(unit, kept, numEnvs, numReps, keptValues);
  }
}

}  // namespace tov
