#pragma once
// Runs a project as a user would, in a scratch copy of its input/ (console
// to console.txt, standard error to stderr.txt), and reads back every file.

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <set>
#include <string>

#include "support/ScratchFile.h"

namespace tov::testing_support {

struct ProjectRun {
  int ExitStatus = -1;  // -1 when the process did not exit by itself
  std::set<std::string> Inputs;
  std::map<std::string, std::string> Files;  // inputs included
};

inline ProjectRun RunProject(const std::filesystem::path& project, const std::string& command) {
  namespace fs = std::filesystem;
  const fs::path work = ScratchPath("project-" + project.filename().string());
  fs::create_directories(work);
  if (fs::exists(project / "input")) fs::copy(project / "input", work, fs::copy_options::recursive);
  ProjectRun run;
  for (const auto& entry : fs::directory_iterator(work)) run.Inputs.insert(entry.path().filename());
  const int status =
      std::system(("cd '" + work.string() + "' && " + command + " > console.txt 2> stderr.txt < /dev/null").c_str());
  run.ExitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  for (const auto& entry : fs::directory_iterator(work))
    run.Files[entry.path().filename()] = ReadWholeFile(entry.path().string());
  fs::remove_all(work);
  return run;
}

}  // namespace tov::testing_support
