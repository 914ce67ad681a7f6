#pragma once
// The power simulation: phenotypes drawn from the genetic model of the
// project on the genotypes of the project, mapped by the methods the
// parameter file switches on, and how often each kept marker came out
// significant.

#include "core/RunData.h"

namespace tov {

// For s = 1 .. NumSimulations: SimTrait = GenotypicValue + a standard
// normal draw times the root of ErrorVariance, one draw per line in line
// order; then the single-marker scan (".psm") and the stepwise selection
// (".stp") with the additive scan (".pic") on all lines, and at the end the
// summary rows of both tables.  With only the epistatic indicator on the
// draws are made and nothing is written; with no indicator on nothing at
// all happens.
//
// The draws of every simulation are made in order on the calling thread;
// the scans of a simulation depend on nothing else, so they run side by
// side on the worker threads, and their rows, models and counts are taken
// in simulation order: the output is the same bytes for any number of
// threads.
void PowerSimulation(RunData& run);

}  // namespace tov
