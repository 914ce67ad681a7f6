// The linter on one small project for each pitfall (its console against
// expected.txt in the case folder), and on the shipped examples and the
// end-to-end projects that the program runs to their end, which must pass
// unless listed in projects_that_warn.txt.  The linter changes no file.

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

TEST(Lint, EachPitfallIsNamed) {
  for (const auto& entry : fs::directory_iterator(LintCases)) {
    if (!entry.is_directory()) continue;
    const std::string name = entry.path().filename();
    const std::string expected = ReadWholeFile((entry.path() / "expected.txt").string());
    const ToolResult result = LintCopy(entry.path(), name);
    EXPECT_EQ(expected, result.Console) << name;
    EXPECT_EQ(expected.find("tov-lint: no warnings") == std::string::npos ? 1 : 0, result.Status) << name;
  }
}

TEST(Lint, PassesTheExamplesAndTheProjectsThatRun) {
  std::set<std::string> expectedToWarn;
  std::ifstream list(LintCases / "projects_that_warn.txt");
  for (std::string line; std::getline(list, line);)
    if (!line.empty() && line[0] != '#') expectedToWarn.insert(line.substr(0, line.find(' ')));
  std::vector<fs::path> projects = {fs::path(TOV_SOURCE_DIR) / "examples/mapping",
                                    fs::path(TOV_SOURCE_DIR) / "examples/simulation"};
  for (const auto& entry : fs::directory_iterator(fs::path(TOV_SOURCE_DIR) / "tests/projects")) {
    const std::string log = ReadWholeFile((entry.path() / "expected/TOV.log").string());
    if (log.find("--Error") == std::string::npos) projects.push_back(entry.path() / "input");
  }
  for (const fs::path& project : projects) {
    const std::string name = project.filename() == "input" ? project.parent_path().filename() : project.filename();
    const ToolResult result = LintCopy(project, name);
    EXPECT_EQ(expectedToWarn.count(name) ? 1 : 0, result.Status) << name << "\n" << result.Console;
  }
}

}  // namespace
