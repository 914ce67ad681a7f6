#pragma once
// The genetic model of a power simulation, which follows the genotype block
// of a simulation project: the number of QTL, of simulation runs and the
// heritability, then the QTL positions (MarkerIDs), then their effects.
// From the model and the genotypes already read come each line's genotypic
// value, the genetic and error variances, and the share of variance of the
// QTL at each marker.

#include "core/RunData.h"
#include "text/TextInput.h"

namespace tov {

// Reads the model from the input stream of the project file and fills
// NumSimulations, Heritability, QTLEffect, GenotypicValue, GeneticVariance,
// ErrorVariance, QTLPVEGenetic and QTLPVEPhenotypic.  On a fault StatusCode
// holds its code and the message has been written.
void ReadSimulationModel(RunData& run, TextInput& input);

}  // namespace tov
