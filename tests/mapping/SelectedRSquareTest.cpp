// R-square of the flagged markers.  Expected values are computed here in 64
// bits from the closed forms of simple regression: with one regressor R2 is
// the squared correlation r2; when the stepwise branch admits a single
// regressor, its matrix of variances by N - 1 and covariances by N makes R2
// equal r2 ((N - 1) / N)^2.

#include "mapping/SelectedRSquare.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace tov {
namespace {

constexpr int N = 60;

double Code(char c) { return c == 'A' ? 1.0 : c == 'B' ? -1.0 : 0.0; }

double SquaredCorrelation(const Array<char, 2>& genotype, int m, const std::vector<float>& y) {
  double sx = 0, sy = 0;
  for (int l = 1; l <= N; ++l) sx += Code(genotype(m, l)), sy += y[static_cast<std::size_t>(l - 1)];
  const double mx = sx / N, my = sy / N;
  double sxy = 0, sxx = 0, syy = 0;
  for (int l = 1; l <= N; ++l) {
    const double dx = Code(genotype(m, l)) - mx, dy = y[static_cast<std::size_t>(l - 1)] - my;
    sxy += dx * dy, sxx += dx * dx, syy += dy * dy;
  }
  return sxy * sxy / (sxx * syy);
}

// Marker 1 carries the effect on alternate lines; markers 2 to 4 are typed
// at two lines each, one 'A' and one 'B', on lines with equal values, so
// they are orthogonal to marker 1 and to y and their variances are tiny;
// marker 5 is noise.
struct Data {
  Array<char, 2> Genotype{5, N};
  std::vector<float> Y;
  MarkerTestTable Table;
  Data() {
    for (int l = 1; l <= N; ++l) {
      Genotype(1, l) = l % 2 == 1 ? 'A' : 'B';
      for (int m = 2; m <= 4; ++m) Genotype(m, l) = 'X';
      Genotype(5, l) = (l * 7) % 5 < 2 ? 'A' : 'B';
      const bool quiet = l <= 11 && l % 2 == 1;
      Y.push_back(10.0f + 2.0f * static_cast<float>(Code(Genotype(1, l))) +
                  (quiet ? 0.0f : 1.5f * std::sin(static_cast<float>(l))));
    }
    Genotype(2, 1) = 'A', Genotype(2, 3) = 'B';
    Genotype(3, 5) = 'A', Genotype(3, 7) = 'B';
    Genotype(4, 9) = 'A', Genotype(4, 11) = 'B';
    Table.NumTests = 5;
    AllocMarkerTests(SingleMarkerMapping, Table);
  }
  float RSquare() { return SelectedRSquare(N, Genotype, Y.data(), Table); }
};

TEST(SelectedRSquare, NoFlaggedMarkerGivesZero) {
  Data data;
  EXPECT_EQ(data.RSquare(), 0.0f);
}

TEST(SelectedRSquare, LeastSquaresWhenTheDeterminantIsLarge) {
  Data data;
  data.Table.Test(1).Significant = LogicalTrue;
  const double r2 = SquaredCorrelation(data.Genotype, 1, data.Y);
  EXPECT_NEAR(data.RSquare(), r2, 2e-6);
  // Marker 1 and the noise marker: the fit can only improve.
  data.Table.Test(5).Significant = LogicalTrue;
  EXPECT_GE(data.RSquare(), static_cast<float>(r2) - 2e-6f);
}

TEST(SelectedRSquare, StepwiseBranchWhenTheDeterminantIsSmall) {
  Data data;
  for (int m = 1; m <= 4; ++m) data.Table.Test(m).Significant = LogicalTrue;
  // Leading block about 1 * (2/59)^3 = 3.9e-5, below 0.0001: the stepwise
  // selection admits marker 1 alone.
  const double r2 = SquaredCorrelation(data.Genotype, 1, data.Y);
  const double shrink = (N - 1.0) / N;
  EXPECT_NEAR(data.RSquare(), r2 * shrink * shrink, 2e-5);
}

TEST(SelectedRSquare, DesignHoldsTheCodesOfFlaggedMarkersInTableOrder) {
  Data data;
  data.Table.Test(5).Significant = LogicalTrue;
  data.Table.Test(2).Significant = LogicalTrue;
  Array<float, 2> X;
  DesignOfSelected(N, data.Genotype, data.Table, X);
  ASSERT_EQ(X.Extent(2), 2);
  for (int l = 1; l <= N; ++l) {
    EXPECT_EQ(X(l, 1), static_cast<float>(Code(data.Genotype(2, l))));
    EXPECT_EQ(X(l, 2), static_cast<float>(Code(data.Genotype(5, l))));
  }
}

TEST(RegressionSS, ConstantResponseGivesZeroSums) {
  Array<float, 2> X(6, 1);
  const float codes[] = {1, -1, 1, -1, 1, 1};
  for (int l = 1; l <= 6; ++l) X(l, 1) = codes[l - 1];
  const std::vector<float> y(6, 3.0f);
  float sst = -1.0f, sse = -1.0f;
  RegressionSS(y.data(), X, sst, sse);
  EXPECT_EQ(sst, 0.0f);
  EXPECT_EQ(sse, 0.0f);
}

}  // namespace
}  // namespace tov
