#include "mapping/StepModelTable.h"

#include "mapping/TablePlace.h"

namespace tov {

void WriteStepModel(TextOutput& unit, const RunData& run, int trait, std::string_view traitName, int environment,
                    const StepModel& model) {
  Row heading;
  heading.Text("TraitID", 12).Blank().Text("TraitName", 19).Text("Environment", 12);
  for (int k = 1; k <= model.NumTerms; ++k) heading.Integer(run.KeptMarker(model.TermIndex(k)), 12);
  heading.Text("Intercept", 12).Text("R-square", 12);

  Row values = TablePlace(trait, traitName, environment, run.NumEnvs);
  for (int k = 1; k <= model.NumTerms; ++k) values.Fixed(model.Coef[static_cast<std::size_t>(k)], 12, 4);
  values.Fixed(model.Coef[0], 12, 4).Fixed(model.AdjRSquare, 12, 4);

  unit.WriteLine(heading.Str());
  unit.WriteLine(values.Str());
}

}  // namespace tov
