// The readers, on the rules the end-to-end projects of bad input files do
// not reach.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "core/RunData.h"
#include "input/Genotypes.h"
#include "input/Parameters.h"
#include "input/Phenotypes.h"
#include "input/ProjectInput.h"
#include "input/SimulationModel.h"
#include "input/TokenRow.h"
#include "support/CaseTable.h"
#include "support/ScratchFile.h"
#include "text/TextInput.h"

namespace tov {
namespace {

// Each test reads files written at a scratch path of its own.
class Input : public testing::Test {
 protected:
  void SetUp() override { ClearPhenotypeMissingTokens(); }
  void TearDown() override {
    ClearPhenotypeMissingTokens();
    std::filesystem::remove(path);
  }
  TextInput& Open(const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
    EXPECT_TRUE(input.Open(path));
    return input;
  }
  // A new run whose project file or PAR file holds the text.
  std::int32_t ReadProject(const std::string& text) {
    run = std::make_unique<RunData>();
    ReadProjectInput(*run, Open(text));
    return run->StatusCode;
  }
  std::int32_t ReadPar(const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
    run = std::make_unique<RunData>();
    ReadParameters(*run, path + "   ");
    return run->StatusCode;
  }
  const std::string path = testing_support::ScratchPath("input").string();
  TextInput input;
  std::unique_ptr<RunData> run;
};

TEST_F(Input, GenotypeTokensRowsAndNames) {
  for (const char* token : {"1", "H", "a", "x", "AB", "DD", "22", "00", "-", "-2", "X*", " A", "  ", "3"})
    EXPECT_EQ(RecodeToken(token), InvalidGenotype) << token;
  for (const auto& c : testing_support::ReadCaseTable("input/data/genotypes.txt")) {
    Array<std::int32_t, 1> category;
    Array<std::string, 1> name;
    Array<char, 2> type;
    std::int32_t status = 0;
    ReadGenotypes(Open(c.at(0)), std::stoi(c.at(1)), std::stoi(c.at(2)), category, name, type, status);
    EXPECT_EQ(status, std::stoi(c.at(3))) << c[0];
    EXPECT_EQ(std::string(type.Data(), type.Size()), c.size() > 4 ? c[4] : "") << c[0];
  }
  Array<std::string, 1> names(5);
  const std::string given[][5] = {
      {"P", "Q", "R", "Q", "P"}, {"S", "T", "S", "S", "T"}, {"a", "b", "c", "d", "e"}, {"a", "b", "c", "d", "d"}};
  const NamePair expected[] = {{4, 2}, {3, 1}, {0, 0}, {5, 4}};  // the last: a pair placed last
  for (int k = 0; k < 4; ++k) {
    for (int i = 1; i <= 5; ++i) names(i) = given[k][i - 1];
    EXPECT_EQ(CheckDuplicateNames(names).Later, expected[k].Later) << k;
    EXPECT_EQ(CheckDuplicateNames(names).Earlier, expected[k].Earlier) << k;
  }
  // Two billion nulls by a repeat pass at once and leave the row as it was
  // (the end-to-end projects have them after a slash).
  TokenRow row(2);
  input.OpenText("B 2000000000*");
  FreeFormatRead read(input);
  ASSERT_TRUE(row.Read(read, 2000000001) && read.Finish());
  EXPECT_EQ(std::string(row.Token(1)) + std::string(row.Token(2000000001)), "B   ");
  // Repeats of a value fill the row in one go, blanks included; nulls keep
  // the tokens of the read before; a repeat longer than the row ends there.
  for (const char* text : {"1*Z 6*Y /", "A 3*B 2*' ' 2*", "3*CC"}) {
    input.OpenText(text);
    FreeFormatRead again(input);
    ASSERT_TRUE(row.Read(again, text[0] == '3' ? 2 : 8) && again.Finish()) << text;
  }
  std::string tokens;
  for (int k = 1; k <= 9; ++k) tokens.append(row.Token(k));
  EXPECT_EQ(tokens, "CCCCB B     Y     ");
}

// Rows of 1 trait and 1 environment unless given; a value per line.
std::vector<float> Phenotypes(TextInput& input, int lines, std::int32_t& status, int reps = 1) {
  Array<float, 4> phenotype(lines, 1, 1, reps);
  Array<std::string, 3> name(1, 1, reps);
  ReadPhenotypes(input, 1, 1, reps, lines, phenotype, name, status);
  return std::vector<float>(phenotype.begin(), phenotype.end());
}

TEST_F(Input, PhenotypeValuesAndMissingTokens) {
  for (const auto& c : testing_support::ReadCaseTable("input/data/phenotypes.txt")) {
    std::int32_t status = 0;
    ClearPhenotypeMissingTokens();
    const std::vector<float> values = Phenotypes(Open(c.at(0)), std::stoi(c.at(1)), status, std::stoi(c.at(2)));
    EXPECT_EQ(status, std::stoi(c.at(3))) << c[0];
    std::vector<float> expected;
    std::istringstream words(c.size() > 4 ? c[4] : "");
    for (std::string word; words >> word;) expected.push_back(word == "M" ? MissingValue : std::stof(word));
    if (status == 0) {
      EXPECT_TRUE(std::equal(values.begin(), values.end(), expected.begin(), expected.end(),
                             [](float a, float b) { return a == b || (a != a && b != b); }))
          << c[0] << testing::PrintToString(values);
    }
  }
  std::int32_t status = 0;
  Phenotypes(Open("Y NA 1\n"), 2, status);
  EXPECT_EQ(Phenotypes(Open("Y -100 1\n"), 2, status)[0], -100.0f) << "a token seen once counts for later files";
}

TEST_F(Input, ProjectWithoutTraitsAndTheMarkerTriangle) {
  ASSERT_EQ(ReadProject("1\n2\n3\n0\n2\n2\nM1 A B A\nM2 B B A\n"), 0);
  EXPECT_TRUE(run->Phenotype.Size() == 0u && run->PhenotypicVariance.IsAllocated()) << "no traits";
  // (n (n - 1)) mod 2^32 as a signed number, halved, negatives as 0.
  const std::int64_t sizes[][2] = {{2, 1},          {46341, 1073720970}, {46342, 0},
                                   {65537, 32768},  {100000, 704982704}, {2147483647, 0}};
  for (const auto& s : sizes) EXPECT_EQ(TriangleSize(static_cast<std::int32_t>(s[0])), s[1]) << s[0];
}

TEST_F(Input, Parameters) {
  const std::string good = "! cn\n30\n! SMA\n1 2.5\n! add\n1 2.5 0.25\n! epi\n1 5.0 0.0001\n"
                           "! perm\n1 100 0.05\n0 1000 0.0\n1 1 0.7\n";
  ASSERT_EQ(ReadPar(good), 0);
  EXPECT_TRUE(run->ConditionNumber == 30.0f && run->SMALOD == 2.5f && run->AddPIN == 0.25f && run->AddPOUT == 0.5f);
  EXPECT_TRUE(run->EpiPOUT == 0.0001f + 0.0001f && run->AddPermTimes == 1000 && run->EpiPermTypeI == 0.7f);
  ASSERT_EQ(ReadPar("-1\n1\n\n 0.5\n0,0.5\n0.2 dropped\n0 0.5 -1\n1 1 1\n1 1 1\n1 1 1\n"), 0);
  EXPECT_TRUE(run->SMALOD == 0.5f && run->AddPIN == 0.2f && run->EpiPIN == -1.0f && run->EpiPOUT == -2.0f);
  ASSERT_EQ(ReadPar("NaN\n1 NaN\n1 NaN NaN\n1 NaN NaN\n1 10 NaN\n1 10 NaN\n1 10 NaN\n"), 0);
  EXPECT_TRUE(std::isnan(run->SMALOD) && std::isnan(run->AddPOUT) && std::isnan(run->SMAPermTypeI));
  EXPECT_EQ(ReadPar("-1\n1\n! LOD\n 0.5\n"), 3003) << "no comment line within a block";
}

// Four markers on six lines; marker 2 is missing at two lines, marker 4 at one.
TEST_F(Input, SimulationModel) {
  auto read = [&](const std::string& model) {
    return ReadProject("2\n4\n6\nM1 A B A B X A\nM2 A A B B X X\nM3 B A X B A B\nM4 X A B A B A\n" + model);
  };
  // Python, every value and operation in single precision: genotypic values
  // marker by marker (a later QTL at marker 2 replaces the earlier), running
  // sums, the variances, then 4 p (1 - p) a^2 with p the share missing.
  ASSERT_EQ(read("! model\n3 10 0.6\n2 4 2\n1.3 0.7 -2.1\n"), 0);
  const float values[] = {-2.0999999046325684f, -1.3999998569488525f, 1.3999998569488525f,
                          2.799999952316284f,   -0.699999988079071f,  0.699999988079071f};
  for (int line = 1; line <= 6; ++line) EXPECT_EQ(run->GenotypicValue(line), values[line - 1]) << line;
  EXPECT_TRUE(run->GeneticVariance == 2.844721794128418f && run->ErrorVariance == 1.8964810371398926f);
  EXPECT_TRUE(run->QTLPVEGenetic(2) == 137.79904174804688f && run->QTLPVEPhenotypic(4) == 5.7416276931762695f);
  ASSERT_EQ(read("0 0 0.5\n\n\n"), 0);
  EXPECT_TRUE(run->GeneticVariance == 0.0f && std::isnan(run->QTLPVEGenetic(3))) << "no QTL";
  EXPECT_EQ(read("0 0 0.5\n"), 3505) << "the empty read of the positions finds the end";
  ASSERT_EQ(read("1 5 0.0\n2\n1.0\n"), 0);
  EXPECT_TRUE(std::isinf(run->ErrorVariance));
  ASSERT_EQ(read("1 5 NaN\n2\n1.0\n"), 0);
  EXPECT_EQ(read("1 5 -0.1\n2\n1.0\n"), 3504);
}

}  // namespace
}  // namespace tov
