#pragma once

#include <string>
#include <string_view>

namespace tov {

// The whole run, from opening the log to the CPU line; returns the exit
// status, which is 0 for every run that ends, whatever the log reports.
int RunDriver();

// The input file name less its last four characters, whatever they are.
std::string OutputBaseOf(std::string_view inputFileName);

}  // namespace tov
