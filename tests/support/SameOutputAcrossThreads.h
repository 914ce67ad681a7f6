#pragma once
// Runs a project with the clock pinned (a fixed reading where the folder has
// no pinned_clock) on one worker thread and on several, and checks that both
// leave the same bytes in every file, their CPU times aside.

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <regex>
#include <string>

#include "support/ProjectRun.h"

namespace tov::testing_support {

// Every file a run of the project leaves, by name, after a run on the given
// number of threads (0: the machine's cores).
inline std::map<std::string, std::string> OutputsWithThreads(const std::filesystem::path& project, int threads) {
  std::string clock = "2026/03/14 15:09:26.535";
  if (std::filesystem::exists(project / "pinned_clock")) {
    clock = ReadWholeFile((project / "pinned_clock").string());
    clock = clock.substr(0, clock.find('\n'));
  }
  ProjectRun run = RunProject(project, "'" TOV_PINNED_CLOCK_EXECUTABLE "' '" + clock + "' " + std::to_string(threads));
  EXPECT_EQ(run.ExitStatus, 0) << project;
  static const std::regex cpuTime(R"(CPU_TIME taken: .*)");
  for (auto& [name, text] : run.Files) text = std::regex_replace(text, cpuTime, "CPU_TIME taken:");
  return run.Files;
}

// The run on one thread against the run on the given number.
inline void ExpectSameOutputAcrossThreads(const std::filesystem::path& project, int threads) {
  const std::map<std::string, std::string> one = OutputsWithThreads(project, 1);
  const std::map<std::string, std::string> many = OutputsWithThreads(project, threads);
  EXPECT_EQ(one.size(), many.size());
  for (const auto& [name, text] : one)
    EXPECT_TRUE(many.count(name) && many.at(name) == text)
        << name << " differs between 1 and " << threads << " threads";
}

}  // namespace tov::testing_support
