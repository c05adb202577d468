// fuzz-calls [SECONDS] [SEED]: calls methods for the given time.
// fuzz-calls --short: makes a fixed number of calls and checks that they reach every method.
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "CallFuzz.h"

namespace {

using zyl::test::CallFuzz;

bool Broken(CallFuzz& fuzz) {
  if (fuzz.RunWorld()) return false;
  std::printf("BROKEN: %s\n", fuzz.Fault().c_str());
  return true;
}

bool RunShort(CallFuzz& fuzz) {
  constexpr int kRounds = 20;
  for (int world = 0; world < kRounds * CallFuzz::kStates; ++world) {
    if (Broken(fuzz)) return false;
  }
  // A fuzzer whose calls all fail at the first argument would find nothing.
  bool reached = fuzz.FailedCount() > fuzz.CallCount() / 10;
  if (!reached) std::printf("too few calls fail\n");
  for (size_t m = 0; m < fuzz.Counts().size(); ++m) {
    uint64_t done = 0;
    for (const uint64_t count : fuzz.Counts()[m].done) done += count;
    if (done > 0) continue;
    std::printf("no call of %s succeeds\n", fuzz.MethodAt(m).name);
    reached = false;
  }
  return reached;
}

bool RunFor(CallFuzz& fuzz, double seconds) {
  using Clock = std::chrono::steady_clock;
  const auto start = Clock::now();
  double passed = 0;
  double shown = 0;
  while (passed < seconds) {
    if (Broken(fuzz)) return false;
    passed = std::chrono::duration<double>(Clock::now() - start).count();
    if (passed - shown > 20) {
      shown = passed;
      rusage usage{};
      getrusage(RUSAGE_SELF, &usage);
      std::printf("%.0f s: %llu calls, %ld MB\n", passed,
                  static_cast<unsigned long long>(fuzz.CallCount()), usage.ru_maxrss / 1024);
      std::fflush(stdout);
    }
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  const bool isShort = argc > 1 && std::string(argv[1]) == "--short";
  const double seconds = argc > 1 && !isShort ? std::strtod(argv[1], nullptr) : 60;
  const auto seed = static_cast<uint32_t>(argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 1);
  const std::string folder = CallFuzz::MakeFolder();
  zyl::test::LoadModule();
  if (folder.empty() || zyl::test::LoadedModule() == nullptr) return 2;
  bool good = false;
  {
    CallFuzz fuzz(seed, folder, isShort ? 400 : 5000);
    good = isShort ? RunShort(fuzz) : RunFor(fuzz, seconds);
    std::printf("%llu calls, %llu of them failed as they should\n",
                static_cast<unsigned long long>(fuzz.CallCount()),
                static_cast<unsigned long long>(fuzz.FailedCount()));
  }
  zyl::test::LoadedModule().reset();
  return good ? 0 : 1;
}
