#include "FuzzWorkspace.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace tovfuzz {

void EnterWorkspace() {
  static bool entered = false;
  if (entered) return;
  entered = true;
  const char* tmp = std::getenv("TMPDIR");
  std::string folder = std::string(tmp != nullptr ? tmp : "/tmp") + "/tov-fuzz-XXXXXX";
  if (::mkdtemp(folder.data()) == nullptr || ::chdir(folder.c_str()) != 0) {
    std::perror("tov fuzz workspace");
    std::abort();
  }
  if (std::freopen("/dev/null", "w", stdout) == nullptr) std::abort();
}

void WriteFile(const std::string& name, std::string_view bytes) {
  std::FILE* file = std::fopen(name.c_str(), "wb");
  if (file == nullptr) std::abort();
  if (!bytes.empty() && std::fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size()) std::abort();
  std::fclose(file);
}

}  // namespace tovfuzz
