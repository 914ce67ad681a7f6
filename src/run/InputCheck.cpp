#include "run/InputCheck.h"

#include <new>
#include <string>

#include "input/ProjectInput.h"
#include "core/Log.h"
#include "core/Messages.h"
#include "core/RunData.h"
#include "text/Fatal.h"
#include "text/Format.h"
#include "text/TextInput.h"

namespace tov {

namespace {

constexpr const char* CheckName = "DLL CheckErrorTOV";

// Opens the log unless the caller holds it open; true when this call
// opened it and so has to close it.  A log that cannot be opened leaves
// the console alone to tell the outcome: the check never stops the calling
// program.
bool OpenLogForCheck() {
  TextOutput& log = LogFile();
  if (log.IsOpen()) return false;
  if (FileExists(LogFileName)) return log.Append(LogFileName);
  return log.Create(LogFileName);
}

// A file that cannot be read at all (no name, no such file, a folder, no
// permission) gets the run's code of a missing input file.
void ReadCheckedFile(RunData& run, std::string_view name) {
  const std::string fileName(TrimTrailing(name));
  TextInput input;
  if (fileName.empty() || !input.Open(fileName)) {
    run.StatusCode = 1008;
    ReportRun(run.StatusCode, fileName);
    return;
  }
  ReadProjectInput(run, input);
}

}  // namespace

std::int32_t CheckInputFile(std::string_view name) {
  // The calling program's own handler comes back at the end.
  const std::new_handler callersHandler = std::set_new_handler(FatalOutOfMemory);
  std::int32_t result = 0;
  const bool closeLog = OpenLogForCheck();
  RunData run;
  ReadCheckedFile(run, name);
  if (run.StatusCode != 0) {
    result = run.StatusCode;
    ReportCheck(1101, CheckName);
  } else {
    ReportCheck(1102, CheckName);
  }
  ReleaseRunData(run);
  if (closeLog) LogFile().Close();
  std::set_new_handler(callersHandler);
  return result;
}

}  // namespace tov
