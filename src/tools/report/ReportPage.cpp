#include "tools/report/ReportPage.h"

#include "tools/report/MarkerAxis.h"
#include "tools/report/Panels.h"
#include "tools/report/Profiles.h"
#include "tools/report/Svg.h"

namespace tov {

namespace {

constexpr const char* Style = R"(<style>
body { font-family: sans-serif; margin: 1.5em; color: #222; max-width: 1000px; }
h1 { font-size: 1.5em; } h2 { font-size: 1.2em; margin-top: 1.5em; border-bottom: 1px solid #ccc; }
table { border-collapse: collapse; font-size: 0.85em; margin: 0.5em 0; }
th, td { border: 1px solid #ccc; padding: 2px 6px; text-align: right; }
th { background: #f0f0f0; } td.text { text-align: left; }
svg { display: block; margin: 0.6em 0; }
svg .box { fill: none; stroke: #888; } svg .title { font-size: 13px; font-weight: bold; }
svg .tick { stroke: #888; } svg .ylabel { font-size: 10px; text-anchor: end; }
svg .xlabel, svg .xtick { font-size: 10px; text-anchor: middle; } svg .axis { font-size: 11px; text-anchor: middle; }
svg .chromosome { stroke: #bbb; stroke-dasharray: 2 2; }
svg .lod { fill: none; stroke-width: 1.5; } svg .threshold { stroke-dasharray: 6 3; stroke-width: 1; }
svg .tlabel { font-size: 10px; text-anchor: end; } svg .tlabel-left { font-size: 10px; }
svg .bar { fill: #7f9fc8; } svg .bar.qtl { fill: #c0392b; } svg .cell { stroke-width: 1; }
.legend { font-size: 0.9em; }
</style>
)";

std::string HtmlTable(const TextTable& table, std::size_t textColumns) {
  std::string html = "<table>\n<tr>";
  for (const std::string& title : table.Header) html += "<th>" + Escape(title) + "</th>";
  html += "</tr>\n";
  for (const auto& row : table.Rows) {
    html += "<tr>";
    for (std::size_t c = 0; c < row.size(); ++c)
      html += std::string(c < textColumns ? "<td class=\"text\">" : "<td>") + Escape(row[c]) + "</td>";
    html += "</tr>\n";
  }
  return html + "</table>\n";
}

}  // namespace

TextTable PeakTable(const std::vector<Peak>& peaks) {
  TextTable table{{"Method", "TraitID", "TraitName", "Environment", "Chromosome", "MarkerID", "MarkerName", "Position",
                   "LOD", "Add", "PVE(%)"},
                  {}};
  for (const Peak& p : peaks)
    table.Rows.push_back({p.Method, p.TraitID, p.TraitName, p.Environment, p.Chromosome, p.MarkerID, p.MarkerName,
                          p.Position, p.LOD, p.Add, p.PVE});
  return table;
}

std::string ReportPage(const RunTables& run, const std::vector<std::string>& tsvFiles) {
  const MarkerAxis axis = BuildMarkerAxis(run);
  std::string html =
      "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>tov report: " + Escape(run.Base) +
      "</title>\n" + Style + "</head>\n<body>\n<h1>Results of " + Escape(run.Base) +
      (run.Mapping ? " (QTL mapping)" : " (power simulation)") + "</h1>\n";
  html += std::string("<p>") +
          (axis.HasMap ? "Markers stand at their map positions (marker map " + Escape(run.Base) + ".map)."
                       : "Markers stand in MarkerID order (no marker map beside the project).") +
          "</p>\n";
  if (run.Mapping) {
    const TextTable peaks = PeakTable(FindPeaks(run, axis));
    html += "<h2>Peaks</h2>\n<p>For each method, trait, environment" +
            std::string(axis.HasMap ? " and chromosome" : "") +
            ", the marker of the highest LOD among those above the threshold.</p>\n";
    html += peaks.Rows.empty() ? "<p>No marker lies above its threshold.</p>\n" : HtmlTable(peaks, 7);
  }
  html += LodProfiles(run, axis) + PairHeatMaps(run) + PermutationHistograms(run) + PowerCharts(run);
  if (const TextTable* statistics = run.Find("sta")) {
    html +=
        "<h2>Trait statistics</h2>\n<p>Line means of each trait in each environment; the last row of a trait "
        "is across environments. StdError is the standard deviation of the line means.</p>\n" +
        HtmlTable(*statistics, 2);
  }
  html += "<h2>Tables for R, Python and spreadsheets</h2>\n<ul>\n";
  for (const std::string& name : tsvFiles) html += "<li>" + Escape(name) + "</li>\n";
  return html + "</ul>\n</body>\n</html>\n";
}

}  // namespace tov
