#include "run/RunDriver.h"

#include <new>

#include "input/Parameters.h"
#include "input/ProjectInput.h"
#include "mapping/MappingDriver.h"
#include "markers/MarkerReports.h"
#include "markers/PreprocessMarkers.h"
#include "permutation/PermutationTest.h"
#include "phenotype/PhenotypeAnalysis.h"
#include "phenotype/TraitStatistics.h"
#include "core/CpuClock.h"
#include "core/Log.h"
#include "core/Messages.h"
#include "run/OutputFiles.h"
#include "simulation/PowerSimulation.h"
#include "core/RunData.h"
#include "text/Fatal.h"
#include "text/Format.h"
#include "text/FreeFormatRead.h"
#include "text/TextInput.h"

namespace tov {

namespace {

constexpr const char* ProgramName = "TOV.exe";
constexpr const char* RunControlFileName = "TOV.mio";

// Reads one file name of TOV.mio; false when the read fails.
bool ReadFileName(TextInput& runControl, std::string& name) {
  FreeFormatRead read(runControl);
  return read.Text(name, FileNameLength) && read.Finish();
}

// Reports a fault of the run control stage and ends the run.
int Stop(RunData& run, int code, std::string_view name) {
  run.StatusCode = code;
  ReportRun(run.StatusCode, name);
  LogFile().Close();
  return 0;
}

// A reader's fault: the reader has written its own message, the driver
// names the file, and the run data filled so far are released.
int StopAfterReader(RunData& run, int code, std::string_view name) {
  Stop(run, code, name);
  ReleaseRunData(run);
  return 0;
}

}  // namespace

std::string OutputBaseOf(std::string_view inputFileName) {
  const std::string_view name = TrimTrailing(inputFileName);
  return std::string(name.size() <= 4 ? std::string_view() : name.substr(0, name.size() - 4));
}

int RunDriver() {
  std::set_new_handler(FatalOutOfMemory);
  RunData run;
  if (!LogFile().Create(LogFileName)) FatalRuntimeFailure(std::string("cannot create ") + LogFileName);
  const float cpuStart = ProcessCpuSeconds();
  run.StatusCode = 1001;
  ReportRun(run.StatusCode, ProgramName);

  if (!FileExists(RunControlFileName)) return Stop(run, 1002, RunControlFileName);
  TextInput runControl;
  if (!runControl.Open(RunControlFileName)) FatalRuntimeFailure(std::string("cannot open ") + RunControlFileName);
  SkipComments(runControl);
  std::string inputFileName(FileNameLength, ' ');
  if (!ReadFileName(runControl, inputFileName) || TrimTrailing(inputFileName).empty())
    return Stop(run, 1005, "");
  run.OutputBase = OutputBaseOf(inputFileName);
  std::string parFileName(FileNameLength, ' ');
  if (!ReadFileName(runControl, parFileName)) return Stop(run, 1006, "");
  runControl.Close();
  run.StatusCode = 1007;
  ReportRun(run.StatusCode, RunControlFileName);

  const std::string inputName(TrimTrailing(inputFileName));
  const std::string parName(TrimTrailing(parFileName));
  if (!FileExists(inputName)) return Stop(run, 1008, inputName);
  if (!FileExists(parName)) return Stop(run, 1009, parName);

  ReadProjectInput(run, inputFileName);
  if (run.StatusCode != 0) return StopAfterReader(run, 1010, inputName);
  run.StatusCode = 1011;
  ReportRun(run.StatusCode, inputName);
  ReadParameters(run, parFileName);
  if (run.StatusCode != 0) return StopAfterReader(run, 1012, parName);
  run.StatusCode = 1013;
  ReportRun(run.StatusCode, parName);
  OpenOutputFiles(run);

  run.StatusCode = 1016;
  ReportRun(run.StatusCode, "");
  run.KeptMarker = PreprocessMarkers(run.MarkerName, run.MarkerType, run.ConditionNumber);
  run.NumMarkersKept = static_cast<std::int32_t>(run.KeptMarker.Size());
  WriteCorrelationReport(run.Units[UnitCoe], run.MarkerName, run.MarkerType, run.KeptMarker);
  WriteMarkerTable(run.Units[UnitMtp], run.MarkerName, run.MarkerType, run.KeptMarker);
  if (run.Indicator != 1) {
    run.StatusCode = 1019;
    ReportRun(run.StatusCode, "");
    PowerSimulation(run);
  } else {
    TraitStatistics(run, run.Units[UnitSta]);
    PhenotypeAnalysis(run.Units[UnitSta], run.PopulationSize, run.NumTraits, run.NumEnvs, run.NumReps, run.Phenotype,
                      run.PhenotypicVariance);
    run.StatusCode = 1017;
    ReportRun(run.StatusCode, "");
    PermutationTest(run);
    run.StatusCode = 1018;
    ReportRun(run.StatusCode, "");
    MappingDriver(run);
  }
  CloseOutputFiles(run);
  ReleaseRunData(run);

  const float cpuEnd = ProcessCpuSeconds();
  run.StatusCode = 1014;
  ReportRun(run.StatusCode, ProgramName);
  run.StatusCode = 1015;
  ReportRun(run.StatusCode, "", cpuStart, cpuEnd);
  LogFile().Close();
  return 0;
}

}  // namespace tov
