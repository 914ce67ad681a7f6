#include "core/Parallel.h"

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

namespace tov {
namespace {

std::atomic<int>& ThreadSetting() {
  static std::atomic<int> setting{0};
  return setting;
}

}  // namespace

int WorkerThreads() {
  const int set = ThreadSetting().load();
  if (set > 0) return set;
  return std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
}

void SetWorkerThreads(int n) { ThreadSetting().store(std::max(0, n)); }

void ParallelFor(int count, const std::function<void(int)>& task) {
  const int threads = std::min(WorkerThreads(), count);
  if (threads <= 1) {
    for (int i = 0; i < count; ++i) task(i);
    return;
  }
  std::atomic<int> next{0};
  auto work = [&] {
    for (int i = next.fetch_add(1); i < count; i = next.fetch_add(1)) task(i);
  };
  std::vector<std::thread> helpers;
  helpers.reserve(threads - 1);
  for (int t = 1; t < threads; ++t) helpers.emplace_back(work);
  work();
  for (std::thread& helper : helpers) helper.join();
}

}  // namespace tov
