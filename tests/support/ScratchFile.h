#pragma once
// Files the tests write through the system's own output unit and read back.

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "text/TextOutput.h"

namespace tov::testing_support {

// The whole text of a file.
inline std::string ReadWholeFile(const std::string& path) {
  std::ifstream file(path);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

// A path in the temporary directory that no other test, test process or
// test run uses: the tag, the running test's name, the process id and a
// counter within the process.
inline std::filesystem::path ScratchPath(const std::string& tag) {
  static int counter = 0;
  const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
  std::string test = info ? std::string(info->test_suite_name()) + "." + info->name() : "none";
  for (char& c : test)
    if (c == '/') c = '_';  // parameterised tests have slashes in their names
  return std::filesystem::temp_directory_path() /
         ("tov-" + tag + "-" + test + "-" + std::to_string(::getpid()) + "-" + std::to_string(++counter));
}

// A file at a ScratchPath, open for writing from the start and removed at
// the end of the test.
class ScratchFile {
 public:
  explicit ScratchFile(const std::string& tag) : path_(ScratchPath(tag)) { unit_.Create(path_.string()); }
  ~ScratchFile() { std::filesystem::remove(path_); }
  TextOutput& Unit() { return unit_; }

  // Closes the file and returns its lines.
  std::vector<std::string> Lines() {
    std::istringstream text(Text());
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);) lines.push_back(line);
    return lines;
  }
  // Closes the file and returns its text.
  std::string Text() {
    unit_.Close();
    return ReadWholeFile(path_.string());
  }

 private:
  std::filesystem::path path_;
  TextOutput unit_;
};

}  // namespace tov::testing_support
