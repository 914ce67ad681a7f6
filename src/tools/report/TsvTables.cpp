#include "tools/report/TsvTables.h"

#include <fstream>

namespace tov {

namespace {

void WriteRow(std::ofstream& file, const std::vector<std::string>& fields) {
  for (std::size_t i = 0; i < fields.size(); ++i) file << (i > 0 ? "\t" : "") << fields[i];
  file << '\n';
}

}  // namespace

std::vector<std::string> WriteTsvTables(const RunTables& run, std::string& fault) {
  std::vector<std::string> names;
  for (const auto& [name, table] : run.Tables) {
    const std::string path = run.Base + "." + name + ".tsv";
    std::ofstream file(path);
    WriteRow(file, table.Header);
    for (const auto& row : table.Rows) WriteRow(file, row);
    file.close();
    if (file) {
      names.push_back(path);
    } else {
      fault += " cannot write " + path + ";";
    }
  }
  return names;
}

}  // namespace tov
