#pragma once
// Sorting of 32-bit reals.

namespace tov {

// rb(1..n) receives ra(1..n) in ascending order; ra stays as it is.  A NaN
// counts as larger than every number, so that it cannot disturb the order
// of the others and the result does not depend on where it stood.
void SVRGN(int n, const float* ra, float* rb);

}  // namespace tov
