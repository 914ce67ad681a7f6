#include "phenotype/LineMeans.h"

#include <gtest/gtest.h>

#include "phenotype/PhenotypeSlices.h"

namespace tov {
namespace {

TEST(LineMeans, AddsReplicationsInOrderAndDividesByTheirNumber) {
  Array<float, 2> values(2, 3);
  // Line 1: (1 + 1e8) - 1e8 = 0 in 32 bits (numpy.float32); the reverse
  // order would give 1/3.  Line 2: (1 + 2 + 4) / 3.
  values(1, 1) = 1.0f, values(1, 2) = 1e8f, values(1, 3) = -1e8f;
  values(2, 1) = 1.0f, values(2, 2) = 2.0f, values(2, 3) = 4.0f;
  const Array<float, 1> means = LineMeans(2, 3, values);
  ASSERT_EQ(means.Size(), 2u);
  EXPECT_EQ(means(1), 0.0f);
  EXPECT_EQ(means(2), 7.0f / 3.0f);
}

TEST(LineMeans, TheTwoAcrossEnvironmentOrdersDiffer) {
  // Cells (e1,r1) = 1e8, (e2,r1) = 1, (e1,r2) = -1e8, (e2,r2) = 0.
  // Replications outer: ((1e8 + 1) - 1e8) + 0 = 0, then / 4.
  // Environments outer: ((1e8 - 1e8) + 1) + 0 = 1, then / 4 = 0.25.
  // Both checked with numpy.float32.
  Array<float, 3> values(1, 2, 2);
  values(1, 1, 1) = 1e8f, values(1, 2, 1) = 1.0f, values(1, 1, 2) = -1e8f, values(1, 2, 2) = 0.0f;
  EXPECT_EQ(LineMeansAcrossEnvs(1, 2, 2, values, AcrossEnvsOrder::ReplicationsOuter)(1), 0.0f);
  EXPECT_EQ(LineMeansAcrossEnvs(1, 2, 2, values, AcrossEnvsOrder::EnvironmentsOuter)(1), 0.25f);
}

TEST(LineMeans, AcrossEnvironmentsDividesByAllCells) {
  Array<float, 3> values(1, 3, 2);
  float v = 1.0f;
  for (float& cell : values) cell = v++;  // 1..6
  EXPECT_EQ(LineMeansAcrossEnvs(1, 3, 2, values, AcrossEnvsOrder::ReplicationsOuter)(1), 3.5f);
  EXPECT_EQ(LineMeansAcrossEnvs(0, 3, 2, Array<float, 3>(0, 3, 2), AcrossEnvsOrder::EnvironmentsOuter).Size(), 0u);
}

TEST(PhenotypeSlices, PickTheTraitsCellsOfEachLine) {
  // Each cell holds its own subscripts as digits: line, trait, env, rep.
  Array<float, 4> phenotype(3, 2, 2, 2);
  for (int i = 1; i <= 3; ++i)
    for (int t = 1; t <= 2; ++t)
      for (int e = 1; e <= 2; ++e)
        for (int r = 1; r <= 2; ++r) phenotype(i, t, e, r) = static_cast<float>(1000 * i + 100 * t + 10 * e + r);
  const Array<float, 2> slice = TraitEnvSlice(phenotype, 2, 1);
  ASSERT_EQ(slice.Extent(1), 3);
  ASSERT_EQ(slice.Extent(2), 2);
  EXPECT_EQ(slice(3, 2), 3212.0f);
  EXPECT_EQ(slice(1, 1), 1211.0f);
  const Array<float, 3> cube = TraitSlice(phenotype, 1);
  ASSERT_EQ(cube.Extent(2), 2);
  EXPECT_EQ(cube(2, 2, 1), 2121.0f);
  EXPECT_EQ(cube(3, 1, 2), 3112.0f);
}

}  // namespace
}  // namespace tov
