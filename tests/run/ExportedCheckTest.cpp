// The input check as a calling program meets it: the shared library is
// loaded at run time, CheckErrorTOV is looked up by its C name and called
// in the calling program's working directory, where it keeps "TOV.log".
// The rule that a log already open stays open is tested in-process.

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "run/InputCheck.h"
#include "core/Log.h"

namespace tov {
namespace {

namespace fs = std::filesystem;

using CheckFunction = void (*)(int, const char*, int*);

const std::string GoodProject = "! a mapping project\n1\n2\n3\n1\n1\n1\nM1 A B X\nM2 B A A\nYield 1.5 NA 2\n";
const std::string BadProject = "3\n";

std::vector<std::string> LinesOf(const fs::path& path) {
  std::ifstream file(path);
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

class CheckFolder : public testing::Test {
 protected:
  void SetUp() override {
    folder = fs::path(testing::TempDir()) /
             ("tov-check-" + std::string(testing::UnitTest::GetInstance()->current_test_info()->name()) + "-" +
              std::to_string(::getpid()));
    fs::remove_all(folder);
    fs::create_directories(folder);
    home = fs::current_path();
    fs::current_path(folder);
    std::ofstream("good.txt") << GoodProject;
    std::ofstream("bad.txt") << BadProject;
  }
  void TearDown() override {
    fs::current_path(home);
    fs::remove_all(folder);
  }

  fs::path folder;
  fs::path home;
};

class ExportedCheck : public CheckFolder {
 protected:
  void SetUp() override {
    CheckFolder::SetUp();
    library = dlopen(TOV_CHECK_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    check = reinterpret_cast<CheckFunction>(dlsym(library, "CheckErrorTOV"));
    ASSERT_NE(check, nullptr) << dlerror();
  }
  void TearDown() override {
    if (library != nullptr) dlclose(library);
    CheckFolder::TearDown();
  }

  // Calls the check as a caller with a blank-filled name buffer would.
  int Check(const std::string& name) {
    std::string buffer = name;
    buffer.resize(40, ' ');
    int result = -1;
    check(static_cast<int>(buffer.size()), buffer.data(), &result);
    return result;
  }

  void* library = nullptr;
  CheckFunction check = nullptr;
};

TEST_F(ExportedCheck, AGoodFileGivesZeroAndALogLine) {
  EXPECT_EQ(Check("good.txt"), 0);
  EXPECT_EQ(LinesOf("TOV.log"), std::vector<std::string>{"DLL CheckErrorTOV run successfully!"});
}

TEST_F(ExportedCheck, ABadFileGivesItsStatusCode) {
  EXPECT_EQ(Check("bad.txt"), 2002);
  EXPECT_EQ(LinesOf("TOV.log"), (std::vector<std::string>{"--Error2002: Indicator=3 out of range [1:2]!",
                                                         "--Error1101: error found in DLL! DLL name=DLL CheckErrorTOV"}));
}

TEST_F(ExportedCheck, AnExistingLogIsAppendedToAndEachCallClosesIt) {
  std::ofstream("TOV.log") << "earlier line\n";
  EXPECT_EQ(Check("bad.txt"), 2002);
  EXPECT_EQ(Check("good.txt"), 0) << "the result of one call does not carry over";
  const std::vector<std::string> lines = LinesOf("TOV.log");
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[0], "earlier line");
  EXPECT_EQ(lines[3], "DLL CheckErrorTOV run successfully!");
}

TEST_F(ExportedCheck, TheNameMayEndAtItsLengthOrAtANul) {
  int result = -1;
  const char name[] = "good.txtXYZ";
  check(8, name, &result);
  EXPECT_EQ(result, 0);
  char buffer[32] = "good.txt";
  check(static_cast<int>(sizeof buffer), buffer, &result);
  EXPECT_EQ(result, 0);
}

// Every name that gives no readable file ends in a result, never in the
// end of the calling program.
TEST_F(ExportedCheck, ANameWithoutAReadableFileGivesACode) {
  fs::create_directory("folder.txt");
  const struct {
    int length;
    const char* name;
    const char* logged;
  } cases[] = {{11, "missing.txt", "missing.txt"}, {10, "folder.txt", "folder.txt"}, {3, "   ", ""},
               {0, "good.txt", ""},               {-5, "good.txt", ""},            {4, nullptr, ""}};
  for (const auto& c : cases) {
    fs::remove("TOV.log");
    int result = -1;
    check(c.length, c.name, &result);
    EXPECT_EQ(result, 1008) << c.length << " " << (c.name ? c.name : "null");
    EXPECT_EQ(LinesOf("TOV.log"),
              (std::vector<std::string>{"--Error1008: " + std::string(c.logged) + " does not exist, and the program stops!",
                                        "--Error1101: error found in DLL! DLL name=DLL CheckErrorTOV"}));
  }
  check(8, "good.txt", nullptr);
}

TEST_F(CheckFolder, ALogTheCallerHoldsOpenStaysOpen) {
  ASSERT_TRUE(LogFile().Create("caller.log"));
  EXPECT_EQ(CheckInputFile("bad.txt"), 2002);
  EXPECT_TRUE(LogFile().IsOpen());
  LogFile().WriteLine("after the check");
  LogFile().Close();
  EXPECT_EQ(LinesOf("caller.log"),
            (std::vector<std::string>{"--Error2002: Indicator=3 out of range [1:2]!",
                                      "--Error1101: error found in DLL! DLL name=DLL CheckErrorTOV", "after the check"}));
  EXPECT_FALSE(fs::exists("TOV.log"));
}

TEST_F(CheckFolder, ALogTheCheckOpenedIsClosedAgain) {
  EXPECT_EQ(CheckInputFile("good.txt   "), 0);
  EXPECT_FALSE(LogFile().IsOpen());
  EXPECT_EQ(LinesOf("TOV.log"), std::vector<std::string>{"DLL CheckErrorTOV run successfully!"});
}

}  // namespace
}  // namespace tov
