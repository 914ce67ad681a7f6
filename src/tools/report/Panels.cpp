#include "tools/report/Panels.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "tools/report/Profiles.h"
#include "tools/report/Svg.h"

namespace tov {

namespace {

// White to dark red over 0 to 1.
std::string Heat(double share) {
  const double s = std::clamp(share, 0.0, 1.0);
  const int green = static_cast<int>(255 - 225 * s), red = static_cast<int>(255 - 80 * s);
  return "rgb(" + std::to_string(red) + "," + std::to_string(green) + "," + std::to_string(green) + ")";
}

std::string Rect(double x, double y, double width, double height, const std::string& attributes) {
  return "<rect x=\"" + Pixels(x) + "\" y=\"" + Pixels(y) + "\" width=\"" + Pixels(width) + "\" height=\"" +
         Pixels(height) + "\" " + attributes;
}

}  // namespace

std::string PairHeatMaps(const RunTables& run) {
  const TextTable* pairs = run.Find("rice");
  const TextTable* markers = run.Find("mtp");
  if (pairs == nullptr || pairs->Rows.empty() || markers == nullptr) return {};
  // Cells in the order of the kept markers; the pair (i, j) with i < j
  // stands in column i, row j.
  std::map<std::string, std::size_t> place;  // MarkerID of a kept marker -> its index
  for (const auto& row : markers->Rows)
    if (row.size() > 5 && row[5] == "0") place.emplace(row[0], place.size());
  std::set<std::string> significant;
  if (const TextTable* selected = run.Find("qice"))
    for (const auto& row : selected->Rows)
      if (row.size() > 5) significant.insert(row[0] + "/" + row[2] + "/" + row[3] + "/" + row[5]);
  std::map<std::pair<std::string, std::string>, std::vector<const std::vector<std::string>*>> passes;
  std::vector<std::pair<std::string, std::string>> order;
  for (const auto& row : pairs->Rows) {
    if (row.size() < 7) continue;
    auto& list = passes[{row[0], row[2]}];
    if (list.empty()) order.push_back({row[0], row[2]});
    list.push_back(&row);
  }
  std::string html =
      "<h2>Epistasis: LODaa over marker pairs</h2>\n<p class=\"legend\">One cell for each pair of "
      "kept markers (MarkerIDs on the axes), from white (0) to dark red (the largest LODaa); a black "
      "frame marks a pair above the threshold.</p>\n";
  const double cell = std::clamp(600.0 / std::max<std::size_t>(place.size(), 1), 2.0, 24.0);
  for (const auto& pass : order) {
    double top = 0.0;
    for (const auto* row : passes[pass]) top = std::max(top, FieldNumber((*row)[7]));
    Frame frame;
    frame.Left = 60.0;
    frame.Width = std::max(frame.Left + cell * place.size() + 20.0, 500.0);
    frame.Height = frame.Top + cell * place.size() + 30.0;
    frame.Bottom = 30.0;
    frame.YMax = top;
    std::string svg = frame.Open("heatmap", "Trait " + pass.first + " " + (*passes[pass].front())[1] +
                                                ", environment " + pass.second + ": LODaa up to " + Pixels(top));
    for (const auto* row : passes[pass]) {
      const auto first = place.find((*row)[3]), second = place.find((*row)[5]);
      if (first == place.end() || second == place.end()) continue;
      const double lod = FieldNumber((*row)[7]);
      const bool marked = significant.count(pass.first + "/" + pass.second + "/" + (*row)[3] + "/" + (*row)[5]) > 0;
      svg += Rect(frame.Left + cell * first->second, frame.Top + cell * second->second, cell, cell,
                  "fill=\"" + Heat(top > 0.0 ? lod / top : 0.0) + "\"" +
                      (marked ? " stroke=\"black\" class=\"cell significant\"" : " class=\"cell\"") + " data-lod=\"" +
                      (*row)[7] + "\"><title>" + Escape((*row)[4]) + " x " + Escape((*row)[6]) + ": LODaa " +
                      (*row)[7] + "</title></rect>\n");
    }
    if (cell >= 10.0)
      for (const auto& [id, i] : place)
        svg += "<text x=\"" + Pixels(frame.Left - 4) + "\" y=\"" + Pixels(frame.Top + cell * (i + 0.75)) +
               "\" class=\"ylabel\">" + Escape(id) + "</text><text x=\"" + Pixels(frame.Left + cell * (i + 0.5)) +
               "\" y=\"" + Pixels(frame.Top + cell * place.size() + 12) + "\" class=\"xtick\">" + Escape(id) +
               "</text>\n";
    html += svg + "</svg>\n";
  }
  return html;
}

std::string PermutationHistograms(const RunTables& run) {
  const std::pair<const char*, const char*> methods[] = {
      {"tsm", "single marker"}, {"tic", "additive (RSTEP-LRT)"}, {"tice", "epistatic (RSTEP-LRT)"}};
  std::string html;
  for (const auto& [name, label] : methods) {
    const TextTable* table = run.Find(name);
    if (table == nullptr) continue;
    std::vector<double> maxima;
    double threshold = std::nan("");
    for (const auto& row : table->Rows) {
      if (row.size() < 5) continue;
      if (row[0] == "Threshold") {
        threshold = FieldNumber(row[4]);
      } else if (const double value = FieldNumber(row[4]); !std::isnan(value)) {
        maxima.push_back(value);
      }
    }
    if (maxima.empty()) continue;
    constexpr int NumBins = 20;
    const double low =
        std::min(*std::min_element(maxima.begin(), maxima.end()), std::isnan(threshold) ? 1e300 : threshold);
    const double high =
        std::max(*std::max_element(maxima.begin(), maxima.end()), std::isnan(threshold) ? -1e300 : threshold);
    const double width = high > low ? (high - low) / NumBins : 1.0;
    std::vector<int> counts(NumBins, 0);
    for (const double value : maxima) counts[std::min(NumBins - 1, static_cast<int>((value - low) / width))]++;
    Frame frame;
    frame.XMin = low;
    frame.XMax = low + width * NumBins;
    frame.YMax = *std::max_element(counts.begin(), counts.end()) * 1.1;
    std::string svg = frame.Open("histogram", std::string("Permutation maxima, ") + label + ": " +
                                                  std::to_string(maxima.size()) + " shuffles") +
                      frame.ValueAxis("shuffles");
    for (int b = 0; b < NumBins; ++b)
      svg +=
          Rect(frame.X(low + b * width), frame.Y(counts[b]), frame.X(low + width) - frame.X(low),
               frame.Y(0) - frame.Y(counts[b]), "class=\"bar\" data-count=\"" + std::to_string(counts[b]) + "\"/>\n");
    for (double x = std::ceil(low / NiceStep(high - low)) * NiceStep(high - low); x <= frame.XMax;
         x += NiceStep(high - low))
      svg += "<text x=\"" + Pixels(frame.X(x)) + "\" y=\"" + Pixels(frame.Height - frame.Bottom + 14) +
             "\" class=\"xtick\">" + Pixels(x) + "</text>\n";
    svg += "<text x=\"" + Pixels(frame.Width / 2) + "\" y=\"" + Pixels(frame.Height - 8) +
           "\" class=\"xlabel\">largest LOD of a shuffle</text>\n";
    if (!std::isnan(threshold))
      svg += "<line x1=\"" + Pixels(frame.X(threshold)) + "\" x2=\"" + Pixels(frame.X(threshold)) + "\" y1=\"" +
             Pixels(frame.Top) + "\" y2=\"" + Pixels(frame.Height - frame.Bottom) +
             "\" class=\"threshold\" stroke=\"#c0392b\" data-value=\"" + Pixels(threshold) + "\"/><text x=\"" +
             Pixels(frame.X(threshold) + 4) + "\" y=\"" + Pixels(frame.Top + 14) +
             "\" class=\"tlabel-left\" fill=\"#c0392b\">threshold " + Pixels(threshold) + "</text>\n";
    html += svg + "</svg>\n";
  }
  return html.empty() ? html : "<h2>Permutation tests</h2>\n" + html;
}

std::string PowerCharts(const RunTables& run) {
  const std::pair<const char*, const char*> methods[] = {{"psm", "single marker"}, {"pic", "additive (RSTEP-LRT)"}};
  std::string html;
  for (const auto& [name, label] : methods) {
    const TextTable* table = run.Find(name);
    if (table == nullptr || table->Header.size() < 2) continue;
    const std::vector<std::string>* power = nullptr;
    const std::vector<std::string>* truth = nullptr;
    for (const auto& row : table->Rows) {
      if (!row.empty() && row[0] == "Power(%)") power = &row;
      if (!row.empty() && row[0] == "TrueAdd") truth = &row;
    }
    if (power == nullptr) continue;
    const std::size_t count = table->Header.size() - 1;
    Frame frame;
    frame.XMin = 0.0;
    frame.XMax = static_cast<double>(count);
    frame.YMax = 100.0;
    std::string svg = frame.Open("power", std::string("Power per marker, ") + label + " (red: a QTL on the marker)") +
                      frame.ValueAxis("power (%)");
    const double step = NiceStep(static_cast<double>(count));
    for (std::size_t j = 1; j <= count && j < power->size(); ++j) {
      const double value = FieldNumber((*power)[j]);
      const bool qtl = truth != nullptr && j < truth->size() && FieldNumber((*truth)[j]) != 0.0;
      svg += Rect(frame.X(j - 1.0) + 0.5, frame.Y(std::isnan(value) ? 0.0 : value),
                  std::max(frame.X(1.0) - frame.X(0.0) - 1.0, 0.5),
                  frame.Y(0.0) - frame.Y(std::isnan(value) ? 0.0 : value),
                  std::string("class=\"bar") + (qtl ? " qtl\"" : "\"") + " data-power=\"" + (*power)[j] +
                      "\"><title>marker " + table->Header[j] + ": " + (*power)[j] + "%</title></rect>\n");
      if (std::fmod(static_cast<double>(j), step) == 0.0)
        svg += "<text x=\"" + Pixels(frame.X(j - 0.5)) + "\" y=\"" + Pixels(frame.Height - frame.Bottom + 14) +
               "\" class=\"xtick\">" + Escape(table->Header[j]) + "</text>\n";
    }
    html += svg + "</svg>\n";
  }
  return html.empty() ? html : "<h2>Power of the simulation</h2>\n" + html;
}

}  // namespace tov
