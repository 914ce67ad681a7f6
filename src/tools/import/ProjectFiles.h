#pragma once
// The files of an imported project: the project input file, TOV.mio, a
// PAR file with commented defaults, the marker map and, when names had to
// change, the map from the names of the cross to the written ones.  All
// are composed in memory and written together, so that a failure leaves
// nothing half-written.

#include <string>
#include <utility>
#include <vector>

#include "tools/import/CrossTable.h"

namespace tov {

// File name and content.
using ProjectFile = std::pair<std::string, std::string>;

// stem names the files (stem.txt, stem.par, stem.map, stem.names); source
// is named in the files' head comments.  Notes of renamed names are added
// to the cross.
std::vector<ProjectFile> ComposeProject(Cross& cross, const std::string& stem, const std::string& source);

// Writes every file into folder (made when missing) under a scratch name
// and then renames them all; on a failure removes what it wrote and
// returns the reason, else an empty text.
std::string WriteTogether(const std::string& folder, const std::vector<ProjectFile>& files);

}  // namespace tov
