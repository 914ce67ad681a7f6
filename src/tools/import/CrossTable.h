#pragma once
// The CSV cross format of the common R package for QTL mapping, read into
// markers and traits: a header row of the phenotype names and then the
// marker names; a row of chromosomes, empty under the phenotypes; an
// optional row of map positions, empty under the phenotypes; then one row
// for each line with its phenotypes and genotype calls.

#include <cstddef>
#include <string>
#include <vector>

#include "tools/import/CsvTable.h"

namespace tov {

// Which calls mean which genotype; each call is compared exactly, case
// included.
struct GenotypeCodes {
  std::vector<std::string> Donor{"A", "AA"};
  std::vector<std::string> Background{"B", "BB"};
  std::vector<std::string> Heterozygote{"H", "AB"};
  std::vector<std::string> Missing{"-", "NA"};  // also the missing phenotypes, as is an empty field
  bool HeterozygoteAsMissing = false;
};

struct CrossMarker {
  std::string Name;
  std::string Chromosome;
  std::string Position;  // as written in the map row; empty without one
  std::string Codes;     // 'A', 'B' or 'X' for each line
};

struct CrossTrait {
  std::string Name;
  std::vector<std::string> Values;  // one token for each line, "NA" for a missing value
};

struct Cross {
  std::vector<CrossTrait> Traits;
  std::vector<CrossMarker> Markers;
  std::size_t NumLines = 0;
  bool HasMap = false;
  std::vector<std::string> Notes;  // what was changed on the way, for the console
  std::string Fault;               // why the table cannot be converted; empty when it can
};

// Reads the cross out of the table.  A fault names the row and column of
// the file (1-based) and leaves the rest of the record undefined.
Cross ReadCross(const CsvTable& table, const GenotypeCodes& codes);

}  // namespace tov
