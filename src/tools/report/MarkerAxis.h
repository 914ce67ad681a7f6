#pragma once
// Where each marker stands along the horizontal axis of the profiles: by
// chromosome and map position when the run has a marker map, else one
// step per MarkerID.  Chromosomes follow each other, with a gap between.

#include <map>
#include <string>
#include <vector>

#include "tools/report/RunTables.h"

namespace tov {

struct Chromosome {
  std::string Name;  // empty without a map
  double Start = 0.0, End = 0.0;
};

struct MarkerAxis {
  std::map<int, double> X;                  // by MarkerID
  std::map<int, std::string> Name;          // by MarkerID
  std::map<int, std::size_t> ChromosomeOf;  // index into Chromosomes
  std::vector<Chromosome> Chromosomes;
  double Min = 0.0, Max = 1.0;
  bool HasMap = false;
};

MarkerAxis BuildMarkerAxis(const RunTables& run);

// A number as printed in the tables, or NaN when the field holds none.
double FieldNumber(const std::string& field);

}  // namespace tov
