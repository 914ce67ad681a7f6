#pragma once
// The leading fields that every mapping table row shares: trait number,
// one blank, trait name, environment.  The pass over the mean of all
// environments, numbered one past the last, is labelled "Mean".

#include <string_view>

#include "text/Format.h"

namespace tov {

// TraitID in 12, a blank, TraitName in 19, Environment in 12.
Row TablePlace(int trait, std::string_view traitName, int environment, int numEnvs);

}  // namespace tov
