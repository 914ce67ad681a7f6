#include "tools/import/CsvTable.h"

namespace tov {

namespace {

std::string_view TrimBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

}  // namespace

std::string_view CsvTable::Cell(std::size_t row, std::size_t column) const {
  if (row >= Rows.size() || column >= Rows[row].size()) return {};
  return Rows[row][column];
}

CsvTable ParseCsv(std::string_view text) {
  CsvTable table;
  std::vector<std::string> row;
  std::string field;
  bool quoted = false;    // the field began with a quote
  bool inQuotes = false;  // inside the quotes now
  std::size_t lineNumber = 1;
  auto endField = [&] {
    row.push_back(quoted ? field : std::string(TrimBlanks(field)));
    field.clear();
    quoted = false;
  };
  auto endRow = [&] {
    endField();
    // A line that holds nothing at all is not a row (a blank last line).
    if (!(row.size() == 1 && row[0].empty())) table.Rows.push_back(std::move(row));
    row.clear();
  };
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (inQuotes) {
      if (c == '"' && i + 1 < text.size() && text[i + 1] == '"') {
        field += '"';
        ++i;
      } else if (c == '"') {
        inQuotes = false;
      } else {
        if (c == '\n') ++lineNumber;
        field += c;
      }
    } else if (c == '"' && TrimBlanks(field).empty() && !quoted) {
      field.clear();
      quoted = inQuotes = true;
    } else if (c == ',') {
      endField();
    } else if (c == '\n' || (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n')) {
      if (c == '\r') ++i;
      endRow();
      ++lineNumber;
    } else if (quoted) {
      if (c != ' ' && c != '\t') {
        table.FaultRow = lineNumber;
        table.Fault = "text after the closing quote of a field";
        return table;
      }
    } else {
      field += c;
    }
  }
  if (inQuotes) {
    table.FaultRow = lineNumber;
    table.Fault = "a quote that is never closed";
    return table;
  }
  if (!field.empty() || !row.empty() || quoted) endRow();
  return table;
}

}  // namespace tov
