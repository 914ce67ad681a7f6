#pragma once
// Runs a companion tool (or tov) in a folder of its own, as a user would
// from a shell, and gives back its exit status and its console.

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/ScratchFile.h"

namespace tov::testing_support {

struct ToolResult {
  int Status = -1;
  std::string Console;  // standard output and standard error
};

// A new empty folder in the temporary directory, named by the tag and the
// process id; removed when the object goes.
class ScratchFolder {
 public:
  explicit ScratchFolder(const std::string& tag)
      : path_(std::filesystem::temp_directory_path() / ("tov-" + tag + "-" + std::to_string(::getpid()))) {
    std::filesystem::remove_all(path_);
    std::filesystem::create_directories(path_);
  }
  ~ScratchFolder() { std::filesystem::remove_all(path_); }
  const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_;
};

inline ToolResult RunTool(const std::filesystem::path& folder, const std::string& commandLine) {
  const std::filesystem::path console = folder.parent_path() / (folder.filename().string() + ".console");
  const std::string command = "cd '" + folder.string() + "' && " + commandLine + " > '" + console.string() + "' 2>&1";
  const int status = std::system(command.c_str());
  ToolResult result;
  result.Status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  result.Console = ReadWholeFile(console.string());
  std::filesystem::remove(console);
  return result;
}

}  // namespace tov::testing_support
