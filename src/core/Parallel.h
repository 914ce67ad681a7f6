#pragma once
// Work spread over the machine's cores.  The shuffles of a permutation test
// and the simulations of a power run are independent once their random
// numbers are drawn; each task writes only its own results, which the caller
// then reads in task order, so the output does not depend on how many
// threads ran or how the tasks fell to them.

#include <functional>

namespace tov {

// The number of threads ParallelFor uses: the machine's cores unless set.
int WorkerThreads();

// For tests that compare one thread with several: n >= 1 threads from now
// on; 0 returns to the machine's cores.
void SetWorkerThreads(int n);

// Calls task(i) once for each i in [0, count), on up to WorkerThreads()
// threads, and returns when all calls have returned.  Tasks are handed out
// one at a time in index order.
void ParallelFor(int count, const std::function<void(int)>& task);

}  // namespace tov
