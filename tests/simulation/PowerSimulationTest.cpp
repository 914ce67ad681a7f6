// The power simulation as a whole: the same bytes on one thread and on
// several, and power rows that behave as the statistics say they must on a
// project of unlinked markers.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <numeric>
#include <sstream>
#include <string>
#include <vector>

#include "support/SameOutputAcrossThreads.h"

namespace tov {
namespace {

namespace fs = std::filesystem;
using testing_support::OutputsWithThreads;

const fs::path EndToEndProjects = TOV_TEST_PROJECTS;
const fs::path StatisticalProject = fs::path(TOV_TEST_PROJECTS).parent_path() / "simulation" / "projects" /
                                    "independent_markers";

TEST(PowerSimulation, SameBytesOnOneThreadAndOnThree) {
  testing_support::ExpectSameOutputAcrossThreads(EndToEndProjects / "simulation_power", 3);
}

// The values of the "Power(%)" row of a power table.
std::vector<double> PowerRow(const std::string& table) {
  std::istringstream lines(table);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream fields(line);
    std::string label;
    fields >> label;
    if (label != "Power(%)") continue;
    std::vector<double> power;
    for (double value; fields >> value;) power.push_back(value);
    return power;
  }
  return {};
}

// M01 carries a QTL that explains half of the variance; the other 24
// markers are unlinked to it and to each other, so each of their tests is a
// test of a true null hypothesis at the level the LOD threshold implies.
TEST(PowerSimulation, LargeQtlFoundAlwaysAndUnlinkedMarkersAtTheTestLevel) {
  std::ifstream levelFile(StatisticalProject / "false_positive_level");
  double level = 0.0;
  ASSERT_TRUE(levelFile >> level);
  const std::map<std::string, std::string> outputs = OutputsWithThreads(StatisticalProject, 0);
  for (const char* table : {"study.psm", "study.pic"}) {
    const std::vector<double> power = PowerRow(outputs.at(table));
    ASSERT_EQ(power.size(), 25u) << table;
    EXPECT_EQ(power[0], 100.0) << table;
    const double falsePositive = std::accumulate(power.begin() + 1, power.end(), 0.0) / 24.0 / 100.0;
    // 9600 tests: four standard errors of a rate near 0.134 are 0.014.
    EXPECT_NEAR(falsePositive, level, 0.014) << table;
  }
}

}  // namespace
}  // namespace tov
