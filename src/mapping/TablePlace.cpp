#include "mapping/TablePlace.h"

namespace tov {

Row TablePlace(int trait, std::string_view traitName, int environment, int numEnvs) {
  Row row;
  row.Integer(trait, 12).Blank().Text(traitName, 19);
  if (environment == numEnvs + 1)
    row.Text("Mean", 12);
  else
    row.Integer(environment, 12);
  return row;
}

}  // namespace tov
