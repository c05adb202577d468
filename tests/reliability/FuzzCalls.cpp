// fuzz-calls [SECONDS] [SEED]: the calls of the test suite for as long as you like.
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "reliability/CallFuzz.h"

int main(int argc, char** argv) {
  using Clock = std::chrono::steady_clock;
  using zyl::test::CallFuzz;
  const double seconds = argc > 1 ? std::strtod(argv[1], nullptr) : 60;
  const auto seed = static_cast<uint32_t>(argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 1);
  const std::string folder = zyl::test::CallFuzz::MakeFolder();
  zyl::test::LoadModule();
  if (folder.empty() || zyl::test::LoadedModule() == nullptr) return 2;
  int status = 0;
  {
    CallFuzz fuzz(seed, folder, 5000);
    const auto start = Clock::now();
    double passed = 0;
    double told = 0;
    while (passed < seconds && status == 0) {
      if (!fuzz.RunWorld()) {
        std::printf("BROKEN: %s\n", fuzz.Fault().c_str());
        status = 1;
      }
      passed = std::chrono::duration<double>(Clock::now() - start).count();
      if (passed - told > 20) {
        told = passed;
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        std::printf("%.0f s: %llu calls, %ld MB\n", passed,
                    static_cast<unsigned long long>(fuzz.CallCount()), usage.ru_maxrss / 1024);
        std::fflush(stdout);
      }
    }
    std::printf("%llu calls in %.0f s, %.0f a second; %llu of them failed as they should\n",
                static_cast<unsigned long long>(fuzz.CallCount()), passed,
                static_cast<double>(fuzz.CallCount()) / passed,
                static_cast<unsigned long long>(fuzz.FailedCount()));
  }
  zyl::test::LoadedModule().reset();
  return status;
}
