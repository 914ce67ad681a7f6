// The pair kernel and the epistatic scan against the plain four-group test
// of each pair, bit for bit, on every instruction set this machine supports
// and on one thread and two.

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "core/Parallel.h"
#include "mapping/EpistaticScan.h"
#include "mapping/FourGroupTest.h"
#include "mapping/MarkerCode.h"
#include "mapping/PairKernel.h"

namespace tov {
namespace {

struct Case {
  const char* Name;
  int Markers, Lines;
  int MissingPercent;   // share of 'X' codes
  int Monomorphic;      // markers every line shares, giving empty cells
  int Phenotype;        // 0 random, 1 constant, 2 a NaN line, 3 all NaN
  std::vector<int> Terms;
};

const Case Cases[] = {
    {"Random", 45, 37, 10, 0, 0, {}},
    {"ModelTerms", 70, 53, 5, 0, 0, {3, 33, 34, 70}},
    {"EmptyCells", 33, 20, 30, 3, 0, {2}},
    {"Constant", 35, 17, 0, 0, 1, {}},
    {"NaNLine", 40, 29, 10, 0, 2, {5}},
    {"AllNaN", 3, 4, 0, 0, 3, {}},
    {"OneMarker", 1, 5, 0, 0, 0, {}},
    {"TwoMarkers", 2, 1, 0, 0, 0, {}},
    {"ManyLines", 65, 301, 3, 1, 0, {64}},
};

struct Data {
  Array<char, 2> Genotype;
  std::vector<float> Y;
  StepModel Model;
};

Data DataOf(const Case& c, std::uint32_t seed) {
  std::mt19937 random(seed);
  Data d;
  d.Genotype.Allocate(c.Markers, c.Lines);
  for (int m = 1; m <= c.Markers; ++m)
    for (int l = 1; l <= c.Lines; ++l) {
      const int r = static_cast<int>(random() % 100);
      d.Genotype(m, l) = r < c.MissingPercent ? "X-a"[r % 3] : (m <= c.Monomorphic || r % 2 == 0) ? 'A' : 'B';
    }
  std::uniform_real_distribution<float> value(-3.0f, 7.0f);
  for (int l = 0; l < c.Lines; ++l) d.Y.push_back(c.Phenotype == 1 ? 2.7f : value(random));
  if (c.Phenotype == 2) d.Y[static_cast<std::size_t>(c.Lines / 2)] = std::numeric_limits<float>::quiet_NaN();
  if (c.Phenotype == 3) d.Y.assign(d.Y.size(), std::numeric_limits<float>::quiet_NaN());
  d.Model.NumTerms = static_cast<int>(c.Terms.size());
  d.Model.TermIndex.Allocate(d.Model.NumTerms);
  d.Model.Coef.push_back(1.5f);
  for (int k = 1; k <= d.Model.NumTerms; ++k) {
    d.Model.TermIndex(k) = c.Terms[static_cast<std::size_t>(k - 1)];
    d.Model.Coef.push_back(value(random) / 3.0f);
  }
  return d;
}

// The scan as stated, pair by pair: y less the fit, the terms of the two
// markers put back, the plain test on the two rows of codes.
std::vector<PairTest> PlainScan(const Case& c, const Data& d) {
  const auto term = [&](int k, int l) {
    return d.Model.Coef[k] * static_cast<float>(MarkerCode(d.Genotype(d.Model.TermIndex(k), l)));
  };
  std::vector<PairTest> records;
  for (int i = 1; i < c.Markers; ++i)
    for (int j = i + 1; j <= c.Markers; ++j) {
      std::vector<float> adj(d.Y);
      std::vector<char> codes1, codes2;
      for (int l = 1; l <= c.Lines; ++l) {
        float fit = 0.0f;
        for (int k = 1; k <= d.Model.NumTerms; ++k) fit = fit + term(k, l);
        adj[l - 1] = adj[l - 1] - fit;
        codes1.push_back(d.Genotype(i, l));
        codes2.push_back(d.Genotype(j, l));
      }
      for (int m : {i, j})
        for (int k = 1; k <= d.Model.NumTerms; ++k)
          if (d.Model.TermIndex(k) == m) {
            for (int l = 1; l <= c.Lines; ++l) adj[l - 1] = adj[l - 1] + term(k, l);
            break;
          }
      PairTest& record = records.emplace_back();
      record.Marker1 = i;
      record.Marker2 = j;
      FourGroupTest(c.Lines, codes1.data(), codes2.data(), adj.data(), record.LOD, record.CellMean, record.CellFreq);
    }
  return records;
}

// Whole records, flag and markers included, byte for byte.
void ExpectSameRecords(const std::vector<PairTest>& want, const PairTest* got, const std::string& what) {
  for (std::size_t p = 0; p < want.size(); ++p)
    ASSERT_EQ(0, std::memcmp(&want[p], &got[p], sizeof(PairTest)))
        << what << " pair " << want[p].Marker1 << "," << want[p].Marker2 << " against " << got[p].Marker1 << ","
        << got[p].Marker2;
}

TEST(PairKernel, EveryInstructionSetAgreesWithThePlainTestBitForBit) {
  for (const Case& c : Cases) {
    for (std::uint32_t seed : {1u, 2u}) {
      const Data d = DataOf(c, seed);
      const std::vector<PairTest> want = PlainScan(c, d);
      // Rows of an empty model, on every variant: the kernel as the
      // permutation test calls it.
      if (d.Model.NumTerms == 0) {
        const PairCodes codes = PairCodesOf(c.Markers, c.Lines, d.Genotype);
        for (PairKernelIsa isa : SupportedPairKernels()) {
          std::vector<PairTest> got(want.size());
          std::size_t at = 0;
          for (int i = 1; i < c.Markers; at += static_cast<std::size_t>(c.Markers - i), ++i)
            FourGroupRowWith(isa, codes, i, i + 1, c.Markers, d.Y.data(), nullptr, got.data() + at);
          ExpectSameRecords(want, got.data(), std::string(c.Name) + " isa " + std::to_string(static_cast<int>(isa)));
        }
      }
      for (int threads : {1, 2}) {
        SetWorkerThreads(threads);
        PairTestTable table;
        table.NumTests = NumPairs(c.Markers);
        AllocPairTests(EpistaticMapping, table);
        EpistaticScan(c.Markers, c.Lines, d.Genotype, d.Y.data(), d.Model, table);
        ASSERT_EQ(table.Test.Size(), want.size()) << c.Name;
        ExpectSameRecords(want, table.Test.Data(), std::string(c.Name) + " scan");
      }
      SetWorkerThreads(0);
    }
  }
}

}  // namespace
}  // namespace tov
