#pragma once
// The linter's walk over TOV.mio, the project input file and the PAR file,
// read by read in the order and with the comment skipping of the program's
// readers.  It looks at the shape of each read; the values are judged by
// the program's own readers afterwards.

#include <cstdint>
#include <string>
#include <vector>

#include "tools/lint/Findings.h"

namespace tov {

struct RunControl {
  std::string InputFileName;  // trimmed; empty when TOV.mio cannot give it
  std::string ParFileName;
};

// Reads TOV.mio in the working directory.
RunControl WalkRunControl(Findings& findings);

struct ProjectShape {
  std::int32_t Indicator = 0;            // 0 when the head cannot be read
  std::vector<std::string> MarkerNames;  // as written, before cutting
  std::vector<std::string> TraitNames;   // of each trait's first row
};

ProjectShape WalkProjectInput(const std::string& name, Findings& findings);
void WalkParameters(const std::string& name, bool mapping, Findings& findings);

// Names that the program's cut to length makes equal although they differ,
// and names cut at all.
void CheckCutNames(const std::string& file, const std::vector<std::string>& names, std::size_t length, const char* kind,
                   Findings& findings);

}  // namespace tov
