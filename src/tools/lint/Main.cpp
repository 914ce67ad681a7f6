// tov-lint: reads TOV.mio and the files it names as the program would, and
// tells what the program would accept silently but a user almost surely
// did not mean.  Changes nothing; exit status 1 when it warns.
#include <cstdio>

#include "core/RunData.h"
#include "input/Parameters.h"
#include "input/ProjectInput.h"
#include "text/TextInput.h"
#include "tools/lint/DataChecks.h"
#include "tools/lint/InputWalk.h"

namespace {

// The program's own verdict, its messages on the console (no log is open).
bool ReadAsTheProgram(tov::RunData& run, const tov::RunControl& names, tov::Findings& findings) {
  for (const std::string* name : {&names.InputFileName, &names.ParFileName})
    if (!tov::FileExists(*name)) {
      findings.Warn(*name, 0, "refused", "the file does not exist");
      return false;
    }
  tov::ReadProjectInput(run, names.InputFileName);
  const std::string& file = run.StatusCode == 0 ? names.ParFileName : names.InputFileName;
  if (run.StatusCode == 0) tov::ReadParameters(run, names.ParFileName);
  if (run.StatusCode == 0) return true;
  findings.Warn(file, 0, "refused",
                "the program stops at this input with the fault " + std::to_string(run.StatusCode) + " written above");
  return false;
}

}  // namespace

int main(int argc, char**) {
  if (argc > 1) {
    std::fputs("usage: tov-lint (in the folder of TOV.mio)\n", stderr);
    return 2;
  }
  tov::Findings findings;
  const tov::RunControl names = tov::WalkRunControl(findings);
  if (!names.InputFileName.empty()) {
    const tov::ProjectShape shape = tov::WalkProjectInput(names.InputFileName, findings);
    tov::CheckCutNames(names.InputFileName, shape.MarkerNames, tov::MarkerNameLength, "marker", findings);
    tov::CheckCutNames(names.InputFileName, shape.TraitNames, tov::TraitNameLength, "trait", findings);
    if (shape.Indicator != 0) tov::WalkParameters(names.ParFileName, shape.Indicator == 1, findings);
    tov::RunData run;
    if (ReadAsTheProgram(run, names, findings)) {
      tov::CheckPhenotypeValues(run, names.InputFileName, findings);
      tov::CheckMarkers(run, names.InputFileName, names.ParFileName, findings);
    }
  }
  findings.Close();
  return findings.HasWarnings() ? 1 : 0;
}
