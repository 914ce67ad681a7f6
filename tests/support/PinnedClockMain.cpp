// tov with its clock pinned, for end-to-end cases whose tables depend on the
// random stream: the first argument is the reading, "YYYY/MM/DD HH:MM:SS.mmm",
// that every look at the clock returns; an optional second one the number of
// worker threads, for the cases that compare one thread with several.
// Otherwise the run is tov's own.

#include <cstdio>
#include <cstdlib>

#include "core/Clock.h"
#include "core/Parallel.h"
#include "run/RunDriver.h"

int main(int argc, char** argv) {
  tov::ClockReading reading;
  if (argc < 2 || argc > 3 || std::sscanf(argv[1], "%d/%d/%d %d:%d:%d.%d", &reading.Year, &reading.Month, &reading.Day,
                               &reading.Hour, &reading.Minute, &reading.Second, &reading.Millisecond) != 7) {
    std::fprintf(stderr, "usage: %s 'YYYY/MM/DD HH:MM:SS.mmm' [threads]\n", argv[0]);
    return 2;
  }
  tov::PinClock(reading);
  if (argc == 3) tov::SetWorkerThreads(std::atoi(argv[2]));
  return tov::RunDriver();
}
