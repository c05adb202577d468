// Speed of the loop searches against the rating formula evaluated candidate by candidate, 1,000,000
// candidates of each signal.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "Measure.h"
#include "PlainLoopRule.h"
#include "host/valueAccess.h"
#include "sample/LoopSearch.h"

namespace {

struct Signal {
  const char* name;
  std::function<double(int32_t)> at;  // -1 to 1 by position
  uint32_t fineLen = 0;
  int32_t threshold = 0;
};

template <class Access>
void BenchSearch(const Signal& signal, const char* width) {
  constexpr int32_t kCandidates = 1'000'000;
  constexpr int32_t kFrames = kCandidates + 2000;
  std::vector<std::byte> data(size_t{kFrames} * Access::bytesPerValue);
  for (int32_t i = 0; i < kFrames; ++i) {
    Access::Write(data.data(), i,
                  static_cast<int32_t>(signal.at(i) * static_cast<double>(Access::highest)));
  }
  const zyl::ValueView view{data.data(), kFrames, Access::bytesPerValue};
  for (const bool findStart : {true, false}) {
    const zyl::LoopPoints loop{findStart ? 500 : 700, kFrames - 300, signal.fineLen};
    const int32_t low = 1000, high = low + kCandidates;
    int32_t fast = 0, plain = 0;
    const double ratio = bench::Ratio(
        7, [&] { plain = PlainFind<Access>(findStart, view, loop, low, high, signal.threshold); },
        [&] {
          fast = findStart ? zyl::FindLoopStart(view, loop, low, high, signal.threshold)
                           : zyl::FindLoopEnd(view, loop, low, high, signal.threshold);
        });
    const std::string name =
        std::string(findStart ? "loop start, " : "loop end, ") + signal.name + width;
    if (fast != plain) bench::Fail(name + ": the search does not follow the rule");
    bench::Report(name + ", times the rule", ratio, bench::AtLeast(findStart ? 40 : 20));
  }
}

}  // namespace

int main() {
  std::mt19937 random(12);
  std::uniform_real_distribution<double> uniform(-1.0, 1.0);
  const auto sine = [](double period) {
    return [period](int32_t i) { return 0.6 * std::sin(i * 6.283185307179586 / period); };
  };
  const auto chord = [](int32_t i) {
    return 0.3 * std::sin(i * 0.0123) + 0.2 * std::sin(i * 0.0391) + 0.1 * std::sin(i * 0.217);
  };
  const auto noise = [&](double level) {
    return [&uniform, &random, level](int32_t) { return level * uniform(random); };
  };
  constexpr int32_t kLoose = -2147483647 - 1;
  const Signal signals[] = {
      {"tone 100.3 ", sine(100.3)},
      {"tone without a whole period ", sine(100.31830988)},
      {"tone of whole period 32 ", sine(32.0)},
      {"low tone 4001.7 ", sine(4001.7)},
      {"chord ", chord},
      {"decaying tone ",
       [](int32_t i) { return 0.9 * std::exp(-i * 4e-6) * std::sin(i * 0.0571); }},
      {"noise ", noise(1.0)},
      {"quiet noise ", noise(0.02)},
      {"last-bit noise ", noise(6e-5)},
      {"chord, fine length ", chord, 2000000000},
      {"noise, fine length ", noise(0.5), 4000000000},
      {"chord, negative threshold ", chord, 0, kLoose},
      {"noise, negative threshold ", noise(1.0), 0, kLoose},
  };
  for (const Signal& signal : signals) BenchSearch<zyl::ValueAccess<2>>(signal, "16 bit");
  const Signal wideSignals[] = {
      {"tone ", sine(100.3)},
      {"noise ", noise(1.0)},
      {"noise, negative threshold ", noise(1.0), 0, kLoose},
      {"quiet chord, fine length ", [&](int32_t i) { return chord(i) * 2e-5; }, 2000000000},
      {"quiet noise ", noise(1e-5)},
  };
  for (const Signal& signal : wideSignals) BenchSearch<zyl::ValueAccess<4>>(signal, "32 bit");
  BenchSearch<zyl::ValueAccess<3>>({"chord ", chord}, "24 bit");
  BenchSearch<zyl::ValueAccess<3>>({"quiet noise ", noise(0.002)}, "24 bit");
  BenchSearch<zyl::ValueAccess<1>>({"chord ", chord}, "8 bit");
}
