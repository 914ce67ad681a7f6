#pragma once
// The peaks of a mapping run: for each method, trait, environment and
// chromosome, the significant marker of the highest LOD, with its place on
// the map, its effect and its share of the variance.

#include <string>
#include <vector>

#include "tools/report/MarkerAxis.h"
#include "tools/report/RunTables.h"

namespace tov {

struct Peak {
  std::string Method, TraitID, TraitName, Environment, Chromosome, MarkerID, MarkerName, Position, LOD, Add, PVE;
};

std::vector<Peak> FindPeaks(const RunTables& run, const MarkerAxis& axis);

}  // namespace tov
