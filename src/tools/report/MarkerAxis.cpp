#include "tools/report/MarkerAxis.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "text/FreeFormatRead.h"

namespace tov {

double FieldNumber(const std::string& field) {
  float value = 0.0f;
  return ParseReal(field, value) ? value : std::numeric_limits<double>::quiet_NaN();
}

MarkerAxis BuildMarkerAxis(const RunTables& run) {
  MarkerAxis axis;
  const TextTable* markers = run.Find("mtp");
  if (markers == nullptr) return axis;
  std::vector<int> ids;
  for (const auto& row : markers->Rows) {
    const int id = static_cast<int>(FieldNumber(row[0]));
    ids.push_back(id);
    axis.Name[id] = row.size() > 1 ? row[1] : "";
  }
  axis.HasMap = !run.Map.empty() && std::all_of(ids.begin(), ids.end(), [&](int id) { return run.Map.count(id); });
  if (!axis.HasMap) {
    axis.Chromosomes.push_back({"", 1.0, static_cast<double>(ids.size())});
    for (const int id : ids) {
      axis.X[id] = id;
      axis.ChromosomeOf[id] = 0;
    }
    axis.Min = 0.5;
    axis.Max = ids.size() + 0.5;
    return axis;
  }
  // Chromosomes in the order of their first marker; each spans its
  // positions, and a gap of a twentieth of the longest stands between.
  std::map<std::string, std::size_t> index;
  std::vector<std::pair<double, double>> span;
  for (const int id : ids) {
    const MapPlace& place = run.Map.at(id);
    const auto [at, added] = index.emplace(place.Chromosome, span.size());
    if (added) span.push_back({place.Position, place.Position});
    auto& [low, high] = span[at->second];
    low = std::min(low, place.Position);
    high = std::max(high, place.Position);
    axis.ChromosomeOf[id] = at->second;
  }
  double longest = 1.0;
  for (const auto& [low, high] : span) longest = std::max(longest, high - low);
  double offset = 0.0;
  axis.Chromosomes.resize(span.size());
  for (const auto& [name, i] : index) axis.Chromosomes[i].Name = name;
  for (std::size_t i = 0; i < span.size(); ++i) {
    axis.Chromosomes[i].Start = offset;
    axis.Chromosomes[i].End = offset + (span[i].second - span[i].first);
    offset = axis.Chromosomes[i].End + longest / 20.0;
  }
  for (const int id : ids) {
    const std::size_t c = axis.ChromosomeOf[id];
    axis.X[id] = axis.Chromosomes[c].Start + run.Map.at(id).Position - span[c].first;
  }
  axis.Min = -longest / 40.0;
  axis.Max = axis.Chromosomes.back().End + longest / 40.0;
  return axis;
}

}  // namespace tov
