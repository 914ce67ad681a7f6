#pragma once
// The result files of a run, named OutputBase plus an extension: which of
// them a run opens, in which order, and the heading lines of those whose
// heading is fixed.  A file is opened only when the setting that asks for
// its content is on, so the files present tell what was run.

#include <string>

#include "core/RunData.h"

namespace tov {

// The heading lines of the tables with fixed headings.
std::string StatisticsHeading();   // .sta
std::string MarkerTestHeading();   // .rsm, .qsm, .ric, .qic
std::string PermutationHeading();  // .tsm, .tic, .tice
std::string PairTestHeading();     // .rice, .qice

// Creates the files the settings of the run ask for (an old file of the
// name is replaced) and writes their headings.  A file that cannot be
// created ends the process.
void OpenOutputFiles(RunData& run);
// Closes the files that OpenOutputFiles opened.
void CloseOutputFiles(RunData& run);

}  // namespace tov
