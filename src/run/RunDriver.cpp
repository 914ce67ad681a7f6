#include "run/RunDriver.h"

namespace tov {

int RunDriver() { return 0; }

}  // namespace tov
