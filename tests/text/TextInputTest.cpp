#include "text/TextInput.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <string>

#include "text/FreeFormatRead.h"

namespace tov {
namespace {

class Lines : public testing::Test {
 protected:
  void Load(const std::string& text) {
    const std::string path = testing::TempDir() + "/tov-text_input-" + std::to_string(::getpid()) + ".txt";
    std::ofstream(path, std::ios::binary) << text;
    ASSERT_TRUE(input.Open(path));
  }
  std::string NextText() {
    std::string item(8, ' ');
    FreeFormatRead read(input);
    return read.Text(item, 8) && read.Finish() ? std::string(item) : "<failed>";
  }
  TextInput input;
};

TEST_F(Lines, SkipCommentsPassesOverBlankAndBangLinesOnly) {
  Load("\n    \n! comment\n!\n  !not a comment\nnext\n");
  SkipComments(input);
  EXPECT_EQ(NextText(), "!not    ") << "a '!' after the first column starts no comment";
  EXPECT_EQ(NextText(), "next    ");
}

TEST_F(Lines, SkipCommentsLooksAtTheFirst128CharactersOnly) {
  Load(std::string(128, ' ') + "hidden\nvalue\n");
  SkipComments(input);
  EXPECT_EQ(NextText(), "value   ");
}

TEST_F(Lines, SkipCommentsAtTheEndLeavesTheNextReadToFail) {
  Load("! only\n\n! comments\n");
  SkipComments(input);
  EXPECT_EQ(NextText(), "<failed>");
}

TEST_F(Lines, SkipCommentsStopsAtALineOfTabs) {
  Load("\t\nvalue\n");
  SkipComments(input);
  std::string_view line;
  ASSERT_TRUE(input.NextLine(line));
  EXPECT_EQ(line, "\t") << "only blanks make an empty line";
}

TEST_F(Lines, WindowsLineEndsAndAMissingLastLineEnd) {
  Load("first\r\nsecond");
  std::string_view line;
  ASSERT_TRUE(input.NextLine(line));
  EXPECT_EQ(line, "first");
  ASSERT_TRUE(input.NextLine(line));
  EXPECT_EQ(line, "second");
  EXPECT_FALSE(input.NextLine(line));
}

TEST_F(Lines, BackOneLineAfterTheEndOnlyUndoesTheEnd) {
  Load("a\nb\n");
  std::string_view line;
  ASSERT_TRUE(input.NextLine(line));
  input.BackOneLine();
  ASSERT_TRUE(input.NextLine(line));
  EXPECT_EQ(line, "a");
  ASSERT_TRUE(input.NextLine(line));
  EXPECT_FALSE(input.NextLine(line));
  input.BackOneLine();
  EXPECT_FALSE(input.NextLine(line));
}

TEST(FileExistence, FoldersExistButDoNotOpenAsText) {
  TextInput input;
  EXPECT_TRUE(FileExists(testing::TempDir()));
  EXPECT_FALSE(input.Open(testing::TempDir()));
  EXPECT_FALSE(FileExists(""));
  EXPECT_FALSE(FileExists(testing::TempDir() + "/no-such-file.txt"));
}

}  // namespace
}  // namespace tov
