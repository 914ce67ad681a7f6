// The exported input check on one input: the bytes are the project input
// file.  The calling program must always get its result back.

#include <cstddef>
#include <cstdio>
#include <cstdint>
#include <string_view>

#include "FuzzWorkspace.h"
#include "input/Phenotypes.h"

extern "C" void CheckErrorTOV(int nameLength, const char* name, int* result);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tovfuzz::EnterWorkspace();
  tovfuzz::WriteFile("study.txt", std::string_view(reinterpret_cast<const char*>(data), size));
  // The check appends to an existing log: keep it from growing.
  std::remove("TOV.log");
  tov::ClearPhenotypeMissingTokens();
  int result = -1;
  CheckErrorTOV(9, "study.txt", &result);
  if (result < 0) __builtin_trap();
  return 0;
}
