// Runs tov on every project under tests/projects in a fresh temporary
// directory and compares what it leaves there with the case's expected/
// folder: the same set of files, and each file line by line.  The console
// is compared as expected/console.txt; standard error, where the numerical
// routines report, as expected/stderr.txt, and must be empty without it.
// A file memory_limit_kb beside input/ caps the run's address space.  A
// file pinned_clock holds a reading "YYYY/MM/DD HH:MM:SS.mmm" at which the
// clock stands still for the whole run, so that the random stream starts
// from a known state and the log's clock lines are compared as they are;
// elsewhere clock readings vary from run to run and are masked, after their
// form has been checked.  CPU times are always masked.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

const fs::path ProjectsRoot = TOV_TEST_PROJECTS;
constexpr const char* ConsoleFile = "console.txt";
constexpr const char* StderrFile = "stderr.txt";
constexpr const char* MemoryLimitFile = "memory_limit_kb";
constexpr const char* PinnedClockFile = "pinned_clock";

std::vector<std::string> CaseNames() {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(ProjectsRoot))
    if (entry.is_directory() && fs::exists(entry.path() / "expected")) names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

std::string ReadAll(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

std::string Masked(std::string text, bool clockPinned) {
  static const std::regex clock(R"(\d\d:\d\d:\d\d\.\d\d\d on \d\d\d\d/\d\d/\d\d \(yyyy/mm/dd\))");
  static const std::regex cpu(R"(CPU_TIME taken: -?\d+\.\d\d\d minutes or -?\d+\.\d\d\d seconds)");
  if (!clockPinned) text = std::regex_replace(text, clock, "hh:mm:ss.sss on yyyy/mm/dd (yyyy/mm/dd)");
  return std::regex_replace(text, cpu, "CPU_TIME taken: m minutes or s seconds");
}

std::string FirstLine(const std::string& text) { return text.substr(0, text.find('\n')); }

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

void ExpectSameText(const std::string& name, const std::string& expected, const std::string& actual) {
  const std::vector<std::string> want = Lines(expected);
  const std::vector<std::string> got = Lines(actual);
  for (std::size_t i = 0; i < std::max(want.size(), got.size()); ++i) {
    const std::string w = i < want.size() ? want[i] : "<no line>";
    const std::string g = i < got.size() ? got[i] : "<no line>";
    if (w != g) {
      ADD_FAILURE() << name << " differs at line " << i + 1 << "\n expected: [" << w << "]\n actual:   [" << g << "]";
      return;
    }
  }
  EXPECT_EQ(expected.empty() || expected.back() == '\n', actual.empty() || actual.back() == '\n')
      << name << ": the last line end differs";
}

std::set<std::string> FileNames(const fs::path& folder) {
  std::set<std::string> names;
  if (fs::exists(folder))
    for (const auto& entry : fs::directory_iterator(folder)) names.insert(entry.path().filename());
  return names;
}

class EndToEnd : public testing::TestWithParam<std::string> {};

TEST_P(EndToEnd, OutputsMatchExpected) {
  const fs::path project = ProjectsRoot / GetParam();
  const fs::path work = fs::temp_directory_path() / ("tov-e2e-" + GetParam() + "-" + std::to_string(::getpid()));
  fs::remove_all(work);
  fs::create_directories(work);
  if (fs::exists(project / "input")) fs::copy(project / "input", work, fs::copy_options::recursive);
  const std::set<std::string> inputs = FileNames(work);

  const fs::path console = work.parent_path() / (work.filename().string() + ".console");
  const fs::path stderrPath = work.parent_path() / (work.filename().string() + ".stderr");
  // A case may cap the address space of the run, for the faults that only
  // a refused allocation reaches.
  const fs::path memoryLimit = project / MemoryLimitFile;
  const std::string limit =
      fs::exists(memoryLimit) ? "ulimit -v " + std::to_string(std::stol(ReadAll(memoryLimit))) + " && " : "";
  const fs::path pinnedClock = project / PinnedClockFile;
  const bool clockPinned = fs::exists(pinnedClock);
  const std::string program = clockPinned ? "'" TOV_PINNED_CLOCK_EXECUTABLE "' '" + FirstLine(ReadAll(pinnedClock)) + "'"
                                          : "'" TOV_EXECUTABLE "'";
  const std::string command = limit + "cd '" + work.string() + "' && " + program + " > '" + console.string() +
                              "' 2> '" + stderrPath.string() + "' < /dev/null";
  const int status = std::system(command.c_str());
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0) << "tov ends every run with exit status 0";

  const fs::path expected = project / "expected";
  std::set<std::string> want = FileNames(expected);
  want.erase(ConsoleFile);
  want.erase(StderrFile);
  std::set<std::string> made;
  for (const std::string& name : FileNames(work))
    if (!inputs.count(name) || want.count(name)) made.insert(name);
  EXPECT_EQ(want, made) << "the run must leave exactly the expected files";

  ExpectSameText(ConsoleFile, ReadAll(expected / ConsoleFile), Masked(ReadAll(console), clockPinned));
  for (const std::string& name : want)
    if (made.count(name)) ExpectSameText(name, ReadAll(expected / name), Masked(ReadAll(work / name), clockPinned));

  ExpectSameText(StderrFile, fs::exists(expected / StderrFile) ? ReadAll(expected / StderrFile) : "",
                 ReadAll(stderrPath));

  fs::remove(console);
  fs::remove(stderrPath);
  if (!HasFailure()) fs::remove_all(work);
}

INSTANTIATE_TEST_SUITE_P(Projects, EndToEnd, testing::ValuesIn(CaseNames()),
                         [](const testing::TestParamInfo<std::string>& info) { return info.param; });

}  // namespace
