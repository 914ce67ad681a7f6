#pragma once
// The run's log "TOV.log", open from the first step of a run to its end,
// and the rule that a message goes to the log first and then, in the same
// or its console wording, to the console.

#include <string_view>

#include "text/TextOutput.h"

namespace tov {

constexpr const char* LogFileName = "TOV.log";

TextOutput& LogFile();

// One line to the log (when open) and then one to the console.
void Announce(std::string_view logLine, std::string_view consoleLine);

}  // namespace tov
