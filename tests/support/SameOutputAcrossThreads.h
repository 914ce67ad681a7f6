#pragma once
// "One thread gives the same bytes as many": runs a project with the clock
// pinned, once on one worker thread and once on several, each in a fresh
// temporary directory, and checks that the two runs leave the same files
// with the same bytes, console included.  Only the CPU time at the end of
// the log and the console, which no two runs share, is left out.  The
// project folder holds input/ and, optionally, pinned_clock; without it a
// fixed reading is used.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <regex>
#include <string>

#include "support/ScratchFile.h"

namespace tov::testing_support {

// Every file a run of the project leaves, by name, after a run on the given
// number of threads (0: the machine's cores).
inline std::map<std::string, std::string> OutputsWithThreads(const std::filesystem::path& project, int threads) {
  namespace fs = std::filesystem;
  const fs::path work = fs::temp_directory_path() / ("tov-threads-" + project.filename().string() + "-" +
                                                     std::to_string(threads) + "-" + std::to_string(::getpid()));
  fs::remove_all(work);
  fs::copy(project / "input", work, fs::copy_options::recursive);
  std::string clock = "2026/03/14 15:09:26.535";
  if (fs::exists(project / "pinned_clock")) {
    clock = ReadWholeFile((project / "pinned_clock").string());
    clock = clock.substr(0, clock.find('\n'));
  }
  const std::string command = "cd '" + work.string() + "' && '" TOV_PINNED_CLOCK_EXECUTABLE "' '" + clock + "' " +
                              std::to_string(threads) + " > console.txt 2> stderr.txt < /dev/null";
  EXPECT_EQ(std::system(command.c_str()), 0) << command;
  std::map<std::string, std::string> outputs;
  static const std::regex cpuTime(R"(CPU_TIME taken: .*)");
  for (const auto& entry : fs::directory_iterator(work))
    outputs[entry.path().filename().string()] =
        std::regex_replace(ReadWholeFile(entry.path().string()), cpuTime, "CPU_TIME taken:");
  fs::remove_all(work);
  return outputs;
}

// The run on one thread against the run on the given number.
inline void ExpectSameOutputAcrossThreads(const std::filesystem::path& project, int threads) {
  const std::map<std::string, std::string> one = OutputsWithThreads(project, 1);
  const std::map<std::string, std::string> many = OutputsWithThreads(project, threads);
  ASSERT_EQ(one.size(), many.size());
  for (const auto& [name, text] : one) {
    ASSERT_TRUE(many.count(name)) << name << " is missing with " << threads << " threads";
    EXPECT_TRUE(many.at(name) == text) << name << " differs between 1 and " << threads << " threads";
  }
}

}  // namespace tov::testing_support
