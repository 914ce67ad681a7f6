#include "input/Parameters.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>

#include "ReaderFixture.h"

namespace tov {
namespace {

class Parameters : public ReaderFixture {
 protected:
  // Reads a PAR file into a run of the given kind; returns StatusCode.
  std::int32_t Read(const std::string& text, std::int32_t indicator = 1) {
    run = std::make_unique<RunData>();
    run->Indicator = indicator;
    ReadParameters(*run, Write("study.par", text) + "   ");
    return run->StatusCode;
  }
  std::string LastMessage() { return Messages().back(); }

  std::unique_ptr<RunData> run;
};

// Blocks 1 to 4, then the three permutation blocks.
const std::string Good = "! condition number\n30\n! SMA\n1 2.5\n! additive\n1 2.5 0.25\n! epistatic\n1 5.0 0.0001\n"
                         "! permutations\n1 100 0.05\n0 1000 0.0\n1 1 0.7\n";

TEST_F(Parameters, AGoodFileFillsEveryParameter) {
  ASSERT_EQ(Read(Good), 0);
  EXPECT_EQ(run->ConditionNumber, 30.0f);
  EXPECT_EQ(run->SMAIndicator, 1);
  EXPECT_EQ(run->SMALOD, 2.5f);
  EXPECT_EQ(run->AddLOD, 2.5f);
  EXPECT_EQ(run->AddPIN, 0.25f) << "0.25 is the largest PIN";
  EXPECT_EQ(run->AddPOUT, 0.5f);
  EXPECT_EQ(run->EpiLOD, 5.0f);
  EXPECT_EQ(run->EpiPOUT, 0.0001f + 0.0001f);
  EXPECT_EQ(run->SMAPermTimes, 100);
  EXPECT_EQ(run->AddPermIndicator, 0);
  EXPECT_EQ(run->AddPermTimes, 1000);
  EXPECT_EQ(run->EpiPermTimes, 1);
  EXPECT_EQ(run->EpiPermTypeI, 0.7f) << "the upper bound of the message is not tested";
  EXPECT_TRUE(Messages().empty());
}

TEST_F(Parameters, ABlockMaySpreadOverLinesButHoldsNoCommentLine) {
  EXPECT_EQ(Read("-1\n1\n\n 0.5\n0,0.5\n0.2 dropped\n0 0.5 -1\n1 1 1\n1 1 1\n1 1 1\n"), 0);
  EXPECT_EQ(run->ConditionNumber, -1.0f);
  EXPECT_EQ(run->SMALOD, 0.5f) << "0.5 is the smallest LOD";
  EXPECT_EQ(run->AddPIN, 0.2f);
  EXPECT_EQ(run->EpiPIN, -1.0f) << "no lower bound for PIN";
  EXPECT_EQ(run->EpiPOUT, -2.0f);
  EXPECT_EQ(Read("-1\n1\n! LOD\n 0.5\n"), 3003);
  EXPECT_EQ(LastMessage(), "--Error3003: cannot read single marker analysis Indicator, Threshold LOD!");
}

TEST_F(Parameters, SingleMarkerBlockChecksInItemOrder) {
  EXPECT_EQ(Read("1\n2 0.1\n"), 3004) << "the indicator is tested before the LOD";
  EXPECT_EQ(LastMessage(),
            "--Error3004: Indicator for single marker analysis out of range [0,1]! SMA Indicator=2");
  EXPECT_EQ(Read("1\n-1 3\n"), 3004);
  EXPECT_EQ(Read("1\n0 0.49\n"), 3005) << "the LOD is tested also when the analysis is off";
  EXPECT_EQ(LastMessage(),
            "--Error3005: Threshold LOD for single marker analysis too small (>0.5)! SMA Threshold LOD=0.49");
  EXPECT_EQ(Read("1\n1.0 3\n"), 3003) << "an indicator must be a whole number";
}

TEST_F(Parameters, NotANumberPassesTheThresholds) {
  EXPECT_EQ(Read("NaN\n1 NaN\n1 NaN NaN\n1 NaN NaN\n1 10 NaN\n1 10 NaN\n1 10 NaN\n"), 0);
  EXPECT_TRUE(std::isnan(run->SMALOD));
  EXPECT_TRUE(std::isnan(run->AddPOUT));
  EXPECT_TRUE(std::isnan(run->SMAPermTypeI));
}

TEST_F(Parameters, ASimulationReadsNoPermutationBlocks) {
  EXPECT_EQ(Read("1\n1 3\n1 3 0.01\n0 3 0.01\n", 2), 0);
  run = std::make_unique<RunData>();
  run->Indicator = 2;
  run->SMAPermIndicator = run->AddPermIndicator = run->EpiPermIndicator = 1;
  ReadParameters(*run, Write("study.par", Good));
  EXPECT_EQ(run->StatusCode, 0) << "permutation blocks that stand in the file are not read";
  EXPECT_EQ(run->SMAPermIndicator + run->AddPermIndicator + run->EpiPermIndicator, 0);
  EXPECT_EQ(run->SMAPermTimes, 0);
  EXPECT_EQ(Read("1\n1 3\n1 3 0.01\n0 3 0.01\nrubbish\n", 2), 0);
}

}  // namespace
}  // namespace tov
