// The order of the 32-bit operations of the log density and of both scans,
// pinned bit for bit against reference/exact_scans.py on 300 lines with
// many decimals, missing genotypes, a monomorphic marker and a model with a
// marker pair.  The scans run markers side by side in lanes: the records
// must be those of the plain sequential test.

#include <gtest/gtest.h>

#include "mapping/AdditiveScan.h"
#include "mapping/LogDensity.h"
#include "mapping/SingleMarkerScan.h"
#include "support/BitCases.h"

namespace tov {
namespace {

using testing_support::ExpectSameBits;

const auto Cases = testing_support::ReadBitCases("mapping/data/exact_scans.txt");

std::vector<float> Records(const MarkerTestTable& table) {
  std::vector<float> values;
  for (int m = 1; m <= table.NumTests; ++m) {
    const MarkerTest& r = table.Test(m);
    EXPECT_EQ(r.MarkerIndex, m);
    values.insert(values.end(), {r.LOD(1), r.GroupMean(1), r.GroupMean(2), r.GroupFreq(1), r.GroupFreq(2)});
  }
  return values;
}

TEST(ExactBits, LogDensity10) {
  const std::vector<float> rows = Cases.at("log_density").Floats("density");
  std::vector<float> actual, expected;
  for (std::size_t i = 0; i < rows.size(); i += 4) {
    actual.push_back(LogDensity10(rows[i], rows[i + 1], rows[i + 2]));
    expected.push_back(rows[i + 3]);
  }
  ExpectSameBits(actual, expected, "LogDensity10");
}

TEST(ExactBits, SingleMarkerAndAdditiveScans) {
  const auto& c = Cases.at("scans");
  const std::vector<std::string>& codes = c.Tokens("codes");
  const std::vector<float> y = c.Floats("y");
  const int numMarkers = static_cast<int>(codes.size());
  const int numLines = static_cast<int>(y.size());
  Array<char, 2> genotype(numMarkers, numLines);
  for (int m = 1; m <= numMarkers; ++m)
    for (int l = 1; l <= numLines; ++l) genotype(m, l) = codes[m - 1][l - 1];
  MarkerTestTable table;
  table.NumTests = numMarkers;
  AllocMarkerTests(SingleMarkerMapping, table);
  SingleMarkerScan(numMarkers, numLines, genotype, y.data(), table);
  ExpectSameBits(Records(table), c.Floats("single"), "single-marker scan");

  StepModel model;
  const std::vector<int> terms = c.Ints("terms");
  model.NumTerms = static_cast<int>(terms.size());
  model.TermIndex = Array<std::int32_t, 1>(model.NumTerms);
  for (int k = 1; k <= model.NumTerms; ++k) model.TermIndex(k) = terms[k - 1];
  model.Coef = c.Floats("coef");
  std::vector<float> fit(numLines);
  FittedValues(numMarkers, numLines, genotype, model, fit.data());
  ExpectSameBits(fit, c.Floats("fit"), "fitted values");
  AdditiveScan(numMarkers, numLines, genotype, y.data(), model, table);
  ExpectSameBits(Records(table), c.Floats("additive"), "additive scan");
  FreeMarkerTests(table);
}

}  // namespace
}  // namespace tov
