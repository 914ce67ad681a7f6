#include "input/Phenotypes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "ReaderFixture.h"
#include "core/RunData.h"
#include "text/Format.h"

namespace tov {
namespace {

struct Block {
  Array<float, 4> Phenotype;
  Array<std::string, 3> TraitName;
  std::int32_t Status = 0;
};

class Phenotypes : public ReaderFixture {
 protected:
  Block Read(const std::string& text, std::int32_t lines, std::int32_t traits = 1, std::int32_t envs = 1,
             std::int32_t reps = 1) {
    Block block;
    block.Phenotype.Allocate(lines, traits, envs, reps);
    block.TraitName.Allocate(traits, envs, reps);
    ReadPhenotypes(Input(text), traits, envs, reps, lines, block.Phenotype, block.TraitName, block.Status);
    return block;
  }
};

TEST_F(Phenotypes, RowsRunTraitOutermostAndReplicationInnermost) {
  std::string text = "! yields\n\n";
  for (int t = 1; t <= 2; ++t)
    for (int e = 1; e <= 3; ++e)
      for (int r = 1; r <= 2; ++r) {
        const std::string id = std::to_string(t) + std::to_string(e) + std::to_string(r);
        text += "T" + id + " " + id + " -" + id + "\n";
      }
  const Block block = Read(text, 2, 2, 3, 2);
  ASSERT_EQ(block.Status, 0);
  EXPECT_EQ(block.TraitName(2, 1, 2), "T212" + std::string(15, ' '));
  EXPECT_EQ(block.Phenotype(1, 1, 3, 2), 132.0f);
  EXPECT_EQ(block.Phenotype(2, 2, 3, 1), -231.0f);
  EXPECT_EQ(block.Phenotype(1, 2, 1, 1), 211.0f);
}

TEST_F(Phenotypes, ARowMayContinueOverLinesAndTraitNamesAreCutTo19) {
  const Block block = Read("'Grain yield in the field' 1.5\n 2.5\n\n  3.5\n", 3);
  ASSERT_EQ(block.Status, 0);
  EXPECT_EQ(block.TraitName(1, 1, 1), "Grain yield in the ");
  EXPECT_EQ(block.Phenotype(3, 1, 1, 1), 3.5f);
}

TEST_F(Phenotypes, EveryMissingTokenBecomesTheMissingCode) {
  const Block block = Read("Yield NA na * . - 7\n", 6);
  ASSERT_EQ(block.Status, 0);
  for (int line = 1; line <= 5; ++line) EXPECT_EQ(block.Phenotype(line, 1, 1, 1), MissingValue) << line;
  EXPECT_EQ(block.Phenotype(6, 1, 1, 1), 7.0f);
  EXPECT_TRUE(PhenotypeHasMissingTokens());
  // Near relatives of the missing tokens are no numbers.
  EXPECT_EQ(Read("Yield 1 Na\n", 2).Status, 2406);
  EXPECT_EQ(Read("Yield 1 N/A\n", 2).Status, 2406) << "N/A is read as N, then a slash";
}

// The float values below were worked out with Python, rounding each value
// and each operation to IEEE single precision (struct 'f').
TEST_F(Phenotypes, WithoutMissingTokensMinus100IsMissingWithin00001In32Bits) {
  const Block block = Read("Yield -100 -100.00005 -100.001 -99.9999 -99.9998 -9999.0 100\n", 7);
  ASSERT_EQ(block.Status, 0);
  EXPECT_FALSE(PhenotypeHasMissingTokens());
  EXPECT_EQ(block.Phenotype(1, 1, 1, 1), MissingValue);
  EXPECT_EQ(block.Phenotype(2, 1, 1, 1), MissingValue) << "-100.00005 + 100 is -5.34e-5 in single precision";
  EXPECT_EQ(block.Phenotype(3, 1, 1, 1), -100.001f);
  // -99.9999 rounds to -99.99990082 in single precision, 9.918e-5 from -100:
  // missing in 32 bits, though not in 64 (1.00000000003e-4).
  EXPECT_EQ(block.Phenotype(4, 1, 1, 1), MissingValue);
  EXPECT_EQ(block.Phenotype(5, 1, 1, 1), -99.9998f);
  EXPECT_EQ(block.Phenotype(6, 1, 1, 1), MissingValue);
  EXPECT_EQ(block.Phenotype(7, 1, 1, 1), 100.0f) << "+100 is a value";
}

TEST_F(Phenotypes, OnceAMissingTokenIsSeenMinus100IsAValue) {
  const Block block = Read("Yield -100 1\nYield . -100\nYield -100 -9999\n", 2, 1, 1, 3);
  ASSERT_EQ(block.Status, 0);
  EXPECT_EQ(block.Phenotype(1, 1, 1, 1), MissingValue) << "no missing token had been seen yet";
  EXPECT_EQ(block.Phenotype(2, 1, 1, 2), -100.0f) << "the token of the same row counts";
  EXPECT_EQ(block.Phenotype(1, 1, 1, 3), -100.0f) << "and stays seen for later rows";
  EXPECT_EQ(block.Phenotype(2, 1, 1, 3), MissingValue) << "-9999 is the missing code itself";
}

TEST_F(Phenotypes, TheMissingTokenFlagOutlivesTheFile) {
  ASSERT_EQ(Read("Yield NA 1\n", 2).Status, 0);
  const Block later = Read("Yield -100 1\n", 2);
  ASSERT_EQ(later.Status, 0);
  EXPECT_EQ(later.Phenotype(1, 1, 1, 1), -100.0f);
}

TEST_F(Phenotypes, TokensAreCutTo20CharactersBeforeConversion) {
  // "0.125" and 15 zeros fill the 20 characters; the letters after them go.
  const Block block = Read("Yield 0.125000000000000000xyz 12345678901234567890123\n", 2);
  ASSERT_EQ(block.Status, 0);
  EXPECT_EQ(block.Phenotype(1, 1, 1, 1), 0.125f);
  EXPECT_EQ(block.Phenotype(2, 1, 1, 1), 12345678901234567890.0f);
}

TEST_F(Phenotypes, TheTokenRowIsBlankedOnceBeforeTheFirstRowOnly) {
  // A slash ends a read and leaves the tokens after it as the row before
  // left them.
  const Block block = Read("Yield 1 2 3\nYield 4 /\n", 3, 1, 1, 2);
  ASSERT_EQ(block.Status, 0);
  EXPECT_EQ(block.Phenotype(1, 1, 1, 2), 4.0f);
  EXPECT_EQ(block.Phenotype(3, 1, 1, 2), 3.0f);
  // Before the first row the tokens are blank, and a blank is no real.
  EXPECT_EQ(Read("Yield 4 /\n", 2).Status, 2406);
  EXPECT_EQ(Messages()[0], "--Error2407: Individual or line = 2; invalid phenotype =                     ");
}

TEST(PhenotypeRows, ValuesKeepSinglePrecisionAndNotANumberPassesTheMinus100Test) {
  ClearPhenotypeMissingTokens();
  TokenRow tokens(PhenotypeTokenLength);
  tokens.Set(1, "0.1");
  tokens.Set(2, "NaN");
  tokens.Set(3, "1.0E-3");
  Array<float, 1> values(3);
  std::int32_t status = 0;
  ConvertPhenotypeRow(3, tokens, values.View(), status);
  ASSERT_EQ(status, 0);
  EXPECT_EQ(values(1), 0.1f);
  EXPECT_TRUE(std::isnan(values(2)));
  EXPECT_EQ(values(3), 0.001f);
  EXPECT_FALSE(PhenotypeHasMissingTokens());
}

}  // namespace
}  // namespace tov
