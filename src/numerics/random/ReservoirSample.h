#pragma once
// Simple random sampling without replacement from the process-wide stream.

namespace tov {

// Draws a sample of nsamp of the nrow values of population, 1 <= nsamp <=
// nrow, into sample, and the 1-based population index of each element into
// index.  One uniform is drawn for each record past the first nsamp; the
// sample keeps the order of replacement, not of the population.
void RNSRS(int nrow, const float* population, int nsamp, float* sample, int* index);

}  // namespace tov
