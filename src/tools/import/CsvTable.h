#pragma once
// A comma-separated table as a spreadsheet or R writes it: fields separated
// by commas, a field in double quotes may hold commas, line ends and doubled
// quotes, and lines end in LF or CR LF.  Fields keep their text as written,
// less the quotes and the blanks around an unquoted field.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tov {

struct CsvTable {
  std::vector<std::vector<std::string>> Rows;  // Rows[r][c], 0-based
  // Where the parse failed (1-based row of the file), 0 when it did not,
  // and why.
  std::size_t FaultRow = 0;
  std::string Fault;

  // The field, or an empty text where the row is shorter.
  std::string_view Cell(std::size_t row, std::size_t column) const;
};

CsvTable ParseCsv(std::string_view text);

}  // namespace tov
