#pragma once

namespace tov {

// The whole run, from opening the log to the CPU line; returns the exit
// status, which is 0 for every run that ends, whatever the log reports.
int RunDriver();

}  // namespace tov
