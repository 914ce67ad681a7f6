#include "tools/report/Peaks.h"

#include <cstdio>
#include <map>
#include <tuple>

namespace tov {

std::vector<Peak> FindPeaks(const RunTables& run, const MarkerAxis& axis) {
  std::vector<Peak> peaks;
  const std::pair<const char*, const char*> methods[] = {{"qsm", "single marker"}, {"qic", "additive"}};
  for (const auto& [name, method] : methods) {
    const TextTable* table = run.Find(name);
    if (table == nullptr) continue;
    // One peak per trait, environment and chromosome, in the order met.
    std::map<std::tuple<std::string, std::string, std::size_t>, std::size_t> peakOf;
    for (const auto& row : table->Rows) {
      if (row.size() < 8) continue;
      const int id = static_cast<int>(FieldNumber(row[3]));
      const std::size_t chromosome = axis.ChromosomeOf.count(id) ? axis.ChromosomeOf.at(id) : 0;
      const auto key = std::make_tuple(row[0], row[2], chromosome);
      const auto found = peakOf.find(key);
      if (found != peakOf.end() && !(FieldNumber(row[5]) > FieldNumber(peaks[found->second].LOD))) continue;
      std::string position = "";
      if (axis.HasMap) {
        char text[32];
        std::snprintf(text, sizeof text, "%g", run.Map.at(id).Position);
        position = text;
      }
      Peak peak{method,   row[0], row[1], row[2], axis.HasMap ? axis.Chromosomes[chromosome].Name : "", row[3], row[4],
                position, row[5], row[7], row[6]};
      if (found == peakOf.end()) {
        peakOf[key] = peaks.size();
        peaks.push_back(peak);
      } else {
        peaks[found->second] = peak;
      }
    }
  }
  return peaks;
}

}  // namespace tov
