// The power simulation: threads, the statistics of its power rows, and a
// heading of more marker IDs than one line holds.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <numeric>
#include <sstream>
#include <string>
#include <vector>

#include "simulation/PowerTables.h"
#include "support/SameOutputAcrossThreads.h"
#include "support/ScratchFile.h"

namespace tov {
namespace {

namespace fs = std::filesystem;

TEST(PowerSimulation, SameBytesOnOneThreadAndOnThree) {
  testing_support::ExpectSameOutputAcrossThreads(fs::path(TOV_TEST_PROJECTS) / "simulation_power", 3);
}

// M01 carries a QTL that explains half of the variance; the other 24
// markers are unlinked to it and to each other, so each of their tests is a
// test of a true null hypothesis at the level the LOD threshold implies.
TEST(PowerSimulation, LargeQtlFoundAlwaysAndUnlinkedMarkersAtTheTestLevel) {
  const fs::path project = fs::path(TOV_TEST_PROJECTS).parent_path() / "simulation/projects/independent_markers";
  std::ifstream levelFile(project / "false_positive_level");
  double level = 0.0;
  ASSERT_TRUE(levelFile >> level);
  const auto outputs = testing_support::OutputsWithThreads(project, 0);
  for (const char* table : {"study.psm", "study.pic"}) {
    // The values of the "Power(%)" row.
    std::istringstream text(outputs.at(table));
    std::string line;
    while (std::getline(text, line) && line.rfind("    Power(%)", 0) != 0) {
    }
    std::istringstream fields(line.substr(12));
    const std::vector<double> power{std::istream_iterator<double>(fields), std::istream_iterator<double>()};
    ASSERT_EQ(power.size(), 25u) << table;
    EXPECT_EQ(power[0], 100.0) << table;
    const double falsePositive = std::accumulate(power.begin() + 1, power.end(), 0.0) / 24.0 / 100.0;
    // 9600 tests: four standard errors of a rate near 0.134 are 0.014.
    EXPECT_NEAR(falsePositive, level, 0.014) << table;
  }
}

TEST(PowerTables, HeadingBeyondItsWidthContinuesOnTheNextLine) {
  Array<std::int32_t, 1> kept(PowerHeadingWidth + 2);
  for (int j = 1; j <= PowerHeadingWidth + 2; ++j) kept(j) = 2 * j;
  testing_support::ScratchFile file("power-heading");
  WritePowerHeading(file.Unit(), kept);
  const std::vector<std::string> lines = file.Lines();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0].size(), 12u * (PowerHeadingWidth + 1));
  EXPECT_EQ(lines[0].substr(0, 24), "  Simulation           2");
  EXPECT_EQ(lines[1], "       20002       20004");
}

}  // namespace
}  // namespace tov
