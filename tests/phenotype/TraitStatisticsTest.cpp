#include "phenotype/TraitStatistics.h"

#include <gtest/gtest.h>

#include "StaFileReader.h"
#include "numerics/basic/ErrorPolicy.h"

namespace tov {
namespace {

using testing_sta::Number;
using testing_sta::ScratchFile;

// The mean is the fourth field: 12 + 1 + 19 + 12 columns come before it.
double MeanOf(const std::string& row) { return Number(row.substr(44, 12)); }

class TraitStatisticsTest : public testing::Test {
 protected:
  // Equal line means raise warnings that are beside the point here.
  void SetUp() override { ERSET(0, 0, 0); }
  void TearDown() override { ERSET(0, 2, 2); }
};

TEST_F(TraitStatisticsTest, EachTraitGetsItsEnvironmentsAndAnAcrossRow) {
  RunData run;
  run.PopulationSize = 3;
  run.NumTraits = 2;
  run.NumEnvs = 2;
  run.NumReps = 2;
  run.Phenotype.Allocate(3, 2, 2, 2);
  run.TraitName.Allocate(2, 2, 2);
  run.TraitName.Fill(std::string(19, ' '));
  run.TraitName(1, 1, 1) = "YieldEnvA";
  run.TraitName(1, 2, 1) = "YieldEnvB";
  run.TraitName(2, 1, 1) = "Height";
  // Trait 1, line 1: e1 {1e8, -1e8}, e2 {1, 0}; lines 2 and 3 are 0.
  // Environment 1 means 0, 0, 0; environment 2 means 0.5, 0, 0.
  // Across, replications outer: ((1e8 + 1) - 1e8) + 0 = 0 in 32 bits, so
  // the means are 0, 0, 0; environments outer would make line 1 0.25.
  run.Phenotype(1, 1, 1, 1) = 1e8f;
  run.Phenotype(1, 1, 1, 2) = -1e8f;
  run.Phenotype(1, 1, 2, 1) = 1.0f;
  // Trait 2: lines 1, 2, 3 at 3, 6, 9 in every cell.
  for (int l = 1; l <= 3; ++l)
    for (int e = 1; e <= 2; ++e)
      for (int r = 1; r <= 2; ++r) run.Phenotype(l, 2, e, r) = 3.0f * static_cast<float>(l);

  ScratchFile sta("trait-statistics");
  TraitStatistics(run, sta.Unit());
  const std::vector<std::string> lines = sta.Lines();
  ASSERT_EQ(lines.size(), 7u) << "NumEnvs + 1 rows per trait, then one empty line";
  EXPECT_EQ(lines[0].substr(0, 32), "           1           YieldEnvA");
  EXPECT_EQ(lines[1].substr(0, 32), "           1           YieldEnvB");
  EXPECT_EQ(lines[2].substr(0, 32), "           1           YieldEnvA") << "the across row bears environment 1's name";
  EXPECT_EQ(MeanOf(lines[0]), 0.0);
  EXPECT_EQ(MeanOf(lines[1]), 0.1667);
  EXPECT_EQ(MeanOf(lines[2]), 0.0);
  EXPECT_EQ(lines[3].substr(0, 44), "           2              Height           3");
  EXPECT_EQ(lines[4].substr(0, 32), "           2                    ") << "an unnamed environment stays blank";
  EXPECT_EQ(MeanOf(lines[5]), 6.0);
  EXPECT_EQ(lines[6], "");
}

}  // namespace
}  // namespace tov
