#include "core/CpuClock.h"

#include <ctime>

namespace tov {

float ProcessCpuSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<float>(static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9);
}

}  // namespace tov
