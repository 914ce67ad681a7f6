#include "tools/import/CrossTable.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>

#include "text/FreeFormatRead.h"

namespace tov {

namespace {

bool IsOneOf(std::string_view call, const std::vector<std::string>& codes) {
  return std::find(codes.begin(), codes.end(), call) != codes.end();
}

std::string Place(std::size_t row, std::size_t column) {
  return "row " + std::to_string(row + 1) + ", column " + std::to_string(column + 1);
}

bool IsIdColumn(std::string_view name) {
  std::string lower(name);
  for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return lower == "id";
}

// A number with a comma for its decimal point, such as 1,924279.
bool HasDecimalComma(std::string_view cell) {
  const std::size_t comma = cell.find(',');
  if (comma == std::string_view::npos || comma == 0 || comma + 1 >= cell.size()) return false;
  float whole = 0.0f;
  float fraction = 0.0f;
  return ParseReal(cell.substr(0, comma), whole) && ParseReal(cell.substr(comma + 1), fraction);
}

bool IsPlainNumber(std::string_view cell) {
  if (cell.empty()) return false;
  const std::string text(cell);
  char* end = nullptr;
  std::strtod(text.c_str(), &end);
  return end == text.c_str() + text.size();
}

struct Layout {
  std::size_t NumTraitColumns = 0;  // the phenotype columns come first
  std::size_t FirstLine = 2;        // the table row of the first line
};

std::string FindLayout(const CsvTable& table, Layout& layout, bool& hasMap) {
  if (table.Rows.size() < 3) return "the file needs a header row, a row of chromosomes and a row for each line";
  const std::size_t columns = table.Rows[0].size();
  while (layout.NumTraitColumns < columns && table.Cell(1, layout.NumTraitColumns).empty()) ++layout.NumTraitColumns;
  if (layout.NumTraitColumns == columns) return "row 2 names no chromosome: the table holds no marker";
  if (layout.NumTraitColumns == 0) return "row 2, column 1: the first column must be a phenotype, with no chromosome";
  for (std::size_t c = layout.NumTraitColumns; c < columns; ++c)
    if (table.Cell(1, c).empty()) return Place(1, c) + ": the marker " + table.Rows[0][c] + " has no chromosome";
  // A map row is empty under the phenotypes and holds numbers under the
  // markers; a first line with all its phenotypes missing does not.
  hasMap = true;
  for (std::size_t c = 0; c < columns; ++c)
    hasMap = hasMap && (c < layout.NumTraitColumns ? table.Cell(2, c).empty() : IsPlainNumber(table.Cell(2, c)));
  if (hasMap) layout.FirstLine = 3;
  if (table.Rows.size() <= layout.FirstLine) return "the table holds no line";
  for (std::size_t r = 1; r < table.Rows.size(); ++r)
    if (table.Rows[r].size() != columns)
      return "row " + std::to_string(r + 1) + " has " + std::to_string(table.Rows[r].size()) +
             " fields, the header row has " + std::to_string(columns) +
             " (an unquoted comma inside a field, such as a decimal comma?)";
  return {};
}

std::string CheckUniqueNames(const CsvTable& table, std::size_t from, std::size_t to, const char* what) {
  std::map<std::string_view, std::size_t> seen;
  for (std::size_t c = from; c < to; ++c) {
    const auto [place, added] = seen.emplace(table.Rows[0][c], c);
    if (!added)
      return "row 1, columns " + std::to_string(place->second + 1) + " and " + std::to_string(c + 1) + ": two " + what +
             " named \"" + table.Rows[0][c] + "\"";
  }
  return {};
}

// One phenotype value as the project will hold it: "NA" for a missing
// value, else the number as written, or in 9 digits when the written form
// is longer than the program's tokens.
std::string PhenotypeToken(std::string_view cell, const GenotypeCodes& codes, std::string& fault) {
  if (cell.empty() || IsOneOf(cell, codes.Missing)) return "NA";
  float value = 0.0f;
  if (HasDecimalComma(cell)) {
    fault = "the value \"" + std::string(cell) + "\" has a decimal comma; write it with a decimal point";
  } else if (!ParseReal(cell, value) || !IsPlainNumber(cell)) {
    fault = "the value \"" + std::string(cell) + "\" is not a number";
  } else if (std::isnan(value)) {
    return "NA";
  } else if (std::isinf(value)) {
    fault = "the value \"" + std::string(cell) + "\" is beyond the range of the program's numbers";
  } else if (value == -9999.0f) {
    fault = "the value -9999 is the program's own missing code; write a missing value as NA";
  } else if (cell.size() > 20) {
    char digits[32];
    std::snprintf(digits, sizeof digits, "%.9g", static_cast<double>(value));
    return digits;
  } else {
    return std::string(cell);
  }
  return {};
}

// Without a missing token in this row or an earlier one, the program reads
// -100 as a missing value, so such a value cannot be carried over.  The
// index of the first one, or the number of values when there is none.
std::size_t FindMinusHundred(const CrossTrait& trait, bool missingSeen) {
  for (std::size_t k = 0; k < trait.Values.size() && !missingSeen; ++k) {
    float value = 0.0f;
    if (trait.Values[k] != "NA" && ParseReal(trait.Values[k], value) && std::abs(value + 100.0f) < 0.0001f) return k;
  }
  return trait.Values.size();
}

struct HeterozygoteCount {
  std::size_t Total = 0;
  std::vector<std::string> Markers;  // "name (count, first at row r)"
};

char GenotypeCode(std::string_view call, const GenotypeCodes& codes, bool& heterozygote) {
  heterozygote = false;
  if (IsOneOf(call, codes.Donor)) return 'A';
  if (IsOneOf(call, codes.Background)) return 'B';
  if (IsOneOf(call, codes.Missing)) return 'X';
  if (IsOneOf(call, codes.Heterozygote)) {
    heterozygote = true;
    return 'X';
  }
  return 'Z';
}

}  // namespace

Cross ReadCross(const CsvTable& table, const GenotypeCodes& codes) {
  Cross cross;
  Layout layout;
  cross.Fault = FindLayout(table, layout, cross.HasMap);
  if (cross.Fault.empty()) cross.Fault = CheckUniqueNames(table, 0, layout.NumTraitColumns, "phenotypes");
  if (cross.Fault.empty())
    cross.Fault = CheckUniqueNames(table, layout.NumTraitColumns, table.Rows[0].size(), "markers");
  if (!cross.Fault.empty()) return cross;
  const std::size_t numRows = table.Rows.size();
  cross.NumLines = numRows - layout.FirstLine;

  bool missingSeen = false;
  for (std::size_t c = 0; c < layout.NumTraitColumns; ++c) {
    if (IsIdColumn(table.Rows[0][c])) {
      cross.Notes.push_back("column " + std::to_string(c + 1) + " (" + table.Rows[0][c] +
                            ") names the lines and is not imported as a trait");
      continue;
    }
    CrossTrait trait{table.Rows[0][c], {}};
    for (std::size_t r = layout.FirstLine; r < numRows; ++r) {
      std::string fault;
      trait.Values.push_back(PhenotypeToken(table.Rows[r][c], codes, fault));
      if (!fault.empty()) {
        cross.Fault = Place(r, c) + ": " + fault;
        return cross;
      }
    }
    missingSeen = missingSeen || std::find(trait.Values.begin(), trait.Values.end(), "NA") != trait.Values.end();
    if (const std::size_t k = FindMinusHundred(trait, missingSeen); k < trait.Values.size()) {
      cross.Fault = Place(layout.FirstLine + k, c) + ": the value " + trait.Values[k] +
                    " would be read as a missing value (-100 means missing until the first NA); give an earlier "
                    "trait a missing value or change the trait's scale";
      return cross;
    }
    cross.Traits.push_back(std::move(trait));
  }

  HeterozygoteCount heterozygotes;
  std::vector<std::string> monomorphic;
  for (std::size_t c = layout.NumTraitColumns; c < table.Rows[0].size(); ++c) {
    CrossMarker marker{table.Rows[0][c], table.Rows[1][c], cross.HasMap ? table.Rows[2][c] : "", {}};
    std::size_t markerHeterozygotes = 0;
    std::size_t firstRow = 0;
    for (std::size_t r = layout.FirstLine; r < numRows; ++r) {
      bool heterozygote = false;
      const char code = GenotypeCode(table.Rows[r][c], codes, heterozygote);
      if (code == 'Z') {
        cross.Fault = Place(r, c) + ": the genotype \"" + table.Rows[r][c] + "\" of marker " + marker.Name +
                      " is none of the codes (see --donor, --background, --heterozygote, --missing)";
        return cross;
      }
      if (heterozygote && markerHeterozygotes++ == 0) firstRow = r;
      marker.Codes += code;
    }
    if (markerHeterozygotes > 0) {
      heterozygotes.Total += markerHeterozygotes;
      heterozygotes.Markers.push_back(marker.Name + " (" + std::to_string(markerHeterozygotes) + " at " +
                                      Place(firstRow, c) + (markerHeterozygotes > 1 ? " and later)" : ")"));
    }
    if (marker.Codes.find('A') == std::string::npos || marker.Codes.find('B') == std::string::npos) {
      monomorphic.push_back(marker.Name);
      continue;
    }
    cross.Markers.push_back(std::move(marker));
  }

  if (heterozygotes.Total > 0 && !codes.HeterozygoteAsMissing) {
    cross.Fault = std::to_string(heterozygotes.Total) + " heterozygous calls in " +
                  std::to_string(heterozygotes.Markers.size()) + " markers:";
    constexpr std::size_t Shown = 5;
    for (std::size_t i = 0; i < std::min(heterozygotes.Markers.size(), Shown); ++i)
      cross.Fault += (i == 0 ? " " : "; ") + heterozygotes.Markers[i];
    if (heterozygotes.Markers.size() > Shown) cross.Fault += "; ...";
    cross.Fault +=
        ". The lines of this program are homozygous: give --heterozygote-missing to read these calls "
        "as missing genotypes";
    return cross;
  }
  if (heterozygotes.Total > 0)
    cross.Notes.push_back(std::to_string(heterozygotes.Total) + " heterozygous calls are read as missing genotypes");
  if (!monomorphic.empty()) {
    std::string note = std::to_string(monomorphic.size()) +
                       " markers without both homozygotes are left out (the program refuses them):";
    for (const std::string& name : monomorphic) note += " " + name;
    cross.Notes.push_back(note);
  }
  if (cross.Markers.empty()) cross.Fault = "no marker shows both homozygotes";
  return cross;
}

}  // namespace tov
