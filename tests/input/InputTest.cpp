// The readers, on the rules the end-to-end projects of bad input files do
// not reach: how tokens are cut and recoded, how rows run over lines, the
// missing tokens and their memory, which arrays a fault leaves, and the
// values derived from a simulation model.

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "core/Log.h"
#include "core/RunData.h"
#include "input/Genotypes.h"
#include "input/Parameters.h"
#include "input/Phenotypes.h"
#include "input/ProjectInput.h"
#include "input/SimulationModel.h"
#include "input/TokenRow.h"
#include "support/ScratchFile.h"
#include "text/TextInput.h"

namespace tov {
namespace {

// Each test reads files of its own folder and logs its messages there.
class Input : public testing::Test {
 protected:
  void SetUp() override {
    std::filesystem::create_directories(folder);
    ClearPhenotypeMissingTokens();
    ASSERT_TRUE(LogFile().Create(Path("messages.log")));
  }
  void TearDown() override {
    LogFile().Close();
    ClearPhenotypeMissingTokens();
    std::filesystem::remove_all(folder);
  }
  std::string Path(const std::string& name) const { return (folder / name).string(); }
  std::string Write(const std::string& text) const {
    std::ofstream(Path("input.txt"), std::ios::binary) << text;
    return Path("input.txt");
  }
  TextInput& Open(const std::string& text) {
    input.Close();
    EXPECT_TRUE(input.Open(Write(text)));
    return input;
  }
  // True when the log holds the line.
  bool Logged(const std::string& line) {
    LogFile().Close();
    const std::string text = testing_support::ReadWholeFile(Path("messages.log"));
    LogFile().Append(Path("messages.log"));
    return text.find(line + "\n") != std::string::npos;
  }
  // A run whose project file or PAR file holds the text.
  std::int32_t ReadProject(const std::string& text) {
    run = std::make_unique<RunData>();
    ReadProjectInput(*run, Write(text) + "      ");
    return run->StatusCode;
  }
  std::int32_t ReadPar(const std::string& text, std::int32_t indicator = 1) {
    run = std::make_unique<RunData>();
    run->Indicator = indicator;
    ReadParameters(*run, Write(text) + "   ");
    return run->StatusCode;
  }
  const std::filesystem::path folder = testing_support::ScratchPath("input");
  TextInput input;
  std::unique_ptr<RunData> run;
};

TEST_F(Input, GenotypeTokensRowsAndNames) {
  for (const char* token : {"2", "D", "A", "AA", "A "}) EXPECT_EQ(RecodeToken(token), 'A') << token;
  for (const char* token : {"0", "B", "BB"}) EXPECT_EQ(RecodeToken(token), 'B') << token;
  for (const char* token : {"-1", "X", "XX", "*", "**"}) EXPECT_EQ(RecodeToken(token), 'X') << token;
  for (const char* token : {"1", "H", "a", "x", "AB", "DD", "22", "00", "-", "-2", "X*", " A", "  ", "3"})
    EXPECT_EQ(RecodeToken(token), InvalidGenotype) << token;
  const struct {
    std::string Text;
    int Markers, Lines, Status;
    std::string Codes;  // markers fastest
  } cases[] = {
      {"M1 AAB -10 BBX\n", 1, 3, 0, "AXB"},  // tokens cut to two characters
      {"M1 A 2.0 B\n", 1, 3, 2210, ""},
      {"! two\n\nfirst A B X\nsecond 0 2 -1\n", 2, 3, 0, "ABBAXX"},
      {"M1 A B\n  X A\nM2 B\nA\nA A\n", 2, 4, 0, "ABBAXAAA"},
      {"M1 H B\n", 1, 4, 2201, ""},  // the read fails before the token is judged
  };
  for (const auto& c : cases) {
    Array<std::int32_t, 1> category;
    Array<std::string, 1> name;
    Array<char, 2> type;
    std::int32_t status = 0;
    ReadGenotypes(Open(c.Text), c.Markers, c.Lines, category, name, type, status);
    EXPECT_EQ(status, c.Status) << c.Text;
    if (status == 0) {
      EXPECT_EQ(std::string(type.Data(), type.Size()), c.Codes) << c.Text;
    }
  }
  EXPECT_TRUE(Logged("--Error2201: cannot read MarkerType! MarkerID=1"));
  Array<std::string, 1> names(5);
  const std::string given[][5] = {
      {"P", "Q", "R", "Q", "P"}, {"S", "T", "S", "S", "T"}, {"a", "b", "c", "d", "e"}, {"a", "b", "c", "d", "d"}};
  const NamePair expected[] = {{4, 2}, {3, 1}, {0, 0}, {5, 4}};  // the last: a pair placed last
  for (int k = 0; k < 4; ++k) {
    for (int i = 1; i <= 5; ++i) names(i) = given[k][i - 1];
    EXPECT_EQ(CheckDuplicateNames(names).Later, expected[k].Later) << k;
    EXPECT_EQ(CheckDuplicateNames(names).Earlier, expected[k].Earlier) << k;
  }
  TokenRow row(2);
  input.OpenText("A B /");
  FreeFormatRead first(input);
  ASSERT_TRUE(row.Read(first, 3) && first.Finish());
  EXPECT_EQ(row.Token(3), "  ") << "never read";
  input.OpenText(",XX");
  FreeFormatRead second(input);
  ASSERT_TRUE(row.Read(second, 2) && second.Finish());
  EXPECT_EQ(std::string(row.Token(1)) + std::string(row.Token(2)), "A XX") << "a null value keeps the token before";
  // Two billion nulls, by a repeat or after a slash, pass at once and leave
  // the row as it was.
  for (const char* text : {"B 2000000000*", "B /"}) {
    input.OpenText(text);
    FreeFormatRead third(input);
    ASSERT_TRUE(row.Read(third, 2000000001) && third.Finish()) << text;
    EXPECT_EQ(std::string(row.Token(1)) + std::string(row.Token(2)) + std::string(row.Token(2000000001)), "B XX  ");
  }
  row.Set(2, "1234567");
  EXPECT_EQ(row.Token(2), "12");
}

// Rows of 1 trait and 1 environment unless given; a value per line.
std::vector<float> Phenotypes(TextInput& input, int lines, std::int32_t& status, int reps = 1) {
  Array<float, 4> phenotype(lines, 1, 1, reps);
  Array<std::string, 3> name(1, 1, reps);
  ReadPhenotypes(input, 1, 1, reps, lines, phenotype, name, status);
  return std::vector<float>(phenotype.begin(), phenotype.end());
}

TEST_F(Input, PhenotypeValuesAndMissingTokens) {
  constexpr float M = MissingValue;
  const struct {
    std::string Text;
    int Lines, Reps, Status;
    std::vector<float> Values;  // lines fastest, then replications
  } cases[] = {
      // Without a missing token, -100 within 0.0001 in 32 bits is missing:
      // -99.9999 is 9.918e-5 from it as a float.
      {"Y -100 -100.00005 -100.001 -99.9999 -99.9998 -9999.0 100\n", 7, 1, 0,
       {M, M, -100.001f, M, -99.9998f, M, 100}},
      {"'Grain yield in the field' 1.5\n 2.5\n\n  3.5\n", 3, 1, 0, {1.5f, 2.5f, 3.5f}},
      // Tokens are cut to 20 characters before conversion.
      {"Y 0.125000000000000000xyz 12345678901234567890123\n", 2, 1, 0, {0.125f, 12345678901234567890.0f}},
      // A slash leaves the tokens of the row before; the token of the same row counts.
      {"Y 1 2 3\nY 4 /\n", 3, 2, 0, {1, 2, 3, 4, 2, 3}},
      {"Y NA na * . - 7\n", 6, 1, 0, {M, M, M, M, M, 7}},
      {"Y -100 1\nY . -100\nY -100 -9999\n", 2, 3, 0, {M, 1, M, -100, -100, M}},
      {"Y 1 Na\n", 2, 1, 2406, {}},
      {"Y 1 N/A\n", 2, 1, 2406, {}},
      {"Y 4 /\n", 2, 1, 2406, {}},  // blank tokens before the first row are no reals
  };
  for (const auto& c : cases) {
    std::int32_t status = 0;
    ClearPhenotypeMissingTokens();
    const std::vector<float> values = Phenotypes(Open(c.Text), c.Lines, status, c.Reps);
    EXPECT_EQ(status, c.Status) << c.Text;
    if (status == 0) {
      EXPECT_EQ(values, c.Values) << c.Text;
    }
  }
  EXPECT_TRUE(Logged("--Error2407: Individual or line = 2; invalid phenotype =                     "));
  std::int32_t status = 0;
  Phenotypes(Open("Y NA 1\n"), 2, status);
  EXPECT_EQ(Phenotypes(Open("Y -100 1\n"), 2, status)[0], -100.0f) << "a token seen once counts for later files";
  TokenRow tokens(PhenotypeTokenLength);
  tokens.Set(1, "NaN");
  Array<float, 1> values(1);
  ClearPhenotypeMissingTokens();
  ConvertPhenotypeRow(1, tokens, values.View(), status);
  EXPECT_TRUE(status == 0 && std::isnan(values(1))) << "NaN passes the -100 test";
}

const std::string Genotypes = "M1 A B A\nM2 B B A\n";

TEST_F(Input, ProjectFilesFillTheRunDataAndFaultsLeaveWhatTheyLeave) {
  ASSERT_EQ(ReadProject("! head\n1\n\n2 markers\n! lines\n3\n2\n1\n1\n" + Genotypes + "T1 1 2 3\nT2 4 NA 6\n"), 0);
  EXPECT_EQ(run->MarkerType(2, 3), 'A');
  EXPECT_EQ(run->TraitName(2, 1, 1), "T2" + std::string(17, ' '));
  EXPECT_EQ(run->Phenotype(2, 2, 1, 1), MissingValue);
  EXPECT_EQ(run->PhenotypicVariance.Extent(2), 2) << "one column per environment and one across";
  EXPECT_FALSE(run->GenotypicValue.IsAllocated());
  // A simulation has three head items: the fourth line starts the genotypes.
  ASSERT_EQ(ReadProject("2\n2\n3\n" + Genotypes + "1 10 0.5\n1\n0.5\n"), 0);
  EXPECT_TRUE(run->NumTraits == 1 && !run->Phenotype.IsAllocated() && run->GenotypicValue(3) == 0.5f);
  ASSERT_EQ(ReadProject("1\n2\n3\n0\n2\n2\n" + Genotypes), 0);
  EXPECT_TRUE(run->Phenotype.Size() == 0u && run->PhenotypicVariance.IsAllocated()) << "no traits";
  // Arrays sized by the head are made only once the block has backed its
  // counts: a short file that claims a billion rows costs nothing.
  EXPECT_EQ(ReadProject("1\n2\n3\n1\n2\n1\n" + Genotypes + "T 1 2 3\nT 1 x 3\n"), 2406);
  EXPECT_EQ(ReadProject("1\n2\n3\n1000000\n1000\n1000\n" + Genotypes + "T 1 2 3\n"), 2405);
  EXPECT_FALSE(run->Phenotype.IsAllocated() || run->TraitName.IsAllocated() || run->PhenotypicVariance.IsAllocated() ||
               run->TraitEnvStat2.IsAllocated());
  EXPECT_EQ(ReadProject("1\n2\n3\n1\n1\n1\nM1 A B A\nM1 B A A\nT 1 2 3\n"), 2230);
  EXPECT_TRUE(Logged("--Error2230: two markers have same name! MarkerID1=2 MarkerID2=1 MarkerName=M1"));
  EXPECT_FALSE(run->Phenotype.IsAllocated()) << "a genotype fault ends the reading";
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
  const struct {
    std::string Text;
    int Status;
  } refused[] = {{"-1\n1\n! LOD\n 0.5\n", 3003}, {"1\n2 0.1\n", 3004}, {"1\n-1 3\n", 3004},
                 {"1\n0 0.49\n", 3005},          {"1\n1.0 3\n", 3003}};
  for (const auto& r : refused) EXPECT_EQ(ReadPar(r.Text), r.Status) << r.Text;
  EXPECT_TRUE(Logged("--Error3003: cannot read single marker analysis Indicator, Threshold LOD!"));
  // A simulation reads no permutation blocks, whatever stands there.
  EXPECT_EQ(ReadPar("1\n1 3\n1 3 0.01\n0 3 0.01\nrubbish\n", 2), 0);
  EXPECT_EQ(ReadPar(good, 2), 0);
  EXPECT_EQ(run->SMAPermIndicator + run->SMAPermTimes, 0);
}

// Four markers on six lines; marker 2 is missing at two lines, marker 4 at one.
TEST_F(Input, SimulationModel) {
  const char* const genotypes[] = {"ABABXA", "AABBXX", "BAXBAB", "XABABA"};
  auto read = [&](const std::string& model) {
    run = std::make_unique<RunData>();
    run->Indicator = 2;
    run->NumMarkers = 4;
    run->PopulationSize = 6;
    run->MarkerType.Allocate(4, 6);
    for (int m = 1; m <= 4; ++m)
      for (int line = 1; line <= 6; ++line) run->MarkerType(m, line) = genotypes[m - 1][line - 1];
    ReadSimulationModel(*run, Open(model));
    return run->StatusCode;
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
  EXPECT_EQ(read("0 0 0.5\n\n"), 3507);
  ASSERT_EQ(read("1 5 0.0\n2\n1.0\n"), 0);
  EXPECT_TRUE(std::isinf(run->ErrorVariance));
  ASSERT_EQ(read("1 5 NaN\n2\n1.0\n"), 0);
  EXPECT_EQ(read("1 5 -0.1\n2\n1.0\n"), 3504);
  EXPECT_TRUE(Logged("--Error3504: Heritability out of range (0.0, 1.0)! Heritability=-0.10"));
}

}  // namespace
}  // namespace tov
