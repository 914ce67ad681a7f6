// The top of the program apart from whole runs: the output files of a
// setting no project has, and the input check as a calling program meets it (the
// shared library loaded at run time, CheckErrorTOV looked up by its C
// name, "TOV.log" in the caller's working directory).

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
  void* library = dlopen(TOV_CHECK_LIBRARY, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(library, nullptr) << dlerror();
  const auto check = reinterpret_cast<void (*)(int, const char*, int*)>(dlsym(library, "CheckErrorTOV"));
  ASSERT_NE(check, nullptr) << dlerror();
  const std::string bad = "--Error2002: Indicator=3 out of range [1:2]!\n"
                          "--Error1101: error found in DLL! DLL name=DLL CheckErrorTOV\n";
  const std::string good = "DLL CheckErrorTOV run successfully!\n";
  std::ofstream("TOV.log") << "earlier line\n";
  int result = -1;
  check(40, (std::string("bad.txt") + std::string(33, ' ')).data(), &result);
  EXPECT_EQ(result, 2002);
  check(8, "good.txtXYZ", &result);
  EXPECT_EQ(result, 0) << "the name ends at its length";
  char buffer[32] = "good.txt";
  check(32, buffer, &result);
  EXPECT_EQ(result, 0) << "or at a NUL";
  EXPECT_EQ(ReadWholeFile("TOV.log"), "earlier line\n" + bad + good + good) << "appended, and closed after each call";
  // Every name that gives no readable file ends in a result, never in the
  // end of the calling program.
  fs::create_directory("folder.txt");
  const struct {
    int length;
    const char* name;
    const char* logged;
  } unreadable[] = {{11, "missing.txt", "missing.txt"}, {10, "folder.txt", "folder.txt"}, {3, "   ", ""},
                    {0, "good.txt", ""},               {-5, "good.txt", ""},            {4, nullptr, ""}};
  for (const auto& c : unreadable) {
    fs::remove("TOV.log");
    check(c.length, c.name, &result);
    EXPECT_EQ(result, 1008) << c.length << " " << (c.name ? c.name : "null");
    EXPECT_EQ(ReadWholeFile("TOV.log"), "--Error1008: " + std::string(c.logged) +
                                            " does not exist, and the program stops!\n"
                                            "--Error1101: error found in DLL! DLL name=DLL CheckErrorTOV\n");
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
