#include "numerics/matrix/PrincipalComponents.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "support/RaisedMessages.h"

namespace tov {
namespace {

// Reference eigenvalues: numpy 1.24 linalg.eigvalsh, in double precision,
// of the matrices as float32, listed descending.

std::vector<float> Eigenvalues(const std::vector<float>& cov, int nvar) {
  std::vector<float> value(static_cast<std::size_t>(nvar), -12345.0f);
  EXPECT_TRUE(PRINC(100, nvar, cov.data(), true, value.data()));
  return value;
}

void ExpectEigenvalues(const std::vector<float>& cov, const std::vector<double>& expected) {
  const int nvar = static_cast<int>(expected.size());
  const std::vector<float> value = Eigenvalues(cov, nvar);
  for (int k = 0; k < nvar; ++k) EXPECT_NEAR(value[k], expected[k], 2.0e-6 * expected[0]) << "eigenvalue " << k + 1;
}

// Element (i, j) = rho^|i - j|, i, j = 1..n, rounded to float.
std::vector<float> KacMurdockSzego(double rho, int n) {
  std::vector<float> a;
  for (int j = 0; j < n; ++j)
    for (int i = 0; i < n; ++i) a.push_back(static_cast<float>(std::pow(rho, std::abs(i - j))));
  return a;
}

TEST(PRINC, EigenvaluesOfCorrelationMatricesMatchReferenceInDescendingOrder) {
  ExpectEigenvalues({1.0f, 0.5f, 0.2f, 0.5f, 1.0f, 0.3f, 0.2f, 0.3f, 1.0f},
                    {1.6839086410077786, 0.8289308351147925, 0.48716052387742975});
  ExpectEigenvalues(KacMurdockSzego(0.75, 10),
                    {4.820959087759398, 2.197805192257433, 1.0471541583105795, 0.587668363103633,
                     0.37957421757604465, 0.2727693723363721, 0.21291434150755956, 0.17774338899883918,
                     0.15714645534446892, 0.1462654228056734});
  ExpectEigenvalues(KacMurdockSzego(0.99, 12),
                    {11.535907330919695, 0.2811294181324069, 0.07412843281097077, 0.034142367615106216,
                     0.02004868734587541, 0.013539950943345695, 0.010041657393940095, 0.007979910006404876,
                     0.006698256522628161, 0.005886354643221982, 0.0053855129747184104, 0.00511212069167869});
}

TEST(PRINC, ClearlyNegativeEigenvalueRaisesTheWarning) {
  // Eigenvalues 1.9, 1.9, -0.8 (numpy, as above).
  std::vector<float> value;
  const std::string text = RaisedMessages(
      [&] { value = Eigenvalues({1.0f, 0.9f, -0.9f, 0.9f, 1.0f, 0.9f, -0.9f, 0.9f, 1.0f}, 3); });
  EXPECT_NEAR(value[2], -0.7999999523162846, 2.0e-6);
  EXPECT_EQ(N1RTY(1), SeverityWarning);
  EXPECT_NE(text.find("EVAL(3) = -0.7999999"), std::string::npos) << text;
  EXPECT_NE(text.find(".  One or more eigenvalues much less than zero are computed.  The matrix COV is not "
                      "nonnegative definite.  In order to continue computations of STD and A, these eigenvalues "
                      "are treated as zero."),
            std::string::npos)
      << text;
}

// {{1, 1 + d}, {1 + d, 1}} has eigenvalues 2 + d and -d; the warning
// starts where -d falls below -1000 (2 + d) 2^-23, about -2.4E-4.
TEST(PRINC, WarningThresholdIsAThousandRelativeSpacingsOfTheLargest) {
  for (const float d : {0x1p-11f, 0x1p-13f}) {
    std::vector<float> value;
    const std::string text =
        RaisedMessages([&] { value = Eigenvalues({1.0f, 1.0f + d, 1.0f + d, 1.0f}, 2); });
    EXPECT_NEAR(value[1], -d, 1.0e-6f);
    EXPECT_EQ(N1RTY(1), d > 2.4e-4f ? SeverityWarning : 0) << d << text;
  }
}

TEST(PRINC, NegativeDiagonalElementIsRefused) {
  const std::vector<float> cov = {1.0f, 0.0f, 0.0f, -0.5f};
  float value[2] = {7.0f, 7.0f};
  const std::string text = RaisedMessages([&] { EXPECT_FALSE(PRINC(10, 2, cov.data(), true, value)); });
  EXPECT_NE(text.find("COV(2,2) = -0.5.  All diagonal elements of COV must be nonnegative."), std::string::npos)
      << text;
  EXPECT_GE(N1RTY(1), SeverityFatal);
  EXPECT_EQ(value[0], 7.0f);
}

TEST(PRINC, ElementThatIsNotANumberGivesNotANumberQuietly) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  std::vector<float> value;
  const std::string text =
      RaisedMessages([&] { value = Eigenvalues({1.0f, nan, 0.5f, nan, 1.0f, nan, 0.5f, nan, 1.0f}, 3); });
  for (float v : value) EXPECT_TRUE(std::isnan(v));
  EXPECT_EQ(N1RTY(1), 0) << text;
}

}  // namespace
}  // namespace tov
