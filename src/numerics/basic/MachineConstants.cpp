#include <limits>

#include "numerics/basic/Basic.h"
#include "numerics/basic/ErrorPolicy.h"

namespace tov {

float AMACH(int i) {
  using Limits = std::numeric_limits<float>;
  switch (i) {
    case 1: return Limits::min();
    case 2: return Limits::max();
    case 3: return 0x1p-24f;
    case 4: return 0x1p-23f;
    case 5: return 0.30103000f;  // log10(2) rounded to float
    case 6: return Limits::quiet_NaN();
    case 7: return Limits::infinity();
    case 8: return -Limits::infinity();
    default:
      RaiseError(SeverityTerminal, "AMACH",
                 FillMessage("I = %(I1).  I must be greater than or equal to 1 and less than or equal to 8.", {i}));
      return Limits::quiet_NaN();
  }
}

}  // namespace tov
