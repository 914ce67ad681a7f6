// Names written for the program's fixed fields: the free-format reader
// takes each written name back exactly, and fitted names are unique within
// their field.

#include "tools/import/FieldNames.h"

#include <gtest/gtest.h>

#include <set>

#include "text/Format.h"
#include "text/FreeFormatRead.h"
#include "text/TextInput.h"

namespace tov {
namespace {

TEST(FieldNames, TheReaderTakesEveryWrittenNameBackExactly) {
  const std::string names[] = {"PVV4",  "DF.162L/164C-Col", "Butenyl 3", "m,comma", "q\"uote", "it's",
                               "3*x",   "!bang",            "",          "a\tb",    "/",       "12*"};
  for (const std::string& name : names) {
    TextInput input;
    input.OpenText(QuotedIfNeeded(name) + " A B");
    FreeFormatRead read(input);
    std::string item, next;
    ASSERT_TRUE(read.Text(item, 64) && read.Text(next, 1) && read.Finish()) << name;
    EXPECT_EQ(name, TrimTrailing(item)) << QuotedIfNeeded(name);
    EXPECT_EQ("A", next) << "the next token stays the next value after " << QuotedIfNeeded(name);
  }
}

TEST(FieldNames, FittedNamesAreUniqueInTheirField) {
  const std::vector<std::string> names = {"Quercetin.deoxyhexosyl.dihexoside", "Quercetin.deoxyhexo",
                                          "Quercetin.deoxyhexosyl.hexoside", "Quercetin.deoxyhe~1", "Yield",
                                          "line\nbreak"};
  const std::vector<std::string> fitted = FitNames(names, 19);
  const std::vector<std::string> expected = {"Quercetin.deoxyhe~2", "Quercetin.deoxyhexo", "Quercetin.deoxyhe~3",
                                             "Quercetin.deoxyhe~1", "Yield",               "line_break"};
  EXPECT_EQ(expected, fitted);
}

}  // namespace
}  // namespace tov
