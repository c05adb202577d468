// Shared by the benchmarks: timing, and the report of figures with their bars.
#pragma once

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

namespace bench {

// Seconds that a piece of work takes by a clock.
template <class Work>
double SecondsOf(clockid_t clock, Work work) {
  const auto now = [clock] {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
  };
  const double begin = now();
  work();
  return now() - begin;
}

// Processor time of this thread: other programs on the machine do not count.
template <class Work>
double Seconds(Work work) {
  return SecondsOf(CLOCK_THREAD_CPUTIME_ID, work);
}

template <class Work>
double WallSeconds(Work work) {
  return SecondsOf(CLOCK_MONOTONIC, work);
}

inline double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

// The median ratio of the times of `first` and `second`. Each round runs both once, so that a
// machine that becomes slower affects both.
template <class First, class Second>
double Ratio(int rounds, First first, Second second) {
  std::vector<double> ratios;
  for (int i = 0; i < rounds; ++i) {
    const double seconds = Seconds(first);
    ratios.push_back(seconds / Seconds(second));
  }
  return Median(ratios);
}

struct Bar {
  const char* relation;  // "<=", ">=", or "" for a figure without a bar
  double value;
};
inline Bar AtMost(double value) { return {"<=", value}; }
inline Bar AtLeast(double value) { return {">=", value}; }
constexpr Bar kNoBar{"", 0.0};

// The file in which `./dev bench` collects figures; null when a benchmark runs alone.
inline const char* ResultsFile() { return std::getenv("ZYL_BENCH_RESULTS"); }

// Adds a figure to the results, one line of tab-separated fields: name, figure, relation, bar.
inline void Report(const std::string& name, double figure, Bar bar) {
  const char* path = ResultsFile();
  std::FILE* out = path != nullptr ? std::fopen(path, "a") : stdout;
  if (out == nullptr) {
    std::perror(path);
    std::exit(1);
  }
  std::fprintf(out, "%s\t%.2f\t%s\t%g\n", name.c_str(), figure, bar.relation, bar.value);
  if (path != nullptr) std::fclose(out);
}

// Aborts a benchmark whose results are wrong.
[[noreturn]] inline void Fail(const std::string& why) {
  std::fprintf(stderr, "%s\n", why.c_str());
  std::exit(1);
}

}  // namespace bench
