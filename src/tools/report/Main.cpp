// tov-report: run in the folder of a finished run, writes the HTML report
// OutputBase.html and tab-separated copies of the run's tables.
#include <cstdio>
#include <fstream>

#include "tools/report/MarkerAxis.h"
#include "tools/report/ReportPage.h"
#include "tools/report/TsvTables.h"

int main(int argc, char**) {
  if (argc > 1) {
    std::fputs("usage: tov-report (in the folder of a finished run)\n", stderr);
    return 2;
  }
  std::string fault;
  tov::RunTables run = tov::LoadRun(fault);
  if (!fault.empty()) {
    std::fprintf(stderr, "tov-report: %s\n", fault.c_str());
    return 2;
  }
  if (run.Mapping) run.Tables["peaks"] = tov::PeakTable(tov::FindPeaks(run, tov::BuildMarkerAxis(run)));
  const std::vector<std::string> tsvFiles = tov::WriteTsvTables(run, fault);
  const std::string page = run.Base + ".html";
  std::ofstream file(page);
  file << tov::ReportPage(run, tsvFiles);
  file.close();
  if (!file) fault += " cannot write " + page + ";";
  if (!fault.empty()) {
    std::fprintf(stderr, "tov-report:%s\n", fault.c_str());
    return 2;
  }
  std::printf("wrote %s and %zu tables (%s.*.tsv)\n", page.c_str(), tsvFiles.size(), run.Base.c_str());
  return 0;
}
