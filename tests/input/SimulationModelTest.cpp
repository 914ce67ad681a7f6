#include "input/SimulationModel.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>

#include "ReaderFixture.h"

namespace tov {
namespace {

// Four markers on six lines; marker 2 is missing at two lines, marker 4 at
// one.
const char* const Genotypes[] = {"ABABXA", "AABBXX", "BAXBAB", "XABABA"};

class SimulationModel : public ReaderFixture {
 protected:
  std::int32_t Read(const std::string& model) {
    run = std::make_unique<RunData>();
    run->Indicator = 2;
    run->NumMarkers = 4;
    run->PopulationSize = 6;
    run->MarkerType.Allocate(4, 6);
    for (int m = 1; m <= 4; ++m)
      for (int line = 1; line <= 6; ++line) run->MarkerType(m, line) = Genotypes[m - 1][line - 1];
    ReadSimulationModel(*run, Input(model));
    return run->StatusCode;
  }
  std::string LastMessage() { return Messages().back(); }

  std::unique_ptr<RunData> run;
};

// The expected values were worked out with Python, rounding every value and
// every operation to IEEE single precision (struct 'f') in the order of the
// model: genotypic values marker by marker, running sums of squares and of
// values, the variances, then 4 p (1 - p) a^2 with p the share of missing
// genotypes.
TEST_F(SimulationModel, GenotypicValuesVariancesAndShares) {
  // Marker 2 gets 1.3 and then -2.1: the later QTL replaces the earlier.
  ASSERT_EQ(Read("! model\n3 10 0.6\n2 4 2\n1.3 0.7 -2.1\n"), 0);
  EXPECT_EQ(run->NumSimulations, 10);
  EXPECT_EQ(run->QTLEffect(2), -2.1f);
  EXPECT_EQ(run->QTLEffect(4), 0.7f);
  EXPECT_EQ(run->QTLEffect(1), 0.0f);
  const float values[] = {-2.0999999046325684f, -1.3999998569488525f, 1.3999998569488525f,
                          2.799999952316284f,   -0.699999988079071f,  0.699999988079071f};
  for (int line = 1; line <= 6; ++line) EXPECT_EQ(run->GenotypicValue(line), values[line - 1]) << line;
  EXPECT_EQ(run->GeneticVariance, 2.844721794128418f);
  EXPECT_EQ(run->ErrorVariance, 1.8964810371398926f);
  EXPECT_EQ(run->QTLPVEGenetic(2), 137.79904174804688f);
  EXPECT_EQ(run->QTLPVEPhenotypic(2), 82.6794204711914f);
  EXPECT_EQ(run->QTLPVEGenetic(4), 9.569379806518555f);
  EXPECT_EQ(run->QTLPVEPhenotypic(4), 5.7416276931762695f);
  EXPECT_EQ(run->QTLPVEGenetic(1), 0.0f) << "no QTL at marker 1";
}

TEST_F(SimulationModel, NoQTLGiveNoVarianceAndSharesThatAreNoNumbers) {
  // The reads of no positions and no effects take a line each.
  ASSERT_EQ(Read("0 0 0.5\n\n\n"), 0);
  EXPECT_EQ(run->GeneticVariance, 0.0f);
  EXPECT_TRUE(std::isnan(run->QTLPVEGenetic(3)));
  EXPECT_TRUE(std::isnan(run->QTLPVEPhenotypic(3)));
  EXPECT_EQ(Read("0 0 0.5\n"), 3505) << "the empty read of the positions finds the end of the file";
  EXPECT_EQ(Read("0 0 0.5\n\n"), 3507);
  EXPECT_EQ(LastMessage(), "--Error3507: cannot read QTL effects!");
}

TEST_F(SimulationModel, HeritabilityAtItsEnds) {
  ASSERT_EQ(Read("1 5 1.0\n2\n1.0\n"), 0);
  EXPECT_EQ(run->ErrorVariance, 0.0f);
  ASSERT_EQ(Read("1 5 0.0\n2\n1.0\n"), 0) << "zero passes, and the error variance is infinite";
  EXPECT_TRUE(std::isinf(run->ErrorVariance));
  ASSERT_EQ(Read("1 5 NaN\n2\n1.0\n"), 0);
  EXPECT_EQ(Read("1 5 1.01\n2\n1.0\n"), 3504);
  EXPECT_EQ(LastMessage(), "--Error3504: Heritability out of range (0.0, 1.0)! Heritability=1.01");
  EXPECT_EQ(Read("1 5 -0.1\n2\n1.0\n"), 3504);
  EXPECT_EQ(LastMessage(), "--Error3504: Heritability out of range (0.0, 1.0)! Heritability=-0.10");
}

}  // namespace
}  // namespace tov
