#pragma once
// The local date and time to the millisecond: the log stamps its start and
// end with it and the random stream takes its first state from it.  Tests
// that compare the tables of a random run exactly pin it to one reading.

namespace tov {

struct ClockReading {
  int Year = 0, Month = 0, Day = 0, Hour = 0, Minute = 0, Second = 0, Millisecond = 0;
};

ClockReading ReadLocalClock();

// Every later reading returns this one.  Called before the run starts, by a
// test's own entry point only; the program itself never pins the clock.
void PinClock(const ClockReading& reading);

}  // namespace tov
