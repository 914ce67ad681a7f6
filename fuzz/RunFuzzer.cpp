// A whole run on one input: the bytes up to the first NUL are the project
// input file, the rest is the PAR file.  The run control file names both,
// the clock stands still so that a finding replays exactly, and the work
// stays on one thread.  A run must end in its log, whatever the files
// hold; a crash, a sanitizer report, an exit or an allocation beyond the
// fuzzer's limit is a finding.  The numerical routines neither print nor
// stop here: a stop of their error policy ends the process by design, and
// their policy is process-wide, so each run starts from the same one.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "FuzzWorkspace.h"
#include "core/Clock.h"
#include "core/Parallel.h"
#include "input/Phenotypes.h"
#include "numerics/basic/ErrorPolicy.h"
#include "run/RunDriver.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tovfuzz::EnterWorkspace();
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const std::size_t split = bytes.find('\0');
  const std::string_view project = bytes.substr(0, split);
  const std::string_view par = split == std::string_view::npos ? std::string_view() : bytes.substr(split + 1);
  tovfuzz::WriteFile("TOV.mio", "study.txt\nstudy.par\n");
  tovfuzz::WriteFile("study.txt", project);
  tovfuzz::WriteFile("study.par", par);

  tov::PinClock(tov::ClockReading{2024, 1, 2, 3, 4, 5, 678});
  tov::SetWorkerThreads(1);
  // Each run is a process of its own in real use.
  tov::ClearPhenotypeMissingTokens();
  tov::ERSET(0, 0, 0);
  tov::RunDriver();
  return 0;
}
