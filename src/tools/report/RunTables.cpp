#include "tools/report/RunTables.h"

#include <fstream>
#include <sstream>

#include "core/RunData.h"
#include "input/Parameters.h"
#include "text/Format.h"
#include "text/FreeFormatRead.h"
#include "text/TextInput.h"
#include "tools/report/StaAnova.h"

namespace tov {

namespace {

std::vector<std::string> ReadLines(const std::string& path, bool& found) {
  std::vector<std::string> lines;
  std::ifstream file(path);
  found = static_cast<bool>(file);
  for (std::string line; std::getline(file, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(std::move(line));
  }
  return lines;
}

// The names of TOV.mio, read as the program reads them.
bool ReadRunControl(std::string& inputName, std::string& parName) {
  TextInput input;
  if (!input.Open("TOV.mio")) return false;
  SkipComments(input);
  for (std::string* name : {&inputName, &parName}) {
    FreeFormatRead read(input);
    name->assign(FileNameLength, ' ');
    if (!(read.Text(*name, FileNameLength) && read.Finish())) return false;
    *name = std::string(TrimTrailing(*name));
  }
  return true;
}

// .stp: blocks of a heading and a value line, whose columns differ from
// block to block; kept as one row for each term.
TextTable StepModels(const std::vector<std::string>& lines) {
  TextTable table{{"TraitID", "TraitName", "Environment", "Term", "Value"}, {}};
  for (std::size_t i = 0; i + 1 < lines.size(); i += 2) {
    const std::vector<std::string> titles = SplitFixed(lines[i], StepModelLayout());
    const std::vector<std::string> values = SplitFixed(lines[i + 1], StepModelLayout());
    for (std::size_t c = 3; c < titles.size() && c < values.size(); ++c)
      table.Rows.push_back({values[0], values[1], values[2], titles[c], values[c]});
  }
  return table;
}

// The importer's marker map: MarkerID, name, chromosome, position.
std::map<int, MapPlace> ReadMarkerMap(const std::string& path) {
  std::map<int, MapPlace> map;
  bool found = false;
  const std::vector<std::string> lines = ReadLines(path, found);
  for (std::size_t i = 1; i < lines.size(); ++i) {
    std::istringstream fields(lines[i]);
    std::string id, name, chromosome, position;
    std::getline(fields, id, '\t');
    std::getline(fields, name, '\t');
    std::getline(fields, chromosome, '\t');
    std::getline(fields, position, '\t');
    std::int32_t markerId = 0;
    float place = 0.0f;
    if (!ParseInteger(id, markerId)) continue;
    map[markerId] = MapPlace{chromosome, ParseReal(position, place) ? place : 0.0};
  }
  return map;
}

}  // namespace

const TextTable* RunTables::Find(const std::string& name) const {
  const auto found = Tables.find(name);
  return found == Tables.end() ? nullptr : &found->second;
}

RunTables LoadRun(std::string& fault) {
  RunTables run;
  std::string inputName, parName;
  if (!ReadRunControl(inputName, parName)) {
    fault = "TOV.mio cannot be read: run tov-report in the folder of a finished run";
    return run;
  }
  run.Base = inputName.size() <= 4 ? "" : inputName.substr(0, inputName.size() - 4);
  bool found = false;
  const std::pair<const char*, Layout> singles[] = {
      {"mtp", MarkerTableLayout()}, {"rsm", MarkerTestLayout()},   {"qsm", MarkerTestLayout()},
      {"ric", MarkerTestLayout()},  {"qic", MarkerTestLayout()},   {"tsm", PermutationLayout()},
      {"tic", PermutationLayout()}, {"tice", PermutationLayout()}, {"rice", PairTestLayout()},
      {"qice", PairTestLayout()},   {"sta", TraitStatsLayout()},   {"psm", PowerLayout()},
      {"pic", PowerLayout()}};
  for (const auto& [extension, layout] : singles) {
    const std::vector<std::string> lines = ReadLines(run.Base + "." + extension, found);
    if (found) run.Tables[extension] = ReadFixedTable(lines, layout);
    if (found && std::string_view(extension) == "sta") {
      AnovaTables anova = ReadAnovaTables(lines, run.Tables[extension]);
      run.Tables["sta.fit"] = std::move(anova.Fit);
      run.Tables["sta.anova"] = std::move(anova.Sources);
    }
  }
  if (std::vector<std::string> lines = ReadLines(run.Base + ".stp", found); found)
    run.Tables["stp"] = StepModels(lines);
  if (std::vector<std::string> lines = ReadLines(run.Base + ".coe", found); found) {
    const TextTable all = ReadFixedTable(lines, CorrelationLayout());
    run.Tables["coe.all"] = all;
    const std::size_t second = all.Rows.size() + 2;
    if (second < lines.size())
      run.Tables["coe.kept"] =
          ReadFixedTable(std::vector<std::string>(lines.begin() + second, lines.end()), CorrelationLayout());
  }
  if (run.Find("mtp") == nullptr) {
    fault = run.Base + ".mtp is missing: run tov first";
    return run;
  }
  run.Mapping = run.Find("sta") != nullptr;
  run.Map = ReadMarkerMap(run.Base + ".map");

  RunData parameters;
  parameters.Indicator = run.Mapping ? 1 : 2;
  if (FileExists(parName)) {
    ReadParameters(parameters, parName);
    run.HaveParameters = parameters.StatusCode == 0;
    run.SMALOD = parameters.SMALOD;
    run.AddLOD = parameters.AddLOD;
    run.EpiLOD = parameters.EpiLOD;
  }
  return run;
}

}  // namespace tov
