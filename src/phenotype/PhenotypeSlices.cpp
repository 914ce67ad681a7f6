#include "phenotype/PhenotypeSlices.h"

namespace tov {

Array<float, 2> TraitEnvSlice(const Array<float, 4>& phenotype, int t, int e) {
  const auto numLines = phenotype.Extent(1);
  const auto numReps = phenotype.Extent(4);
  Array<float, 2> slice(numLines, numReps);
  for (std::int64_t r = 1; r <= numReps; ++r)
    for (std::int64_t line = 1; line <= numLines; ++line) slice(line, r) = phenotype(line, t, e, r);
  return slice;
}

Array<float, 3> TraitSlice(const Array<float, 4>& phenotype, int t) {
  const auto numLines = phenotype.Extent(1);
  const auto numEnvs = phenotype.Extent(3);
  const auto numReps = phenotype.Extent(4);
  Array<float, 3> slice(numLines, numEnvs, numReps);
  for (std::int64_t r = 1; r <= numReps; ++r)
    for (std::int64_t e = 1; e <= numEnvs; ++e)
      for (std::int64_t line = 1; line <= numLines; ++line) slice(line, e, r) = phenotype(line, t, e, r);
  return slice;
}

}  // namespace tov
