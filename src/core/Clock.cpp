#include "core/Clock.h"

#include <chrono>
#include <ctime>
#include <optional>

namespace tov {
namespace {

std::optional<ClockReading>& PinnedReading() {
  static std::optional<ClockReading> reading;
  return reading;
}

}  // namespace

ClockReading ReadLocalClock() {
  if (PinnedReading()) return *PinnedReading();
  const auto now = std::chrono::system_clock::now();
  const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
  const auto millis = std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
  std::tm local{};
  localtime_r(&seconds, &local);
  return ClockReading{local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                      local.tm_min,        local.tm_sec,      static_cast<int>(millis)};
}

void PinClock(const ClockReading& reading) { PinnedReading() = reading; }

}  // namespace tov
