#pragma once
// The W test of Shapiro and Wilk for normality, in Royston's form for
// samples of 3 to 2000 values.

namespace tov {

// W and its P-value for the nobs values of x, which need not be sorted;
// values that are not a number are dropped and counted in numMissing.
// Returns false, leaving w and p as they were, when the test refuses the
// list: nobs outside 3..2000, or fewer than 3 values left.  A sample whose
// values are all tied gives W = 0.0 and P = 1.0 with a warning.
bool SPWLK(int nobs, const float* x, float& w, float& p, int& numMissing);

}  // namespace tov
