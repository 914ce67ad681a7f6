#pragma once
// The second pass over the phenotypes in a mapping run: the phenotypic
// variance of every trait in each environment and across environments, the
// denominator of every percentage of variance explained in mapping, and the
// analyses of variance of ".sta" where replications allow one.

#include "core/Array.h"
#include "text/TextOutput.h"

namespace tov {

// phenotype [populationSize, numTraits, numEnvs, numReps];
// phenotypicVariance [numTraits, numEnvs + 1] is filled, its last column
// across environments.
void PhenotypeAnalysis(TextOutput& unit, int populationSize, int numTraits, int numEnvs, int numReps,
                       const Array<float, 4>& phenotype, Array<float, 2>& phenotypicVariance);

}  // namespace tov
