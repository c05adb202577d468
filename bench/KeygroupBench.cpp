// What a set over 1000 keygroups costs through the script method, against a bare loop that stores
// the same byte of each of 1000 records of the same size, in one run.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "Measure.h"
#include "Script.h"
#include "host/akai.h"

namespace {

constexpr int kKeygroups = 1000;
constexpr int kRounds = 4000;

}  // namespace

int main() {
  const auto module = bench::LoadModule();
  const std::unique_ptr<ROCAlgo> program(ZylNewScriptObject("ZylSProgram"));
  bench::Call(*program, "Create", static_cast<RIOObject*>(nullptr));
  for (int k = 1; k < kKeygroups; ++k) bench::Call(*program, "KGCreate", k);
  std::vector<akaiKeyGroup> bare(kKeygroups);
  std::vector<double> bareTimes;
  std::vector<double> setTimes;
  for (int round = 0; round < kRounds; ++round) {
    const auto value = static_cast<uint8_t>(round);
    bareTimes.push_back(bench::Seconds([&] {
      for (akaiKeyGroup& keygroup : bare) keygroup.filterFreq = value;
      asm volatile("" : : "r"(bare.data()) : "memory");
    }));
    setTimes.push_back(
        bench::Seconds([&] { bench::Call(*program, "KGfilterFreq", -1, int32_t{value}); }));
  }
  const double bareMedian = bench::Median(bareTimes);
  const double setMedian = bench::Median(setTimes);
  std::printf("bare loop              %7.0f ns\n", bareMedian * 1e9);
  std::printf("KGfilterFreq(-1, v)    %7.0f ns   ratio %.2f   bar 3\n", setMedian * 1e9,
              setMedian / bareMedian);
  return setMedian / bareMedian <= 3 ? 0 : 1;
}
