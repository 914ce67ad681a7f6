// tov with its clock pinned, for end-to-end cases whose tables depend on the
// random stream: the one argument is the reading, "YYYY/MM/DD HH:MM:SS.mmm",
// that every look at the clock returns.  Otherwise the run is tov's own.

#include <cstdio>

#include "core/Clock.h"
#include "run/RunDriver.h"

int main(int argc, char** argv) {
  tov::ClockReading reading;
  if (argc != 2 || std::sscanf(argv[1], "%d/%d/%d %d:%d:%d.%d", &reading.Year, &reading.Month, &reading.Day,
                               &reading.Hour, &reading.Minute, &reading.Second, &reading.Millisecond) != 7) {
    std::fprintf(stderr, "usage: %s 'YYYY/MM/DD HH:MM:SS.mmm'\n", argv[0]);
    return 2;
  }
  tov::PinClock(reading);
  return tov::RunDriver();
}
