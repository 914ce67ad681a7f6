#pragma once
#include <string>

namespace tov {

// Ends the process on a fault that has no status code: an input file that
// vanished after its existence test, an output file that cannot be created,
// memory that cannot be had.  The message goes to standard error, buffered
// files are flushed, and the exit status tells the failure.
[[noreturn]] void FatalRuntimeFailure(const std::string& what);

// The new-handler of the program: memory that cannot be had is a fatal
// failure, never a crash.
[[noreturn]] void FatalOutOfMemory();

}  // namespace tov
