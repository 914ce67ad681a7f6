// The linter on one small project for each pitfall, on the shipped
// examples and on the end-to-end projects that the program runs to their
// end; it changes no file.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>

#include "tools/ToolRun.h"

namespace fs = std::filesystem;
using namespace tov::testing_support;

namespace {

const fs::path LintCases = fs::path(TOV_SOURCE_DIR) / "tests/tools/lint";

// Lints a copy of the folder; the copy must come out unchanged.
ToolResult LintCopy(const fs::path& project, const std::string& tag) {
  ScratchFolder scratch("lint-" + tag);
  fs::copy(project, scratch.Path(), fs::copy_options::recursive);
  const std::set<fs::path> before(fs::directory_iterator(scratch.Path()), {});
  const ToolResult result = RunTool(scratch.Path(), TOV_LINT_EXECUTABLE);
  EXPECT_EQ(before, std::set<fs::path>(fs::directory_iterator(scratch.Path()), {})) << tag << ": the linter wrote a file";
  return result;
}

// A pitfall case holds expected.txt, the console of the linter on it; the
// examples and the projects that run must pass unless listed.
TEST(Lint, EachPitfallIsNamedAndTheProjectsThatRunPass) {
  std::set<std::string> expectedToWarn;
  std::ifstream list(LintCases / "projects_that_warn.txt");
  for (std::string line; std::getline(list, line);)
    if (!line.empty() && line[0] != '#') expectedToWarn.insert(line.substr(0, line.find(' ')));
  std::vector<fs::path> projects = {fs::path(TOV_SOURCE_DIR) / "examples/mapping",
                                    fs::path(TOV_SOURCE_DIR) / "examples/simulation"};
  for (const auto& entry : fs::directory_iterator(LintCases))
    if (entry.is_directory()) projects.push_back(entry.path());
  for (const auto& entry : fs::directory_iterator(fs::path(TOV_SOURCE_DIR) / "tests/projects")) {
    const std::string log = ReadWholeFile((entry.path() / "expected/TOV.log").string());
    if (log.find("--Error") == std::string::npos) projects.push_back(entry.path() / "input");
  }
  for (const fs::path& project : projects) {
    const std::string name = project.filename() == "input" ? project.parent_path().filename() : project.filename();
    const ToolResult result = LintCopy(project, name);
    const std::string expected = ReadWholeFile((project / "expected.txt").string());
    if (!expected.empty()) {
      EXPECT_EQ(expected, result.Console) << name;
      EXPECT_EQ(expected.find("tov-lint: no warnings") == std::string::npos ? 1 : 0, result.Status) << name;
    } else {
      EXPECT_EQ(expectedToWarn.count(name) ? 1 : 0, result.Status) << name << "\n" << result.Console;
    }
  }
}

}  // namespace
