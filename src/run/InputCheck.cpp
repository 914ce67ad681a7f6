#include "run/InputCheck.h"

#include "input/ProjectInput.h"
#include <string>

#include "core/Log.h"
#include "core/Messages.h"
#include "core/RunData.h"
#include "text/Fatal.h"
#include "text/TextInput.h"

namespace tov {

namespace {

constexpr const char* CheckName = "DLL CheckErrorTOV";

// Opens the log unless the caller holds it open; true when this call
// opened it and so has to close it.
bool OpenLogForCheck() {
  TextOutput& log = LogFile();
  if (log.IsOpen()) return false;
  const bool opened = FileExists(LogFileName) ? log.Append(LogFileName) : log.Create(LogFileName);
  if (!opened) FatalRuntimeFailure(std::string("cannot open ") + LogFileName);
  return true;
}

}  // namespace

std::int32_t CheckInputFile(std::string_view name) {
  std::int32_t result = 0;
  const bool closeLog = OpenLogForCheck();
  RunData run;
  ReadProjectInput(run, name);
  if (run.StatusCode != 0) {
    result = run.StatusCode;
    ReportCheck(1101, CheckName);
  } else {
    ReportCheck(1102, CheckName);
  }
  ReleaseRunData(run);
  if (closeLog) LogFile().Close();
  return result;
}

}  // namespace tov
