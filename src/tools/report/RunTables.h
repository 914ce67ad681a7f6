#pragma once
// The tables of a finished run, found through TOV.mio in the working
// folder, with the thresholds of the PAR file and, when the importer left
// one beside the project, the marker map.

#include <map>
#include <string>

#include "tools/report/FixedColumns.h"

namespace tov {

struct MapPlace {
  std::string Chromosome;
  double Position = 0.0;
};

struct RunTables {
  std::string Base;     // OutputBase of the run
  bool Mapping = true;  // false for a simulation run
  bool HaveParameters = false;
  float SMALOD = 0.0f, AddLOD = 0.0f, EpiLOD = 0.0f;
  // By name: the extension of the file ("rsm", "tsm", ...), or for a file
  // of several tables the extension and the table ("coe.all", "coe.kept").
  std::map<std::string, TextTable> Tables;
  std::map<int, MapPlace> Map;  // by MarkerID; empty without a map

  const TextTable* Find(const std::string& name) const;
};

// Reads what the run left; sets fault when TOV.mio cannot be read or the
// run left no marker table.
RunTables LoadRun(std::string& fault);

}  // namespace tov
