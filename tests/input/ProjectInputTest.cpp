#include "input/ProjectInput.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "ReaderFixture.h"

namespace tov {
namespace {

class ProjectInput : public ReaderFixture {
 protected:
  std::int32_t Read(const std::string& text) {
    run = std::make_unique<RunData>();
    ReadProjectInput(*run, Write("study.txt", text) + "      ");
    return run->StatusCode;
  }
  std::string LastMessage() { return Messages().back(); }

  std::unique_ptr<RunData> run;
};

const std::string Genotypes = "M1 A B A\nM2 B B A\n";

// The wrapped values were worked out with Python: (n * (n - 1)) mod 2^32,
// read as a signed 32-bit number, halved toward zero, negatives as 0.
TEST(TriangleSize, WrapsAround32BitsFrom46342MarkersOn) {
  EXPECT_EQ(TriangleSize(1), 0);
  EXPECT_EQ(TriangleSize(2), 1);
  EXPECT_EQ(TriangleSize(1000), 499500);
  EXPECT_EQ(TriangleSize(46341), 1073720970) << "the last count without overflow";
  EXPECT_EQ(TriangleSize(46342), 0) << "the product wraps to -2147432674";
  EXPECT_EQ(TriangleSize(65537), 32768) << "the product wraps to 65536";
  EXPECT_EQ(TriangleSize(100000), 704982704);
  EXPECT_EQ(TriangleSize(2000000000), 321730048);
  EXPECT_EQ(TriangleSize(2147483647), 0);
}

TEST_F(ProjectInput, AMappingProjectFillsTheRunData) {
  ASSERT_EQ(Read("! head\n1\n\n2 markers\n! lines\n3\n2\n1\n1\n" + Genotypes + "! traits\nT1 1 2 3\nT2 4 NA 6\n"), 0);
  EXPECT_EQ(run->NumMarkersKept, 2);
  EXPECT_EQ(run->PopulationSizeKept, 3);
  EXPECT_EQ(run->MarkerType(2, 3), 'A');
  EXPECT_EQ(run->TraitName(2, 1, 1), "T2" + std::string(17, ' '));
  EXPECT_EQ(run->Phenotype(2, 2, 1, 1), MissingValue);
  ASSERT_TRUE(run->PhenotypicVariance.IsAllocated());
  EXPECT_EQ(run->PhenotypicVariance.Extent(2), 2) << "one column per environment and one across";
  EXPECT_EQ(run->TraitEnvStat2.Size(), 4u);
  EXPECT_FALSE(run->QTLEffect.IsAllocated());
  EXPECT_FALSE(run->GenotypicValue.IsAllocated());
  EXPECT_TRUE(Messages().empty());
}

TEST_F(ProjectInput, ASimulationProjectHasThreeHeadItems) {
  // The line after PopulationSize already belongs to the genotype block.
  ASSERT_EQ(Read("2\n2\n3\n" + Genotypes + "1 10 0.5\n1\n0.5\n"), 0);
  EXPECT_EQ(run->NumTraits, 1);
  EXPECT_EQ(run->TraitName.Size(), 1u);
  EXPECT_FALSE(run->Phenotype.IsAllocated());
  EXPECT_FALSE(run->PhenotypicVariance.IsAllocated());
  EXPECT_FALSE(run->TraitEnvStat2.IsAllocated());
  EXPECT_TRUE(run->QTLPVEPhenotypic.IsAllocated());
  EXPECT_EQ(run->GenotypicValue(3), 0.5f);
}

TEST_F(ProjectInput, NoTraitsLeaveAnEmptyPhenotypeBlock) {
  ASSERT_EQ(Read("1\n2\n3\n0\n2\n2\n" + Genotypes), 0);
  EXPECT_EQ(run->Phenotype.Size(), 0u);
  EXPECT_TRUE(run->PhenotypicVariance.IsAllocated());
}

// Arrays sized by the head are made only once the block has backed its
// counts: a short file that claims a billion rows costs nothing.
TEST_F(ProjectInput, AFaultInThePhenotypeBlockMakesNoArrayOfTheHeadsSize) {
  EXPECT_EQ(Read("1\n2\n3\n1\n2\n1\n" + Genotypes + "T 1 2 3\nT 1 x 3\n"), 2406);
  EXPECT_EQ(Read("1\n2\n3\n1000000\n1000\n1000\n" + Genotypes + "T 1 2 3\n"), 2405);
  for (const bool made : {run->Phenotype.IsAllocated(), run->TraitName.IsAllocated(),
                          run->PhenotypicVariance.IsAllocated(), run->TraitEnvStat2.IsAllocated()})
    EXPECT_FALSE(made);
}

TEST_F(ProjectInput, AFaultInTheGenotypeBlockEndsTheReading) {
  EXPECT_EQ(Read("1\n2\n3\n1\n1\n1\nM1 A B A\nM1 B A A\nT 1 2 3\n"), 2230);
  EXPECT_EQ(LastMessage(), "--Error2230: two markers have same name! MarkerID1=2 MarkerID2=1 MarkerName=M1");
  EXPECT_FALSE(run->TraitName.IsAllocated());
  EXPECT_FALSE(run->Phenotype.IsAllocated());
}

}  // namespace
}  // namespace tov
