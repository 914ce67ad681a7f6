#include "tools/report/FixedColumns.h"

#include "text/Format.h"

namespace tov {

namespace {

constexpr std::size_t NumberWidth = 12;

Layout Build(std::initializer_list<Field> fields, bool rest = false) { return Layout{fields, rest}; }

}  // namespace

std::size_t TextTable::Column(std::string_view title) const {
  for (std::size_t c = 0; c < Header.size(); ++c)
    if (Header[c] == title) return c;
  return Header.size();
}

std::vector<std::string> SplitFixed(std::string_view line, const Layout& layout) {
  std::vector<std::string> fields;
  std::size_t at = 0;
  auto take = [&](std::size_t width) {
    const std::string_view piece = at < line.size() ? line.substr(at, width) : std::string_view();
    at += width;
    return std::string(TrimBoth(piece));
  };
  for (const Field& field : layout.Fields) {
    const std::string text = take(field.Width);
    if (field.Title != nullptr) fields.push_back(text);
  }
  while (layout.RestInTwelves && at < line.size()) fields.push_back(take(NumberWidth));
  return fields;
}

Layout MarkerTestLayout() {
  return Build({{"TraitID", 12},
                {nullptr, 1},
                {"TraitName", 19},
                {"Environment", 12},
                {"MarkerID", 12},
                {nullptr, 1},
                {"MarkerName", 35},
                {"LOD", 12},
                {"PVE(%)", 12},
                {"Add", 12},
                {"M(QQ)", 12},
                {"M(qq)", 12}});
}

Layout PermutationLayout() {
  return Build({{"TraitID", 12}, {nullptr, 1}, {"TraitName", 19}, {"Environment", 12}, {"Times", 12}, {"MaxLOD", 12}});
}

Layout PairTestLayout() {
  return Build({{"TraitID", 12},    {nullptr, 1},        {"TraitName", 19},   {"Environment", 12}, {"MarkerID1", 12},
                {nullptr, 1},       {"MarkerName1", 35}, {"MarkerID2", 12},   {nullptr, 1},        {"MarkerName2", 35},
                {"LODaa", 12},      {"LODtotal", 12},    {"PVEaa(%)", 12},    {"PVEtotal(%)", 12}, {"Add1", 12},
                {"Add2", 12},       {"AddbyAdd", 12},    {"M(Q1Q1Q2Q2)", 12}, {"M(Q1Q1q2q2)", 12}, {"M(q1q1Q2Q2)", 12},
                {"M(q1q1q2q2)", 12}});
}

Layout TraitStatsLayout() {
  return Build({{"TraitID", 12},
                {nullptr, 1},
                {"TraitName", 19},
                {"SampleSize", 12},
                {"Mean", 12},
                {"Variance", 12},
                {"StdError", 12},
                {"Skewness", 12},
                {"Kurtosis", 12},
                {"Minimum", 12},
                {"Maximum", 12},
                {"Range", 12},
                {"W-test", 12},
                {"P-value", 12}});
}

Layout MarkerTableLayout() {
  return Build({{"MarkerID", 12},
                {nullptr, 1},
                {"MarkerName", 35},
                {"Size(Donor)", 12},
                {"Size(Bkgrd)", 12},
                {"Missing", 12},
                {"Deleted", 12}});
}

Layout PowerLayout() { return Build({{"Simulation", 12}}, true); }

Layout StepModelLayout() {
  return Build({{"TraitID", 12}, {nullptr, 1}, {"TraitName", 19}, {"Environment", 12}}, true);
}

Layout CorrelationLayout() { return Build({{"MarkerID", 12}, {nullptr, 1}, {"MarkerName", 35}}, true); }

TextTable ReadFixedTable(const std::vector<std::string>& lines, const Layout& layout) {
  TextTable table;
  if (lines.empty()) return table;
  table.Header = SplitFixed(lines[0], layout);
  for (std::size_t i = 1; i < lines.size() && !lines[i].empty(); ++i)
    table.Rows.push_back(SplitFixed(lines[i], layout));
  return table;
}

}  // namespace tov
