#pragma once
// Dense copies of the slices of Phenotype [lines, traits, environments,
// replications] that the line-value rule works on.

#include "core/Array.h"

namespace tov {

// [lines, replications] of trait t in environment e.
Array<float, 2> TraitEnvSlice(const Array<float, 4>& phenotype, int t, int e);

// [lines, environments, replications] of trait t.
Array<float, 3> TraitSlice(const Array<float, 4>& phenotype, int t);

// A read-only window on a whole slice.
inline ArrayView<const float, 2> ConstView(const Array<float, 2>& a) {
  return ArrayView<const float, 2>(a.Data(), a.Extent(1), a.Extent(2));
}
inline ArrayView<const float, 3> ConstView(const Array<float, 3>& a) {
  return ArrayView<const float, 3>(a.Data(), a.Extent(1), a.Extent(2), a.Extent(3));
}

}  // namespace tov
