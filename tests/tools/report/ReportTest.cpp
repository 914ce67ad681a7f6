// The report as a reader meets it: the tab-separated tables of hand-made
// runs against expected copies (values that fill their field, asterisks,
// names with blanks, the blocks of .stp, a simulation's power table); the
// page of each run shows a plot for every table that calls for one; the
// LOD drawn in each profile is the LOD of the table; and, where Chromium
// is installed, the page renders to a screenshot.

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

const fs::path Cases = fs::path(TOV_SOURCE_DIR) / "tests/tools/report";

using Table = std::vector<std::vector<std::string>>;

Table ReadTsv(const fs::path& path) {
  Table rows;
  std::istringstream text(ReadWholeFile(path.string()));
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

// A finished run in a scratch folder: a hand-made one copied, or an example
// run by tov; then the report.
void PrepareRun(const fs::path& source, const fs::path& folder) {
  fs::copy(source, folder, fs::copy_options::recursive);
  if (!fs::exists(folder / "study.mtp")) {
    ASSERT_EQ(0, RunTool(folder, TOV_EXECUTABLE).Status);
  }
  const ToolResult report = RunTool(folder, TOV_REPORT_EXECUTABLE);
  ASSERT_EQ(0, report.Status) << report.Console;
}

TEST(Report, TablesAreReadBackByTheirColumns) {
  for (const char* name : {"mapping_tables", "simulation_tables"}) {
    ScratchFolder folder(std::string("report-") + name);
    PrepareRun(Cases / name, folder.Path() / "run");
    for (const auto& expected : fs::directory_iterator(Cases / name / "expected"))
      EXPECT_EQ(ReadWholeFile(expected.path().string()),
                ReadWholeFile((folder.Path() / "run" / expected.path().filename()).string()))
          << name << " " << expected.path().filename();
  }
}

// Every (trait, environment) of the marker tables gets a profile, every
// one of the pair table a heat map, every permutation table with shuffles
// a histogram, every power table a chart.
TEST(Report, PageShowsEveryPlot) {
  const fs::path runs[] = {Cases / "mapping_tables", Cases / "simulation_tables",
                           fs::path(TOV_SOURCE_DIR) / "examples/mapping",
                           fs::path(TOV_SOURCE_DIR) / "examples/simulation"};
  for (const fs::path& source : runs) {
    ScratchFolder folder("report-plots");
    PrepareRun(source, folder.Path() / "run");
    const fs::path run = folder.Path() / "run";
    auto passes = [&](std::initializer_list<const char*> tables) {
      std::set<std::pair<std::string, std::string>> found;
      for (const char* table : tables)
        if (fs::exists(run / ("study." + std::string(table) + ".tsv")))
          for (const auto& row : ReadTsv(run / ("study." + std::string(table) + ".tsv")))
            if (row[0] != "TraitID") found.insert({row[0], row[2]});
      return found.size();
    };
    auto tablesWithRows = [&](std::initializer_list<const char*> tables) {
      std::size_t count = 0;
      for (const char* table : tables)
        if (fs::exists(run / ("study." + std::string(table) + ".tsv")))
          count += ReadTsv(run / ("study." + std::string(table) + ".tsv")).size() > 2;
      return count;
    };
    const std::string page = ReadWholeFile((run / "study.html").string());
    EXPECT_EQ(passes({"rsm", "ric"}), Count(page, "class=\"profile\"")) << source;
    EXPECT_EQ(passes({"rice"}), Count(page, "class=\"heatmap\"")) << source;
    EXPECT_EQ(tablesWithRows({"tsm", "tic", "tice"}), Count(page, "class=\"histogram\"")) << source;
    EXPECT_EQ(tablesWithRows({"psm", "pic"}), Count(page, "class=\"power\"")) << source;
    EXPECT_EQ(std::string::npos, page.find("<script")) << source;
    EXPECT_EQ(Count(page, "xmlns=\"http://www.w3.org/2000/svg\""), Count(page, "://")) << source;  // no link
  }
}

double Attribute(const std::string& svg, const std::string& name) {
  const std::regex pattern(name + "=\"([^\"]*)\"");
  std::smatch match;
  return std::regex_search(svg, match, pattern) ? std::stod(match[1]) : std::nan("");
}

TEST(Report, LodsDrawnAreTheLodsOfTheTable) {
  ScratchFolder folder("report-numbers");
  PrepareRun(fs::path(TOV_SOURCE_DIR) / "examples/mapping", folder.Path() / "run");
  const fs::path run = folder.Path() / "run";
  std::map<std::pair<std::string, std::string>, std::vector<double>> lods;
  for (const auto& row : ReadTsv(run / "study.rsm.tsv"))
    if (row[0] != "TraitID") lods[{row[0], row[2]}].push_back(std::stod(row[5]));
  // The permutation test's threshold where the run has one, else the PAR file's.
  double threshold = 2.5;
  if (fs::exists(run / "study.tsm.tsv"))
    for (const auto& row : ReadTsv(run / "study.tsm.tsv"))
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

TEST(Report, RendersInAHeadlessBrowser) {
  std::string browser;
  for (const char* name : {"/usr/bin/chromium", "/usr/bin/chromium-browser"})
    if (fs::exists(name)) browser = name;
  if (browser.empty()) GTEST_SKIP() << "no Chromium installed (Debian: apt-get install chromium): page not rendered";
  ScratchFolder folder("report-render");
  PrepareRun(fs::path(TOV_SOURCE_DIR) / "examples/mapping", folder.Path() / "run");
  const fs::path profile = folder.Path() / "browser-profile";
  fs::create_directories(profile);
  const ToolResult shot = RunTool(
      folder.Path() / "run",
      browser +
          " --headless --no-sandbox --disable-gpu --disable-quic --no-first-run --disable-background-networking "
          "--disable-component-update --disable-sync --user-data-dir=" +
          profile.string() + " --window-size=1000,3000 --screenshot=shot.png file://" +
          (folder.Path() / "run/study.html").string());
  const std::string png = ReadWholeFile((folder.Path() / "run/shot.png").string());
  ASSERT_GT(png.size(), 24u) << shot.Console;
  EXPECT_EQ("\x89PNG", png.substr(0, 4));
  // The width and height of the image, big-endian in the IHDR chunk.
  auto number = [&](std::size_t at) {
    return (static_cast<unsigned char>(png[at]) << 24) | (static_cast<unsigned char>(png[at + 1]) << 16) |
           (static_cast<unsigned char>(png[at + 2]) << 8) | static_cast<unsigned char>(png[at + 3]);
  };
  EXPECT_EQ(1000, number(16));
  EXPECT_EQ(3000, number(20));
  // A page of drawings compresses far worse than a blank one.
  EXPECT_GT(png.size(), 50000u);
}

}  // namespace
