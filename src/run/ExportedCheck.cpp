// The one entry exported by the shared library: a calling program hands
// over the name of a project input file and gets back 0 for a good file or
// the status code of its first fault.

#include <cstddef>
#include <string_view>

#include "run/InputCheck.h"

// nameLength: the length of the name buffer; name: the file name, not
// necessarily terminated, blank-filled or cut at a NUL; result: receives
// the outcome, when not null.  A length that is not positive names no file.
extern "C" __attribute__((visibility("default"))) void CheckErrorTOV(int nameLength, const char* name, int* result) {
  if (result != nullptr) *result = 0;
  std::string_view buffer;
  if (name != nullptr && nameLength > 0) buffer = std::string_view(name, static_cast<std::size_t>(nameLength));
  buffer = buffer.substr(0, buffer.find('\0'));
  const int outcome = tov::CheckInputFile(buffer);
  if (result != nullptr) *result = outcome;
}
