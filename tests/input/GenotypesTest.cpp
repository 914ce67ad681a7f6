#include "input/Genotypes.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ReaderFixture.h"
#include "text/Format.h"

namespace tov {
namespace {

struct Block {
  Array<std::int32_t, 1> Category;
  Array<std::string, 1> Name;
  Array<char, 2> Type;
  std::int32_t Status = 0;

  // The codes of one marker over the lines.
  std::string Codes(std::int64_t marker) const {
    std::string codes;
    for (std::int64_t line = 1; line <= Type.Extent(2); ++line) codes += Type(marker, line);
    return codes;
  }
};

class Genotypes : public ReaderFixture {
 protected:
  Block Read(const std::string& text, std::int32_t markers, std::int32_t lines) {
    Block block;
    ReadGenotypes(Input(text), markers, lines, block.Category, block.Name, block.Type, block.Status);
    return block;
  }
};

TEST(GenotypeCodes, EveryTokenOfTheTableAndNothingElse) {
  for (const char* token : {"2", "D", "A", "AA", "A "}) EXPECT_EQ(RecodeToken(token), 'A') << token;
  for (const char* token : {"0", "B", "BB"}) EXPECT_EQ(RecodeToken(token), 'B') << token;
  for (const char* token : {"-1", "X", "XX", "*", "**"}) EXPECT_EQ(RecodeToken(token), 'X') << token;
  // Heterozygote codes of other schemes, lower case, mixed pairs, blanks.
  for (const char* token : {"1", "H", "a", "b", "x", "aa", "AB", "BA", "DD", "22", "00", "-", "-2", "X*", " A", "  ", "3"})
    EXPECT_EQ(RecodeToken(token), InvalidGenotype) << token;
}

TEST_F(Genotypes, TokensAreCutToTwoCharactersBeforeRecoding) {
  // "AAB" is read as "AA", "-10" as "-1", "BBX" as "BB"; "2.0" as "2.", which
  // is no code.
  const Block good = Read("M1 AAB -10 BBX\n", 1, 3);
  ASSERT_EQ(good.Status, 0);
  EXPECT_EQ(good.Codes(1), "AXB");
  const Block bad = Read("M1 A 2.0 B\n", 1, 3);
  EXPECT_EQ(bad.Status, 2210);
  EXPECT_EQ(Messages().back(), "--Error2210: cannot read MarkerType! MarkerID=1");
}

TEST_F(Genotypes, MarkersAreFastestInTheGenotypeMatrix) {
  const Block block = Read("! two markers\n\nfirst A B X\nsecond 0 2 -1\n", 2, 3);
  ASSERT_EQ(block.Status, 0);
  EXPECT_EQ(block.Codes(1), "ABX");
  EXPECT_EQ(block.Codes(2), "BAX");
  EXPECT_EQ(block.Type.Data()[1], 'B') << "MarkerType(2, 1) follows MarkerType(1, 1)";
  EXPECT_EQ(block.Name(2), "second" + std::string(29, ' '));
  EXPECT_EQ(block.Category(1) + block.Category(2), 2);
}

TEST_F(Genotypes, ARowMayContinueOverLines) {
  const Block block = Read("M1 A B\n  X A\nM2 B\nA\nA A\n", 2, 4);
  ASSERT_EQ(block.Status, 0);
  EXPECT_EQ(block.Codes(1), "ABXA");
  EXPECT_EQ(block.Codes(2), "BAAA");
}

TEST_F(Genotypes, AReadFailureComesBeforeAnInvalidTokenOfTheSameRow) {
  EXPECT_EQ(Read("M1 H B\n", 1, 4).Status, 2201);
}

TEST(DuplicateNames, TheLaterMarkerOfTheFirstPairFoundComesFirst) {
  Array<std::string, 1> names(5);
  const char* given[] = {"P", "Q", "R", "Q", "P"};
  for (int i = 1; i <= 5; ++i) names(i) = given[i - 1];
  // Marker 4 repeats marker 2 before marker 5 repeats marker 1.
  const NamePair pair = CheckDuplicateNames(names);
  EXPECT_EQ(pair.Later, 4);
  EXPECT_EQ(pair.Earlier, 2);

  const char* thrice[] = {"S", "T", "S", "S", "T"};
  for (int i = 1; i <= 5; ++i) names(i) = thrice[i - 1];
  EXPECT_EQ(CheckDuplicateNames(names).Later, 3);
  EXPECT_EQ(CheckDuplicateNames(names).Earlier, 1) << "the earlier marker is the first of the name";

  for (int i = 1; i <= 5; ++i) names(i) = std::string(1, static_cast<char>('a' + i));
  EXPECT_EQ(CheckDuplicateNames(names).Later, 0);
}

TEST(TokenRows, TokensStayFromOneReadToTheNextAndNeverReadOnesAreBlank) {
  TextInput input;
  input.OpenText("A B /");
  TokenRow row(2);
  FreeFormatRead first(input);
  ASSERT_TRUE(row.Read(first, 3) && first.Finish());
  EXPECT_EQ(row.Token(3), "  ") << "the slash left token 3 as it was: never read";
  EXPECT_EQ(row.Token(1000000000), "  ");
  input.OpenText(",XX");
  FreeFormatRead second(input);
  ASSERT_TRUE(row.Read(second, 2) && second.Finish());
  EXPECT_EQ(row.Token(1), "A ") << "a null value keeps the token before";
  EXPECT_EQ(row.Token(2), "XX");
  // Two billion nulls, by a repeat or after a slash, pass at once and leave
  // the row as it was.
  for (const char* text : {"B 2000000000*", "B /"}) {
    input.OpenText(text);
    FreeFormatRead third(input);
    ASSERT_TRUE(row.Read(third, 2000000001) && third.Finish()) << text;
    EXPECT_EQ(row.Token(1), "B ");
    EXPECT_EQ(row.Token(2), "XX");
    EXPECT_EQ(row.Token(2000000001), "  ");
  }
}

TEST(TokenRows, ASetTokenIsCutOrBlankFilledAndLeavesItsNeighbours) {
  TokenRow row(5);
  row.Set(1, "abcde");
  row.Set(2, "fghij");
  row.Set(3, "klmno");
  row.Set(2, "xy");
  row.Set(3, "1234567");
  EXPECT_EQ(row.Token(1), "abcde");
  EXPECT_EQ(row.Token(2), "xy   ");
  EXPECT_EQ(row.Token(3), "12345");
}

}  // namespace
}  // namespace tov
