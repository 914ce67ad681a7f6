#pragma once
// The result tables of a run read back by their fixed columns, never by
// blanks: a value that fills its field touches its neighbour, and names may
// hold blanks.  A layout lists the fields of a row in order; a table whose
// columns follow the markers ends in a run of 12-column fields.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tov {

struct Field {
  const char* Title;  // nullptr for a one-blank gap
  std::size_t Width;
};

struct Layout {
  std::vector<Field> Fields;
  bool RestInTwelves = false;  // after the fields, 12-column fields to the end of the line
};

// A table as text: the titles and the fields of each row, without the
// blanks that aligned them.
struct TextTable {
  std::vector<std::string> Header;
  std::vector<std::vector<std::string>> Rows;

  // The index of the column of that title; Header.size() when there is none.
  std::size_t Column(std::string_view title) const;
};

// The fields of one line, trimmed; gaps are left out.
std::vector<std::string> SplitFixed(std::string_view line, const Layout& layout);

// The layouts of the tables of a run.
Layout MarkerTestLayout();   // .rsm .qsm .ric .qic
Layout PermutationLayout();  // .tsm .tic .tice
Layout PairTestLayout();     // .rice .qice
Layout TraitStatsLayout();   // the first table of .sta
Layout MarkerTableLayout();  // .mtp
Layout PowerLayout();        // .psm .pic
Layout StepModelLayout();    // a block of .stp
Layout CorrelationLayout();  // .coe

// A file whose first line is its heading, its rows up to the first empty
// line; the titles come from the layout where the heading is fixed, else
// from the heading line.
TextTable ReadFixedTable(const std::vector<std::string>& lines, const Layout& layout);

}  // namespace tov
