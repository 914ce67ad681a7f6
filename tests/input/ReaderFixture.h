#pragma once
// A fixture for the readers: files in a fresh temporary folder, the log
// opened there so that the messages can be read back, and the process-wide
// missing-token flag cleared as at the start of a process.

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "input/Phenotypes.h"
#include "core/Log.h"
#include "text/TextInput.h"

namespace tov {

class ReaderFixture : public testing::Test {
 protected:
  void SetUp() override {
    const auto* info = testing::UnitTest::GetInstance()->current_test_info();
    folder_ = std::filesystem::path(testing::TempDir()) /
              ("tov-" + std::string(info->test_suite_name()) + "-" + info->name() + "-" + std::to_string(::getpid()));
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
    ClearPhenotypeMissingTokens();
    ASSERT_TRUE(LogFile().Create(Path("messages.log")));
  }
  void TearDown() override {
    LogFile().Close();
    ClearPhenotypeMissingTokens();
    std::filesystem::remove_all(folder_);
  }

  std::string Path(const std::string& name) const { return (folder_ / name).string(); }

  // Writes a file in the folder and returns its path.
  std::string Write(const std::string& name, const std::string& text) const {
    std::ofstream(Path(name), std::ios::binary) << text;
    return Path(name);
  }

  // An input stream over the text, through a real file.
  TextInput& Input(const std::string& text) {
    input_.Close();
    EXPECT_TRUE(input_.Open(Write("input.txt", text)));
    return input_;
  }

  // The lines the messages have written to the log so far.
  std::vector<std::string> Messages() {
    LogFile().Close();
    std::ifstream file(Path("messages.log"));
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) lines.push_back(line);
    LogFile().Append(Path("messages.log"));
    return lines;
  }

 private:
  std::filesystem::path folder_;
  TextInput input_;
};

}  // namespace tov
