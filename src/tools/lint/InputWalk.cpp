#include "tools/lint/InputWalk.h"

#include <algorithm>
#include <map>

#include "core/RunData.h"
#include "input/Genotypes.h"
#include "input/Phenotypes.h"
#include "text/Format.h"
#include "text/FreeFormatRead.h"
#include "tools/lint/RecordRead.h"

namespace tov {

namespace {

std::string Quoted(std::string_view text) { return std::string(1, '"').append(text).append(1, '"'); }

// A head item: one integer on a line of its own.
bool ReadHeadItem(LintedFile& file, const char* label, std::int64_t& value, Findings& findings) {
  const Record record = file.Read(1, true);
  std::int32_t parsed = 0;
  if (!record.Complete || !ParseInteger(record.Items[0], parsed)) return false;
  value = parsed;
  const std::size_t next = record.Unread.find_first_not_of(" \t,");
  if (next != std::string::npos && next == record.Unread.find_first_of("0123456789"))
    findings.Warn(file.Name(), record.LastLine, "second number on a head line",
                  std::string("the numbers after ") + label +
                      " on its line are not read: each head item stands on a "
                      "line of its own");
  return true;
}

// The program names the marker of a token outside its code table, not the
// token: the first such token of each row, with the codes it takes.
void CheckGenotypeTokens(const LintedFile& file, const Record& record, std::size_t marker, Findings& findings) {
  // After a slash, and at a null value, the row keeps the tokens before.
  if (record.EndedBySlash) return;
  for (std::size_t k = 1; k < record.Items.size(); ++k) {
    if (record.Items[k].empty() || RecodeToken(record.Items[k]) != InvalidGenotype) continue;
    findings.Warn(file.Name(), record.FirstLine, "not a genotype token",
                  "the token " + Quoted(record.Items[k]) + " of marker " + std::to_string(marker) + " for LineID " +
                      std::to_string(k) +
                      " is not a genotype: write A or 2 for the donor, B or 0 for the "
                      "background, X or -1 for a missing genotype (a heterozygote cannot be read)");
    return;
  }
}

// The rows of one block; false when the file ends inside it.  A genotype
// row has tokens to check; a phenotype row has numbers after the name.
bool WalkRows(LintedFile& file, std::int64_t numRows, std::int64_t numItems, const std::string& what, bool genotypes,
              std::vector<std::string>& names, Findings& findings, const char* countName) {
  for (std::int64_t row = 1; row <= numRows; ++row) {
    const Record record = file.Read(static_cast<std::size_t>(numItems), row == 1);
    const std::string subject = what + " " + std::to_string(row);
    if (!record.Complete) {
      findings.Warn(file.Name(), file.NumLines(), "file ends early",
                    "the file ends in " + subject + " of " + std::to_string(numRows) + " with " +
                        std::to_string(record.Items.size()) + " of its " + std::to_string(numItems) +
                        " items: " + countName + " in the head, or a row too short, asks for more than the file holds");
      return false;
    }
    float value = 0.0f;
    const bool nameGoesOn =
        !genotypes && record.Items.size() > 1 && !ParseReal(record.Items[1], value) && !IsMissingToken(record.Items[1]);
    if (genotypes) CheckGenotypeTokens(file, record, static_cast<std::size_t>(row), findings);
    CheckRecord(file, record, subject + " (" + Quoted(record.Items[0]) + ")",
                nameGoesOn ? " (the name seems to go on: a name with a blank must be quoted)"
                           : " (is PopulationSize too small? is a name with a blank not quoted?)",
                findings);
    names.push_back(record.Items[0]);
  }
  return true;
}

void CheckRestOfFile(LintedFile& file, const char* block, Findings& findings) {
  const std::size_t from = file.NextLine();
  if (const std::size_t lines = file.LinesNotRead(); lines > 0)
    findings.Warn(file.Name(), from, "block ends before the file",
                  std::string("the ") + block + " ends before the file does: the file holds " + Counted(lines, "line") +
                      " more, comments aside, that no read takes (do the counts in the head match the rows?)");
}

}  // namespace

RunControl WalkRunControl(Findings& findings) {
  RunControl names;
  LintedFile file;
  if (!file.Open("TOV.mio")) {
    findings.Warn("TOV.mio", 0, "no run control", "there is no readable TOV.mio in this folder");
    return names;
  }
  std::string* targets[] = {&names.InputFileName, &names.ParFileName};
  for (std::size_t i = 0; i < 2; ++i) {
    const Record record = file.Read(1, i == 0);
    if (!record.Complete) {
      findings.Warn(file.Name(), 0, "no run control", "TOV.mio must name the project input file and the PAR file");
      return {};
    }
    const std::string_view line = file.Line(record.FirstLine);
    const bool quoted = line.find_first_of("'\"") == line.find_first_not_of(" \t");
    CheckRecord(file, record, "the file name " + Quoted(record.Items[0]),
                quoted ? "" : " (a name with a blank must be quoted)", findings);
    *targets[i] = std::string(TrimTrailing(record.Items[0].substr(0, FileNameLength)));
  }
  return names;
}

ProjectShape WalkProjectInput(const std::string& name, Findings& findings) {
  ProjectShape shape;
  LintedFile file;
  if (!file.Open(name)) return shape;
  std::int64_t indicator = 0, numMarkers = 0, populationSize = 0, numTraits = 1, numEnvs = 1, numReps = 1;
  if (!ReadHeadItem(file, "Indicator", indicator, findings) ||
      !ReadHeadItem(file, "NumMarkers", numMarkers, findings) ||
      !ReadHeadItem(file, "PopulationSize", populationSize, findings))
    return shape;
  if (indicator == 1 &&
      !(ReadHeadItem(file, "NumTraits", numTraits, findings) && ReadHeadItem(file, "NumEnvs", numEnvs, findings) &&
        ReadHeadItem(file, "NumReps", numReps, findings)))
    return shape;
  shape.Indicator = static_cast<std::int32_t>(indicator);
  if (numMarkers < 1 || populationSize < 1 || numTraits < 0 || numEnvs < 1 || numReps < 1) return shape;

  if (!WalkRows(file, numMarkers, populationSize + 1, "the row of marker", true, shape.MarkerNames, findings,
                "NumMarkers or PopulationSize"))
    return shape;
  if (indicator == 1) {
    std::vector<std::string> rowNames;
    // Counts beyond the lines of the file end the walk all the same.
    const std::int64_t cap = static_cast<std::int64_t>(file.NumLines()) + 1;
    const std::int64_t numRows =
        std::min(cap, std::min(cap, numTraits * std::min(cap, numEnvs)) * std::min(cap, numReps));
    if (!WalkRows(file, numRows, populationSize + 1, "phenotype row", false, rowNames, findings,
                  "NumTraits, NumEnvs, NumReps or PopulationSize"))
      return shape;
    for (std::size_t row = 0; row < rowNames.size(); row += static_cast<std::size_t>(numEnvs * numReps))
      shape.TraitNames.push_back(rowNames[row]);
    CheckRestOfFile(file, "phenotype block", findings);
    return shape;
  }
  const Record head = file.Read(3, true);
  std::int32_t numQTL = 0;
  if (!head.Complete || !ParseInteger(head.Items[0], numQTL) || numQTL < 0) return shape;
  CheckRecord(file, head, "the head of the genetic model", "", findings);
  for (const char* what : {"the QTL positions", "the QTL effects"}) {
    const Record record = file.Read(static_cast<std::size_t>(numQTL), false);
    if (!record.Complete) return shape;
    CheckRecord(file, record, what, "", findings);
  }
  CheckRestOfFile(file, "genetic model", findings);
  return shape;
}

void WalkParameters(const std::string& name, bool mapping, Findings& findings) {
  LintedFile file;
  if (!file.Open(name)) return;
  static constexpr std::pair<const char*, std::size_t> Blocks[] = {
      {"the condition number", 1},        {"the single marker block", 2},     {"the additive mapping block", 3},
      {"the epistatic mapping block", 3}, {"the first permutation block", 3}, {"the second permutation block", 3},
      {"the third permutation block", 3}};
  const std::size_t numBlocks = mapping ? 7 : 4;
  for (std::size_t b = 0; b < numBlocks; ++b) {
    const Record record = file.Read(Blocks[b].second, true);
    if (!record.Complete) return;
    CheckRecord(file, record, Blocks[b].first, "", findings);
  }
  if (mapping) CheckRestOfFile(file, "last permutation block", findings);
}

void CheckCutNames(const std::string& file, const std::vector<std::string>& names, std::size_t length, const char* kind,
                   Findings& findings) {
  std::map<std::string, std::string, std::less<>> byCut;
  std::size_t cut = 0;
  for (const std::string& name : names) {
    if (name.size() > length) ++cut;
    const std::string short_(TrimTrailing(std::string_view(name).substr(0, length)));
    const auto [place, added] = byCut.emplace(short_, name);
    if (!added && place->second != name)
      findings.Warn(file, 0, "names equal after cutting",
                    std::string("the ") + kind + " names " + Quoted(place->second) + " and " + Quoted(name) +
                        " are both read as " + Quoted(short_) + " (" + std::to_string(length) +
                        " characters are kept)");
  }
  if (cut > 0)
    findings.Note(file, 0, "names cut",
                  std::to_string(cut) + " " + kind + " names are longer than " + std::to_string(length) +
                      " characters and are cut to that length");
}

}  // namespace tov
