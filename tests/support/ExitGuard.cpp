// ctest reads a test's exit status alone.  A routine that ends the process
// in the middle of a test (a stop of the numerical error policy exits with
// status 0) would pass the test whatever it had found before; the guard
// turns such an exit into a failure.  A death test exits in a child of its
// own and is left alone.
#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace {

std::atomic<pid_t> processInTest{0};

class ExitGuard : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo&) override { processInTest = getpid(); }
  void OnTestEnd(const testing::TestInfo&) override { processInTest = 0; }
};

void FailAnExitInsideATest() {
  if (processInTest != getpid()) return;
  std::fputs("the process ended inside a test\n", stderr);
  std::_Exit(1);
}

const bool installed = [] {
  testing::UnitTest::GetInstance()->listeners().Append(new ExitGuard);
  return std::atexit(FailAnExitInsideATest) == 0;
}();

}  // namespace
