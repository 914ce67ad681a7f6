// The top of the program apart from whole runs: an output setting no
// project has, and the input check as a calling program meets it.

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>

#include "core/Log.h"
#include "run/InputCheck.h"
#include "run/OutputFiles.h"
#include "run/RunDriver.h"
#include "support/ScratchFile.h"

namespace tov {
namespace {

namespace fs = std::filesystem;
using testing_support::ReadWholeFile;

// Each test works in a folder of its own, as its working directory.
class Run : public testing::Test {
 protected:
  void SetUp() override {
    fs::create_directories(folder);
    fs::current_path(folder);
  }
  void TearDown() override {
    fs::current_path(home);
    fs::remove_all(folder);
  }
  const fs::path home = fs::current_path();
  const fs::path folder = testing_support::ScratchPath("run");
};

// The end-to-end projects open the files of every method with and without
// its permutation test; here a permutation test without its method.
TEST_F(Run, OutputFilesFollowTheSettings) {
  std::ofstream("my study.sta") << "an old file is replaced\n";
  RunData run;
  run.OutputBase = (folder / "my study").string() + "  ";
  run.Indicator = 1;
  run.AddPermIndicator = 1;
  OpenOutputFiles(run);
  CloseOutputFiles(run);
  std::string made;
  for (const fs::path& name : std::set<fs::path>(fs::directory_iterator(folder), {}))
    made.append(" ").append(name.extension().string());
  EXPECT_EQ(made, " .coe .mtp .sta .tic");
  EXPECT_EQ(ReadWholeFile("my study.sta").find("old"), std::string::npos);
  EXPECT_EQ(OutputBaseOf("a.b.csv  "), "a.b");
  EXPECT_EQ(OutputBaseOf("abc"), "");
}

TEST_F(Run, InputCheckThroughTheSharedLibrary) {
  std::ofstream("good.txt") << "! a mapping project\n1\n2\n3\n1\n1\n1\nM1 A B X\nM2 B A A\nYield 1.5 NA 2\n";
  std::ofstream("bad.txt") << "3\n";
  std::ofstream("TOV.log") << "earlier line\n";
  fs::create_directory("folder.txt");
  void* library = dlopen(TOV_CHECK_LIBRARY, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(library, nullptr) << dlerror();
  const auto check = reinterpret_cast<void (*)(int, const char*, int*)>(dlsym(library, "CheckErrorTOV"));
  ASSERT_NE(check, nullptr) << dlerror();
  const std::string failed = "--Error1101: error found in DLL! DLL name=DLL CheckErrorTOV\n";
  const std::string bad = "--Error2002: Indicator=3 out of range [1:2]!\n" + failed;
  const std::string good = "DLL CheckErrorTOV run successfully!\n";
  auto missing = [&](const std::string& name) {
    return "--Error1008: " + name + " does not exist, and the program stops!\n" + failed;
  };
  const std::string padded = std::string("bad.txt") + std::string(33, ' ');
  char buffer[32] = "good.txt";
  // The name ends at its length or at a NUL; a name that gives no readable
  // file ends in a result, never in the end of the calling program.  Each
  // call appends to the log and closes it.
  const struct {
    int Length;
    const char* Name;
    int Result;
    std::string Logged;
  } cases[] = {
      {40, padded.data(), 2002, bad}, {8, "good.txtXYZ", 0, good}, {32, buffer, 0, good},
      {11, "missing.txt", 1008, missing("missing.txt")}, {10, "folder.txt", 1008, missing("folder.txt")},
      {3, "   ", 1008, missing("")}, {0, "good.txt", 1008, missing("")}, {-5, "good.txt", 1008, missing("")},
      {4, nullptr, 1008, missing("")},
  };
  std::string log = "earlier line\n";
  for (const auto& c : cases) {
    int result = -1;
    check(c.Length, c.Name, &result);
    EXPECT_EQ(result, c.Result) << c.Length << " " << (c.Name ? c.Name : "null");
    EXPECT_EQ(ReadWholeFile("TOV.log"), log += c.Logged) << c.Length << " " << (c.Name ? c.Name : "null");
  }
  check(8, "good.txt", nullptr);
  dlclose(library);

  fs::remove("TOV.log");
  ASSERT_TRUE(LogFile().Create("caller.log"));
  EXPECT_EQ(CheckInputFile("bad.txt"), 2002);
  EXPECT_TRUE(LogFile().IsOpen()) << "a log the caller holds open stays open";
  LogFile().Close();
  EXPECT_EQ(ReadWholeFile("caller.log"), bad);
  EXPECT_EQ(CheckInputFile("good.txt   "), 0);
  EXPECT_FALSE(LogFile().IsOpen()) << "a log the check opened is closed again";
  EXPECT_EQ(ReadWholeFile("TOV.log"), good);
}

}  // namespace
}  // namespace tov
