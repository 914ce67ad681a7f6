#pragma once
// What both fuzz targets share: a scratch folder of their own, made once
// per process and entered, where each input is written as a file before
// the program reads it; and a console sent to /dev/null, since a campaign
// runs millions of inputs and their messages tell nothing there.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tovfuzz {

// Makes and enters the folder, silences the console; once per process.
void EnterWorkspace();

// Writes bytes to a file of the workspace, replacing any old one.
void WriteFile(const std::string& name, std::string_view bytes);

}  // namespace tovfuzz
