// The importer end to end against hand-written projects, the LODs of the R
// package for QTL mapping, its refusals and the names it writes.

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <map>
#include <sstream>

#include "text/Format.h"
#include "text/FreeFormatRead.h"
#include "text/TextInput.h"
#include "tools/import/FieldNames.h"
#include "tools/ToolRun.h"

namespace fs = std::filesystem;
using namespace tov::testing_support;

namespace {

const fs::path Data = fs::path(TOV_SOURCE_DIR) / "tests/tools/import";

ToolResult Import(const fs::path& folder, const fs::path& csv, const std::string& options = "") {
  fs::copy_file(csv, folder / csv.filename());
  return RunTool(folder, std::string(TOV_IMPORT_EXECUTABLE) + " " + csv.filename().string() + options);
}

TEST(Import, RoundTripGivesTheTablesOfTheHandWrittenProject) {
  ScratchFolder imported("import-roundtrip");
  ASSERT_EQ(0, Import(imported.Path(), Data / "roundtrip/cross.csv", " --name study").Status);
  EXPECT_EQ(0, RunTool(imported.Path(), TOV_LINT_EXECUTABLE).Status);
  ScratchFolder direct("import-direct");
  fs::copy_file(Data / "roundtrip/study.txt", direct.Path() / "study.txt");
  for (const char* name : {"study.par", "TOV.mio"}) fs::copy_file(imported.Path() / name, direct.Path() / name);
  for (const fs::path& folder : {imported.Path(), direct.Path()}) RunTool(folder, TOV_EXECUTABLE);
  for (const char* table : {"study.rsm", "study.qsm", "study.ric", "study.mtp"}) {
    const std::string fromImport = ReadWholeFile((imported.Path() / table).string());
    EXPECT_GT(fromImport.size(), 200u) << table;
    EXPECT_EQ(ReadWholeFile((direct.Path() / table).string()), fromImport) << table;
  }
}

TEST(Import, RealCrossGivesTheLodsOfMarkerRegression) {
  ScratchFolder folder("import-multitrait");
  ASSERT_EQ(0, Import(folder.Path(), Data / "multitrait/multitrait.csv").Status);
  const ToolResult lint = RunTool(folder.Path(), TOV_LINT_EXECUTABLE);
  EXPECT_EQ(0, lint.Status) << lint.Console;
  RunTool(folder.Path(), TOV_EXECUTABLE);
  // The LODs of the R package by marker name, one for each trait.
  std::map<std::string, std::vector<double>> reference;
  std::istringstream tsv(ReadWholeFile((Data / "multitrait/multitrait_mr.tsv").string()));
  std::string line, marker, chromosome, position;
  std::getline(tsv, line);
  while (tsv >> marker >> chromosome >> position && std::getline(tsv, line)) {
    std::istringstream values(line);
    for (double lod; values >> lod;) reference[marker].push_back(lod);
  }
  // Rows of single-marker analysis, read by their fixed columns.
  std::istringstream rsm(ReadWholeFile((folder.Path() / "multitrait.rsm").string()));
  std::getline(rsm, line);
  int compared = 0;
  double largest = 0.0;
  while (std::getline(rsm, line)) {
    if (line.substr(32, 12).find("Mean") != std::string::npos) continue;
    const int trait = std::stoi(line.substr(0, 12));
    const std::string name(tov::TrimBoth(line.substr(57, 35)));
    largest = std::max(largest, std::abs(std::stod(line.substr(92, 12)) - reference.at(name).at(trait - 1)));
    ++compared;
  }
  EXPECT_EQ(24 * 117, compared);
  EXPECT_LT(largest, 1e-3);
}

TEST(Import, RefusesWhatItCannotConvertAndWritesNothing) {
  for (const auto& entry : fs::directory_iterator(Data / "refused")) {
    if (entry.path().extension() != ".csv") continue;
    ScratchFolder folder("import-refused");
    const ToolResult result = Import(folder.Path(), entry.path());
    fs::path expected = entry.path();
    EXPECT_EQ(2, result.Status) << entry.path();
    EXPECT_EQ(ReadWholeFile(expected.replace_extension(".expected").string()), result.Console);
    EXPECT_EQ(1, std::distance(fs::directory_iterator(folder.Path()), fs::directory_iterator())) << entry.path();
  }
}

// Names written for the program's fixed fields: the free-format reader
// takes each written name back exactly, and fitted names are unique within
// their field.
TEST(FieldNames, TheReaderTakesEveryWrittenNameBackExactly) {
  const std::string names[] = {"PVV4",  "DF.162L/164C-Col", "Butenyl 3", "m,comma", "q\"uote", "it's",
                               "3*x",   "!bang",            "",          "a\tb",    "/",       "12*"};
  for (const std::string& name : names) {
    tov::TextInput input;
    input.OpenText(tov::QuotedIfNeeded(name) + " A B");
    tov::FreeFormatRead read(input);
    std::string item, next;
    ASSERT_TRUE(read.Text(item, 64) && read.Text(next, 1) && read.Finish()) << name;
    EXPECT_EQ(name, tov::TrimTrailing(item)) << tov::QuotedIfNeeded(name);
    EXPECT_EQ("A", next) << "the next token stays the next value after " << tov::QuotedIfNeeded(name);
  }
}

TEST(FieldNames, FittedNamesAreUniqueInTheirField) {
  const std::vector<std::string> names = {"Quercetin.deoxyhexosyl.dihexoside", "Quercetin.deoxyhexo",
                                          "Quercetin.deoxyhexosyl.hexoside", "Quercetin.deoxyhe~1", "Yield",
                                          "line\nbreak"};
  const std::vector<std::string> fitted = tov::FitNames(names, 19);
  const std::vector<std::string> expected = {"Quercetin.deoxyhe~2", "Quercetin.deoxyhexo", "Quercetin.deoxyhe~3",
                                             "Quercetin.deoxyhe~1", "Yield",               "line_break"};
  EXPECT_EQ(expected, fitted);
}

}  // namespace
