#include "run/OutputFiles.h"

#include "text/Fatal.h"
#include "text/Format.h"

namespace tov {

namespace {

// Every numeric column of the tables is 12 wide; the names have the widths
// of their texts, with a blank before them.
constexpr int NumberWidth = 12;
constexpr int TraitNameWidth = static_cast<int>(TraitNameLength);
constexpr int MarkerNameWidth = static_cast<int>(MarkerNameLength);

// "TraitID", "TraitName", "Environment": the first columns of the tables
// of mapping and permutation.
Row TraitColumns() {
  Row row;
  row.Text("TraitID", NumberWidth).Blank().Text("TraitName", TraitNameWidth).Text("Environment", NumberWidth);
  return row;
}

void Open(RunData& run, Unit unit, const char* extension) {
  const std::string path = std::string(TrimTrailing(run.OutputBase)) + extension;
  if (!run.Units[unit].Create(path)) FatalRuntimeFailure("cannot create " + path);
}

void Open(RunData& run, Unit unit, const char* extension, const std::string& heading) {
  Open(run, unit, extension);
  run.Units[unit].WriteLine(heading);
}

}  // namespace

std::string StatisticsHeading() {
  Row row;
  row.Text("TraitID", NumberWidth).Blank().Text("TraitName", TraitNameWidth);
  for (const char* title : {"SampleSize", "Mean", "Variance", "StdError", "Skewness", "Kurtosis", "Minimum", "Maximum",
                            "Range", "W-test", "P-value"})
    row.Text(title, NumberWidth);
  return row.Str();
}

std::string MarkerTestHeading() {
  Row row = TraitColumns();
  row.Text("MarkerID", NumberWidth).Blank().Text("MarkerName", MarkerNameWidth);
  for (const char* title : {"LOD", "PVE(%)", "Add", "M(QQ)", "M(qq)"}) row.Text(title, NumberWidth);
  return row.Str();
}

std::string PermutationHeading() { return TraitColumns().Text("Times", NumberWidth).Text("MaxLOD", NumberWidth).Str(); }

std::string PairTestHeading() {
  Row row = TraitColumns();
  row.Text("MarkerID1", NumberWidth).Blank().Text("MarkerName1", MarkerNameWidth);
  row.Text("MarkerID2", NumberWidth).Blank().Text("MarkerName2", MarkerNameWidth);
  for (const char* title : {"LODaa", "LODtotal", "PVEaa(%)", "PVEtotal(%)", "Add1", "Add2", "AddbyAdd", "M(Q1Q1Q2Q2)",
                            "M(Q1Q1q2q2)", "M(q1q1Q2Q2)", "M(q1q1q2q2)"})
    row.Text(title, NumberWidth);
  return row.Str();
}

void OpenOutputFiles(RunData& run) {
  // The marker reports write their own headings.
  Open(run, UnitCoe, ".coe");
  Open(run, UnitMtp, ".mtp");
  if (run.Indicator == 1) {
    Open(run, UnitSta, ".sta", StatisticsHeading());
    if (run.SMAIndicator == 1) {
      Open(run, UnitRsm, ".rsm", MarkerTestHeading());
      Open(run, UnitQsm, ".qsm", MarkerTestHeading());
    }
    if (run.SMAPermIndicator == 1) Open(run, UnitTsm, ".tsm", PermutationHeading());
    if (run.AddIndicator == 1 || run.EpiIndicator == 1) Open(run, UnitStp, ".stp");
    if (run.AddIndicator == 1) {
      Open(run, UnitRic, ".ric", MarkerTestHeading());
      Open(run, UnitQic, ".qic", MarkerTestHeading());
    }
    if (run.AddPermIndicator == 1) Open(run, UnitTic, ".tic", PermutationHeading());
    if (run.EpiIndicator == 1) {
      Open(run, UnitRice, ".rice", PairTestHeading());
      Open(run, UnitQice, ".qice", PairTestHeading());
    }
    if (run.EpiPermIndicator == 1) Open(run, UnitTice, ".tice", PermutationHeading());
  } else {
    // A simulation has no epistatic power file.
    if (run.SMAIndicator == 1) Open(run, UnitPsm, ".psm");
    if (run.AddIndicator == 1) {
      Open(run, UnitStp, ".stp");
      Open(run, UnitPic, ".pic");
    }
  }
}

void CloseOutputFiles(RunData& run) {
  // Closing a handle that has no file does nothing.
  for (const Unit unit : {UnitCoe, UnitMtp, UnitSta, UnitRsm, UnitQsm, UnitTsm, UnitStp, UnitRic, UnitQic, UnitTic,
                          UnitRice, UnitQice, UnitTice, UnitPsm, UnitPic, UnitPice})
    run.Units[unit].Close();
}

}  // namespace tov
