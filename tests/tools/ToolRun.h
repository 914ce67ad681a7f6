#pragma once
// Runs a companion tool (or tov) in a folder of its own, as a user would
// from a shell, and gives back its exit status and its console.

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/ScratchFile.h"

namespace tov::testing_support {

struct ToolResult {
  int Status = -1;
  std::string Console;  // standard output and standard error
};

// A new empty folder at a ScratchPath, removed when the object goes.
class ScratchFolder {
 public:
  explicit ScratchFolder(const std::string& tag) : path_(ScratchPath(tag)) { std::filesystem::create_directories(path_); }
  ~ScratchFolder() { std::filesystem::remove_all(path_); }
  const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_;
};

inline ToolResult RunTool(const std::filesystem::path& folder, const std::string& commandLine) {
  const std::string console = folder.string() + ".console";
  const int status = std::system(("cd '" + folder.string() + "' && " + commandLine + " > '" + console + "' 2>&1").c_str());
  const ToolResult result{WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadWholeFile(console)};
  std::filesystem::remove(console);
  return result;
}

}  // namespace tov::testing_support
