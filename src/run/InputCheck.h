#pragma once
// The check of a project input file without a run, for a calling program:
// the file is read as a run would read it, the outcome goes to the log and
// the console, and the run data are released again.

#include <cstdint>
#include <string_view>

namespace tov {

// Returns 0 for a good file, else the status code of its first fault, and
// 1008, the run's code of a missing input file, for a name that gives no
// readable file (empty, not there, a folder, not to be opened).  A
// log that is open already stays open; otherwise "TOV.log" is opened for
// appending when it exists, created when it does not, and closed again.
std::int32_t CheckInputFile(std::string_view name);

}  // namespace tov
