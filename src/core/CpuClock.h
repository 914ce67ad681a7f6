#pragma once

namespace tov {

// Process CPU time, user plus kernel, in seconds.
float ProcessCpuSeconds();

}  // namespace tov
