#include "run/OutputFiles.h"
#include "run/RunDriver.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <sstream>
#include <string>

namespace tov {
namespace {

namespace fs = std::filesystem;

// The headings as their column tables give them: each title right-aligned
// in its field, a blank before each name column.
const std::string TraitColumns = "     TraitID           TraitName Environment";
const std::string StatisticsLine =
    "     TraitID           TraitName  SampleSize        Mean    Variance    StdError    Skewness    Kurtosis"
    "     Minimum     Maximum       Range      W-test     P-value";
const std::string MarkerTestLine = TraitColumns +
                                   "    MarkerID                          MarkerName         LOD      PVE(%)"
                                   "         Add       M(QQ)       M(qq)";
const std::string PermutationLine = TraitColumns + "       Times      MaxLOD";
const std::string PairTestLine = TraitColumns +
                                 "   MarkerID1                         MarkerName1   MarkerID2"
                                 "                         MarkerName2       LODaa    LODtotal    PVEaa(%) PVEtotal(%)"
                                 "        Add1        Add2    AddbyAdd M(Q1Q1Q2Q2) M(Q1Q1q2q2) M(q1q1Q2Q2) M(q1q1q2q2)";

TEST(OutputHeadings, TitlesStandRightAlignedInTheirFields) {
  EXPECT_EQ(StatisticsHeading(), StatisticsLine);
  EXPECT_EQ(StatisticsHeading().size(), 12u + 1 + 19 + 11 * 12);
  EXPECT_EQ(MarkerTestHeading(), MarkerTestLine);
  EXPECT_EQ(MarkerTestHeading().size(), 12u + 1 + 19 + 12 + 12 + 1 + 35 + 5 * 12);
  EXPECT_EQ(PermutationHeading(), PermutationLine);
  EXPECT_EQ(PairTestHeading(), PairTestLine);
  EXPECT_EQ(PairTestHeading().size(), 12u + 1 + 19 + 12 + 2 * (12 + 1 + 35) + 11 * 12);
}

class OutputFiles : public testing::Test {
 protected:
  void SetUp() override {
    folder = fs::path(testing::TempDir()) /
             ("tov-output-" + std::string(testing::UnitTest::GetInstance()->current_test_info()->name()) + "-" +
              std::to_string(::getpid()));
    fs::remove_all(folder);
    fs::create_directories(folder);
    run = std::make_unique<RunData>();
    run->OutputBase = (folder / "my study").string() + "  ";
  }
  void TearDown() override { fs::remove_all(folder); }

  // Opens and closes the files of the settings; returns the names made.
  std::set<std::string> Made() {
    OpenOutputFiles(*run);
    CloseOutputFiles(*run);
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) names.insert(entry.path().filename().string());
    return names;
  }
  std::string Content(const std::string& name) {
    std::ifstream file(folder / name);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
  }

  fs::path folder;
  std::unique_ptr<RunData> run;
};

TEST_F(OutputFiles, AMappingRunWithEveryAnalysisOn) {
  run->SMAIndicator = run->AddIndicator = run->EpiIndicator = 1;
  run->SMAPermIndicator = run->AddPermIndicator = run->EpiPermIndicator = 1;
  std::set<std::string> expected;
  for (const char* extension : {".coe", ".mtp", ".sta", ".rsm", ".qsm", ".tsm", ".stp", ".ric", ".qic", ".tic", ".rice",
                                ".qice", ".tice"})
    expected.insert(std::string("my study") + extension);
  EXPECT_EQ(Made(), expected);
  EXPECT_EQ(Content("my study.qsm"), MarkerTestLine + "\n");
  EXPECT_EQ(Content("my study.ric"), MarkerTestLine + "\n");
  EXPECT_EQ(Content("my study.tic"), PermutationLine + "\n");
  EXPECT_EQ(Content("my study.qice"), PairTestLine + "\n");
  EXPECT_EQ(Content("my study.stp"), "");
}

TEST_F(OutputFiles, EpistaticMappingAloneHasTheStepwiseFileButNoAdditiveTables) {
  run->EpiIndicator = 1;
  EXPECT_EQ(Made(), (std::set<std::string>{"my study.coe", "my study.mtp", "my study.sta", "my study.stp",
                                           "my study.rice", "my study.qice"}));
}

TEST_F(OutputFiles, PermutationTablesFollowTheirOwnIndicators) {
  run->AddPermIndicator = 1;
  EXPECT_EQ(Made(), (std::set<std::string>{"my study.coe", "my study.mtp", "my study.sta", "my study.tic"}));
}

TEST_F(OutputFiles, ASimulationHasPowerFilesAndNoStatistics) {
  run->Indicator = 2;
  run->EpiIndicator = 1;
  run->SMAPermIndicator = 1;
  EXPECT_EQ(Made(), (std::set<std::string>{"my study.coe", "my study.mtp"})) << "no epistatic power file, no .stp";
  run->SMAIndicator = run->AddIndicator = 1;
  EXPECT_EQ(Made(), (std::set<std::string>{"my study.coe", "my study.mtp", "my study.psm", "my study.stp",
                                           "my study.pic"}));
  EXPECT_EQ(Content("my study.psm"), "");
}

TEST_F(OutputFiles, AnOldFileIsReplaced) {
  std::ofstream(folder / "my study.sta") << "old line\nanother\n";
  Made();
  EXPECT_EQ(Content("my study.sta"), StatisticsLine + "\n");
}

TEST_F(OutputFiles, AnEmptyBaseNamesTheFilesByTheirExtensions) {
  const fs::path here = fs::current_path();
  fs::current_path(folder);
  run->OutputBase = "";
  const std::set<std::string> made = Made();
  fs::current_path(here);
  EXPECT_EQ(made, (std::set<std::string>{".coe", ".mtp", ".sta"}));
}

TEST(OutputBase, TheLastFourCharactersGoWhateverTheyAre) {
  EXPECT_EQ(OutputBaseOf("study.txt   "), "study");
  EXPECT_EQ(OutputBaseOf("studyfile"), "study");
  EXPECT_EQ(OutputBaseOf("abc"), "");
  EXPECT_EQ(OutputBaseOf("abcd"), "");
  EXPECT_EQ(OutputBaseOf("a.b.csv"), "a.b");
}

}  // namespace
}  // namespace tov
