#include "phenotype/LineMeans.h"

namespace tov {

Array<float, 1> LineMeans(int kept, int numReps, const Array<float, 2>& keptValues) {
  Array<float, 1> means(kept);
  for (int line = 1; line <= kept; ++line) {
    float sum = 0.0f;
    for (int r = 1; r <= numReps; ++r) sum = sum + keptValues(line, r);
    means(line) = sum / static_cast<float>(numReps);
  }
  return means;
}

Array<float, 1> LineMeansAcrossEnvs(int kept, int numEnvs, int numReps, const Array<float, 3>& keptValues,
                                    AcrossEnvsOrder order) {
  Array<float, 1> means(kept);
  const bool replicationsOuter = order == AcrossEnvsOrder::ReplicationsOuter;
  const int outerCount = replicationsOuter ? numReps : numEnvs;
  const int innerCount = replicationsOuter ? numEnvs : numReps;
  for (int line = 1; line <= kept; ++line) {
    float sum = 0.0f;
    for (int outer = 1; outer <= outerCount; ++outer)
      for (int inner = 1; inner <= innerCount; ++inner)
        sum = sum + (replicationsOuter ? keptValues(line, inner, outer) : keptValues(line, outer, inner));
    means(line) = sum / static_cast<float>(numReps * numEnvs);
  }
  return means;
}

}  // namespace tov
