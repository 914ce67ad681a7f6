#include "tools/report/Profiles.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

#include "tools/report/Svg.h"

namespace tov {

namespace {

struct Series {
  const char* All;          // the table of all markers
  const char* Significant;  // the table of the markers above the threshold
  const char* Permutation;
  const char* Label;
  const char* Color;
};

using PassKey = std::pair<std::string, std::string>;  // TraitID, Environment

std::vector<const std::vector<std::string>*> RowsOf(const TextTable* table, const PassKey& pass) {
  std::vector<const std::vector<std::string>*> rows;
  if (table == nullptr) return rows;
  for (const auto& row : table->Rows)
    if (row.size() > 7 && row[0] == pass.first && row[2] == pass.second) rows.push_back(&row);
  return rows;
}

std::string ChromosomeMarks(const MarkerAxis& axis, const Frame& frame) {
  std::string svg;
  for (std::size_t c = 0; c < axis.Chromosomes.size(); ++c) {
    const Chromosome& chromosome = axis.Chromosomes[c];
    if (axis.HasMap && c > 0) {
      const double x = frame.X((axis.Chromosomes[c - 1].End + chromosome.Start) / 2.0);
      svg += "<line x1=\"" + Pixels(x) + "\" x2=\"" + Pixels(x) + "\" y1=\"" + Pixels(frame.Top) + "\" y2=\"" +
             Pixels(frame.Height - frame.Bottom) + "\" class=\"chromosome\"/>\n";
    }
    const std::string label = axis.HasMap ? "Chr " + chromosome.Name : "MarkerID";
    svg += "<text x=\"" + Pixels(frame.X((chromosome.Start + chromosome.End) / 2.0)) + "\" y=\"" +
           Pixels(frame.Height - 8) + "\" class=\"xlabel\">" + Escape(label) + "</text>\n";
  }
  if (!axis.HasMap) {
    const double step = NiceStep(axis.Max - axis.Min);
    for (double id = step; id < axis.Max; id += step)
      svg += "<text x=\"" + Pixels(frame.X(id)) + "\" y=\"" + Pixels(frame.Height - frame.Bottom + 14) +
             "\" class=\"xtick\">" + Pixels(id) + "</text>\n";
  }
  return svg;
}

// The polyline of one series, broken at chromosome boundaries, and a dot
// with its numbers on each significant marker.
std::string SeriesDrawing(const std::vector<const std::vector<std::string>*>& rows,
                          const std::set<std::string>& significant, const MarkerAxis& axis, const Frame& frame,
                          const Series& series) {
  std::string svg, points;
  std::size_t chromosome = std::numeric_limits<std::size_t>::max();
  std::string lone;  // a dot for a chromosome of one marker, where no line shows
  auto flush = [&] {
    if (!points.empty())
      svg += "<polyline class=\"lod\" data-series=\"" + std::string(series.All) + "\" stroke=\"" + series.Color +
             "\" points=\"" + points + "\"/>\n" + lone;
    points.clear();
  };
  for (const auto* row : rows) {
    const int id = static_cast<int>(FieldNumber((*row)[3]));
    const double lod = FieldNumber((*row)[5]);
    if (!axis.X.count(id) || std::isnan(lod)) continue;
    if (axis.ChromosomeOf.at(id) != chromosome) flush();
    chromosome = axis.ChromosomeOf.at(id);
    const std::string x = Pixels(frame.X(axis.X.at(id))), y = Pixels(frame.Y(lod));
    lone =
        points.empty() ? "<circle cx=\"" + x + "\" cy=\"" + y + "\" r=\"1.5\" fill=\"" + series.Color + "\"/>\n" : "";
    points += (points.empty() ? "" : " ") + x + "," + y;
    if (significant.count((*row)[3]))
      svg += "<circle cx=\"" + x + "\" cy=\"" + y + "\" r=\"3.5\" fill=\"" + series.Color +
             "\" class=\"significant\" data-series=\"" + series.All + "\"><title>" + Escape((*row)[4]) + " (" +
             (*row)[3] + "): LOD " + (*row)[5] + ", Add " + (*row)[7] + ", PVE " + (*row)[6] + "%</title></circle>\n";
  }
  flush();
  return svg;
}

}  // namespace

double MethodThreshold(const RunTables& run, const char* permutationTable, float parValue, std::string& source) {
  if (const TextTable* permutation = run.Find(permutationTable)) {
    for (const auto& row : permutation->Rows)
      if (!row.empty() && row[0] == "Threshold" && row.size() > 4) {
        source = "permutation";
        return FieldNumber(row[4]);
      }
  }
  source = run.HaveParameters ? "PAR file" : "";
  return run.HaveParameters ? parValue : std::numeric_limits<double>::quiet_NaN();
}

std::string LodProfiles(const RunTables& run, const MarkerAxis& axis) {
  const Series allSeries[] = {{"rsm", "qsm", "tsm", "single marker", "#1f5fa8"},
                              {"ric", "qic", "tic", "additive (RSTEP-LRT)", "#c0392b"}};
  const float parThresholds[] = {run.SMALOD, run.AddLOD};
  std::vector<PassKey> passes;  // in the order of the tables
  std::map<PassKey, std::string> traitNames;
  for (const Series& series : allSeries)
    if (const TextTable* table = run.Find(series.All))
      for (const auto& row : table->Rows) {
        if (row.size() < 3) continue;
        const PassKey pass{row[0], row[2]};
        if (traitNames.emplace(pass, row[1]).second) passes.push_back(pass);
      }
  std::string html;
  for (const PassKey& pass : passes) {
    Frame frame;
    frame.XMin = axis.Min;
    frame.XMax = axis.Max;
    double top = 1.0;
    std::string thresholds, drawings;
    for (std::size_t s = 0; s < 2; ++s) {
      const Series& series = allSeries[s];
      const auto rows = RowsOf(run.Find(series.All), pass);
      if (rows.empty()) continue;
      for (const auto* row : rows)
        if (const double lod = FieldNumber((*row)[5]); lod > top) top = lod;
      std::string source;
      const double threshold = MethodThreshold(run, series.Permutation, parThresholds[s], source);
      if (!std::isnan(threshold)) top = std::max(top, threshold);
    }
    frame.YMax = top * 1.1;
    for (std::size_t s = 0; s < 2; ++s) {
      const Series& series = allSeries[s];
      const auto rows = RowsOf(run.Find(series.All), pass);
      if (rows.empty()) continue;
      std::set<std::string> significant;
      for (const auto* row : RowsOf(run.Find(series.Significant), pass)) significant.insert((*row)[3]);
      drawings += SeriesDrawing(rows, significant, axis, frame, series);
      std::string source;
      const double threshold = MethodThreshold(run, series.Permutation, parThresholds[s], source);
      if (!std::isnan(threshold))
        thresholds += frame.Threshold(
            threshold, std::string(series.Label) + " threshold " + Pixels(threshold) + " (" + source + ")",
            series.Color, s == 1);
    }
    const std::string environment = pass.second == "Mean" ? "mean over environments" : "environment " + pass.second;
    html += frame.Open("profile", "Trait " + pass.first + " " + traitNames[pass] + ", " + environment,
                       "data-trait=\"" + pass.first + "\" data-environment=\"" + pass.second + "\"") +
            frame.ValueAxis("LOD") + ChromosomeMarks(axis, frame) + thresholds + drawings + "</svg>\n";
  }
  if (html.empty()) return {};
  return "<h2>LOD profiles</h2>\n<p class=\"legend\"><span style=\"color:#1f5fa8\">&#9632; single marker</span> "
         "<span style=\"color:#c0392b\">&#9632; additive (RSTEP-LRT)</span>; dots mark the markers above the "
         "threshold (hover for their numbers).</p>\n" +
         html;
}

}  // namespace tov
