#include "tools/import/ProjectFiles.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "core/RunData.h"
#include "tools/import/FieldNames.h"

namespace tov {

namespace {

// Tokens on one line of a row; the row goes on over indented lines.
constexpr std::size_t TokensPerLine = 30;

void AppendRow(std::string& text, const std::string& name, const std::vector<std::string>& tokens) {
  text += QuotedIfNeeded(name);
  for (std::size_t k = 0; k < tokens.size(); ++k) {
    text += (k > 0 && k % TokensPerLine == 0) ? "\n   " : " ";
    text += tokens[k];
  }
  text += '\n';
}

std::string ProjectInput(const Cross& cross, const std::string& source) {
  std::string text = "! Imported by tov-import from " + source + "\n";
  const std::pair<const char*, std::size_t> head[] = {{"Indicator: 1 for mapping", 1},
                                                      {"NumMarkers", cross.Markers.size()},
                                                      {"PopulationSize (number of lines)", cross.NumLines},
                                                      {"NumTraits", cross.Traits.size()},
                                                      {"NumEnvs", 1},
                                                      {"NumReps", 1}};
  for (const auto& [label, value] : head) text += "! " + std::string(label) + "\n" + std::to_string(value) + "\n";
  text += "! Genotypes: the marker name, then one code for each line (A donor, B background, X missing)\n";
  for (const CrossMarker& marker : cross.Markers) {
    std::vector<std::string> codes;
    for (const char code : marker.Codes) codes.emplace_back(1, code);
    AppendRow(text, marker.Name, codes);
  }
  text += "! Phenotypes: the trait name, then one value for each line (NA missing)\n";
  for (const CrossTrait& trait : cross.Traits) AppendRow(text, trait.Name, trait.Values);
  return text;
}

constexpr const char* ParText =
    "! PAR file written by tov-import.  Each block is one read: keep its items on the line below its comment.\n"
    "! Condition number for multicollinearity (a negative value switches the step off).  The step removes one\n"
    "! marker of the most correlated pair until the ratio of the largest to the smallest eigenvalue of the\n"
    "! markers' correlation matrix is at most this value.  On a dense map every small value removes many\n"
    "! markers, the markers at the peaks among them; tov-lint tells how many a value removes.  Leave it off for\n"
    "! single-marker analysis; for additive mapping try 10000 or more and check with tov-lint.\n"
    "-1\n"
    "! Single marker analysis: indicator (0 or 1), LOD threshold\n"
    "1 3.0\n"
    "! RSTEP-LRT additive mapping: indicator, LOD threshold, PIN (probability to enter the model)\n"
    "1 3.0 0.01\n"
    "! RSTEP-LRT epistatic mapping: indicator, LOD threshold, PIN\n"
    "0 5.0 0.0001\n"
    "! Permutation tests of the three methods: indicator, times (1 to 1000), type I error rate.\n"
    "! With indicator 1 the empirical threshold replaces the LOD threshold of the method.\n"
    "0 1000 0.05\n"
    "0 1000 0.05\n"
    "0 1000 0.05\n";

std::string MarkerMap(const Cross& cross) {
  std::string text = "MarkerID\tName\tChromosome\tPosition\n";
  for (std::size_t i = 0; i < cross.Markers.size(); ++i) {
    const CrossMarker& marker = cross.Markers[i];
    text += std::to_string(i + 1) + "\t" + marker.Name + "\t" + marker.Chromosome + "\t" + marker.Position + "\n";
  }
  return text;
}

// Fits the names of one kind to their field and lists the changed ones.
template <class Item>
void FitToField(std::vector<Item>& items, std::size_t length, const char* kind, const std::string& mapName,
                std::string& nameMap, std::vector<std::string>& notes) {
  std::vector<std::string> names;
  for (const Item& item : items) names.push_back(item.Name);
  const std::vector<std::string> fitted = FitNames(names, length);
  std::size_t changed = 0;
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (fitted[i] == items[i].Name) continue;
    nameMap += std::string(kind) + "\t" + items[i].Name + "\t" + fitted[i] + "\n";
    items[i].Name = fitted[i];
    ++changed;
  }
  if (changed > 0)
    notes.push_back(std::to_string(changed) + " " + kind + " names are shortened to " + std::to_string(length) +
                    " characters; see " + mapName);
}

}  // namespace

std::vector<ProjectFile> ComposeProject(Cross& cross, const std::string& stem, const std::string& source) {
  std::string nameMap;
  const std::string mapName = stem + ".names";
  FitToField(cross.Markers, MarkerNameLength, "marker", mapName, nameMap, cross.Notes);
  FitToField(cross.Traits, TraitNameLength, "trait", mapName, nameMap, cross.Notes);
  std::vector<ProjectFile> files = {
      {stem + ".txt", ProjectInput(cross, source)},
      {stem + ".par", ParText},
      {"TOV.mio", "! Run control: the project input file, then the PAR file\n" + QuotedIfNeeded(stem + ".txt") + "\n" +
                      QuotedIfNeeded(stem + ".par") + "\n"},
      {stem + ".map", MarkerMap(cross)}};
  if (!nameMap.empty()) files.push_back({mapName, "Kind\tName in the cross\tName in the project\n" + nameMap});
  return files;
}

std::string WriteTogether(const std::string& folder, const std::vector<ProjectFile>& files) {
  namespace fs = std::filesystem;
  std::error_code error;
  fs::create_directories(folder, error);
  const std::string scratch = ".tov-import-" + std::to_string(::getpid());
  std::vector<fs::path> written;
  std::string fault;
  for (const auto& [name, content] : files) {
    const fs::path path = fs::path(folder) / (name + scratch);
    std::ofstream out(path, std::ios::binary);
    out << content;
    out.close();
    written.push_back(path);
    if (!out) {
      fault = "cannot write " + path.string();
      break;
    }
  }
  if (fault.empty()) {
    for (std::size_t i = 0; i < files.size(); ++i) {
      fs::rename(written[i], fs::path(folder) / files[i].first, error);
      if (error) return "cannot rename " + written[i].string() + ": " + error.message();
    }
    return {};
  }
  for (const fs::path& path : written) fs::remove(path, error);
  return fault;
}

}  // namespace tov
