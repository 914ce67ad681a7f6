#include "text/Fatal.h"

#include <cstdio>
#include <cstdlib>

namespace tov {

void FatalRuntimeFailure(const std::string& what) {
  std::fflush(stdout);
  std::fprintf(stderr, "Fatal run-time error: %s\n", what.c_str());
  std::exit(2);
}

void FatalOutOfMemory() { FatalRuntimeFailure("insufficient memory"); }

}  // namespace tov
