// Runs tov on every project under tests/projects and compares what it
// leaves with the case's expected/ folder: the same files with the same
// text, the console as console.txt and standard error as stderr.txt (empty
// when not there).  A file memory_limit_kb beside input/ caps the run's
// address space; a file pinned_clock holds a reading at which the clock
// stands still, so that the random stream starts from a known state and the
// clock lines are compared as they are.  Elsewhere they are masked once
// their form has been checked; CPU times always are.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "support/ProjectRun.h"

namespace fs = std::filesystem;
using namespace tov::testing_support;

namespace {

const fs::path ProjectsRoot = TOV_TEST_PROJECTS;

std::vector<std::string> CaseNames() {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(ProjectsRoot))
    if (entry.is_directory() && fs::exists(entry.path() / "expected")) names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

std::string Masked(std::string text, bool clockPinned) {
  static const std::regex clock(R"(\d\d:\d\d:\d\d\.\d\d\d on \d\d\d\d/\d\d/\d\d \(yyyy/mm/dd\))");
  static const std::regex cpu(R"(CPU_TIME taken: -?\d+\.\d\d\d minutes or -?\d+\.\d\d\d seconds)");
  if (!clockPinned) text = std::regex_replace(text, clock, "hh:mm:ss.sss on yyyy/mm/dd (yyyy/mm/dd)");
  return std::regex_replace(text, cpu, "CPU_TIME taken: m minutes or s seconds");
}

class EndToEnd : public testing::TestWithParam<std::string> {};

TEST_P(EndToEnd, OutputsMatchExpected) {
  const fs::path project = ProjectsRoot / GetParam();
  const fs::path limit = project / "memory_limit_kb", clock = project / "pinned_clock", expected = project / "expected";
  const bool clockPinned = fs::exists(clock);
  std::string command = "'" TOV_EXECUTABLE "'";
  if (clockPinned) {
    const std::string reading = ReadWholeFile(clock.string());
    command = "'" TOV_PINNED_CLOCK_EXECUTABLE "' '" + reading.substr(0, reading.find('\n')) + "'";
  }
  // A case may cap the address space of the run, for the faults that only
  // a refused allocation reaches.
  if (fs::exists(limit))
    command = "ulimit -v " + std::to_string(std::stol(ReadWholeFile(limit.string()))) + " && " + command;
  const ProjectRun run = RunProject(project, command);
  EXPECT_EQ(run.ExitStatus, 0) << "tov ends every run with exit status 0";

  // The console and standard error are always compared; an input file only
  // where the case expects it back.
  std::set<std::string> want = {"console.txt", "stderr.txt"}, made;
  for (const auto& entry : fs::directory_iterator(expected)) want.insert(entry.path().filename());
  for (const auto& [name, text] : run.Files)
    if (!run.Inputs.count(name) || want.count(name)) made.insert(name);
  EXPECT_EQ(want, made) << "the run must leave exactly the expected files";
  for (const std::string& name : want) {
    if (made.count(name)) {
      EXPECT_EQ(ReadWholeFile((expected / name).string()), Masked(run.Files.at(name), clockPinned)) << name;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Projects, EndToEnd, testing::ValuesIn(CaseNames()),
                         [](const testing::TestParamInfo<std::string>& info) { return info.param; });

}  // namespace
