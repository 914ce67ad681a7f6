// The report as a reader meets it: its tables against expected copies, its
// plots and the LODs drawn.

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <map>
#include <regex>
#include <set>
#include <sstream>

#include "tools/ToolRun.h"

namespace fs = std::filesystem;
using namespace tov::testing_support;

namespace {

const fs::path Examples = fs::path(TOV_SOURCE_DIR) / "examples";
const fs::path Cases = fs::path(TOV_SOURCE_DIR) / "tests/tools/report";

// The rows of a table of the report run; none where the run has no such table.
std::vector<std::vector<std::string>> ReadTsv(const fs::path& run, const std::string& table) {
  std::vector<std::vector<std::string>> rows;
  std::istringstream text(ReadWholeFile((run / ("study." + table + ".tsv")).string()));
  for (std::string line; std::getline(text, line);) {
    rows.emplace_back();
    std::istringstream fields(line);
    for (std::string field; std::getline(fields, field, '\t');) rows.back().push_back(field);
  }
  return rows;
}

std::size_t Count(const std::string& text, const std::string& piece) {
  std::size_t count = 0;
  for (std::size_t at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1)) ++count;
  return count;
}

double Attribute(const std::string& svg, const std::string& name) {
  const std::regex pattern(name + "=\"([^\"]*)\"");
  std::smatch match;
  return std::regex_search(svg, match, pattern) ? std::stod(match[1]) : std::nan("");
}

// The LOD drawn at each point of each profile is the LOD of the table, and
// the threshold line stands at the threshold of the run.
void ExpectLodsOfTheTableDrawn(const fs::path& run) {
  std::map<std::pair<std::string, std::string>, std::vector<double>> lods;
  for (const auto& row : ReadTsv(run, "rsm"))
    if (row[0] != "TraitID") lods[{row[0], row[2]}].push_back(std::stod(row[5]));
  // The permutation test's threshold where the run has one, else the PAR
  // file's (2.5 in the examples).
  double threshold = 2.5;
  for (const auto& row : ReadTsv(run, "tsm"))
    if (row[0] == "Threshold") threshold = std::stod(row[4]);
  const std::string page = ReadWholeFile((run / "study.html").string());
  const std::regex profile("<svg[^>]*class=\"profile\"[\\s\\S]*?</svg>");
  const std::regex trait("data-trait=\"([^\"]*)\" data-environment=\"([^\"]*)\"");
  const std::regex line("data-series=\"rsm\"[^>]*points=\"([^\"]*)\"");
  std::size_t profiles = 0;
  for (std::sregex_iterator svg(page.begin(), page.end(), profile), end; svg != end; ++svg, ++profiles) {
    const std::string text = svg->str();
    std::smatch pass;
    ASSERT_TRUE(std::regex_search(text, pass, trait));
    const double yMin = Attribute(text, "data-y-min"), yMax = Attribute(text, "data-y-max");
    const double top = Attribute(text, "data-top"), height = Attribute(text, "data-plot-height");
    const double pixel = (yMax - yMin) / height;
    std::vector<double> drawn;
    for (std::sregex_iterator points(text.begin(), text.end(), line); points != end; ++points) {
      std::istringstream pairs(points->str(1));
      for (std::string point; pairs >> point;)
        drawn.push_back(yMin + (top + height - std::stod(point.substr(point.find(',') + 1))) * pixel);
    }
    const std::vector<double>& expected = lods[{pass[1], pass[2]}];
    ASSERT_EQ(expected.size(), drawn.size()) << pass[0];
    for (std::size_t i = 0; i < drawn.size(); ++i) EXPECT_NEAR(expected[i], drawn[i], 0.006 * pixel + 1e-9);
    EXPECT_NEAR(threshold, Attribute(text, "data-value"), 0.005) << "the threshold of single marker analysis";
  }
  EXPECT_EQ(lods.size(), profiles);
}

// A plot for every table that calls for one; the page links nothing and
// runs no script.
TEST(Report, TablesReadBackAndAPlotForEachTable) {
  for (const fs::path& source : {Cases / "mapping_tables", Cases / "simulation_tables", Examples / "mapping",
                                 Examples / "simulation"}) {
    ScratchFolder folder("report");
    const fs::path run = folder.Path() / "run";
    fs::copy(source, run, fs::copy_options::recursive);
    // A hand-made run is reported as it is, an example once tov has run it.
    if (!fs::exists(run / "study.mtp")) {
      ASSERT_EQ(0, RunTool(run, TOV_EXECUTABLE).Status);
    }
    const ToolResult report = RunTool(run, TOV_REPORT_EXECUTABLE);
    ASSERT_EQ(0, report.Status) << report.Console;
    if (fs::exists(source / "expected")) {
      for (const auto& expected : fs::directory_iterator(source / "expected"))
        EXPECT_EQ(ReadWholeFile(expected.path().string()), ReadWholeFile((run / expected.path().filename()).string()))
            << source << " " << expected.path().filename();
    }
    auto passes = [&](std::initializer_list<const char*> tables) {
      std::set<std::pair<std::string, std::string>> found;
      for (const char* table : tables)
        for (const auto& row : ReadTsv(run, table))
          if (row[0] != "TraitID") found.insert({row[0], row[2]});
      return found.size();
    };
    auto tablesWithRows = [&](std::initializer_list<const char*> tables) {
      std::size_t count = 0;
      for (const char* table : tables) count += ReadTsv(run, table).size() > 2;
      return count;
    };
    const std::string page = ReadWholeFile((run / "study.html").string());
    EXPECT_EQ(passes({"rsm", "ric"}), Count(page, "class=\"profile\"")) << source;
    EXPECT_EQ(passes({"rice"}), Count(page, "class=\"heatmap\"")) << source;
    EXPECT_EQ(tablesWithRows({"tsm", "tic", "tice"}), Count(page, "class=\"histogram\"")) << source;
    EXPECT_EQ(tablesWithRows({"psm", "pic"}), Count(page, "class=\"power\"")) << source;
    EXPECT_EQ(std::string::npos, page.find("<script")) << source;
    EXPECT_EQ(Count(page, "xmlns=\"http://www.w3.org/2000/svg\""), Count(page, "://")) << source;
    if (source == Examples / "mapping") ExpectLodsOfTheTableDrawn(run);
  }
}

}  // namespace
