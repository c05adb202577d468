// Speed of the bulk edits against memcpy of the same bytes, and of the loop searches against the
// rating formula evaluated candidate by candidate. Prints `name  ratio  bar`; a ratio of edits must
// not pass its bar, a ratio of searches (times as fast) must reach it.
//
// Both sides of a ratio run in turn, several times; the ratio is that of the medians.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "Measure.h"
#include "PlainLoopRule.h"
#include "sample/LoopSearch.h"
#include "sample/ValueRanges.h"
#include "util/ValueAccess.h"

namespace {

struct Medians {
  double first;
  double second;
};

Medians InTurn(int rounds, const std::function<void()>& first,
               const std::function<void()>& second) {
  std::vector<double> firstTimes, secondTimes;
  for (int i = 0; i < rounds; ++i) {
    firstTimes.push_back(bench::Seconds(first));
    secondTimes.push_back(bench::Seconds(second));
  }
  return {bench::Median(firstTimes), bench::Median(secondTimes)};
}

bool allHold = true;

void Report(const std::string& name, double ratio, double bar, bool holds) {
  allHold = allHold && holds;
  std::printf("%-48s %8.2f  %5.1f%s\n", name.c_str(), ratio, bar, holds ? "" : "  missed");
}

void BenchEdits() {
  constexpr std::int32_t frames = 10'000'000;
  std::vector<std::byte> data(std::size_t{frames} * 2), copy(data.size());
  std::mt19937 random(11);
  for (std::int32_t i = 0; i < frames; ++i) {
    zyl::ValueAccess<2>::Write(data.data(), i, static_cast<std::int16_t>(random()));
  }
  const zyl::ValueBuffer buffer{data.data(), frames, 2};
  volatile std::int32_t sink = 0;
  struct Edit {
    const char* name;
    double bar;
    std::function<void()> run;
  };
  const Edit edits[] = {
      {"OffsetValues", 1.0, [&] { zyl::OffsetValues(buffer, 0, frames, 3); }},
      {"ReverseValues", 1.0, [&] { zyl::ReverseValues(buffer, 0, frames - 1); }},
      {"MeanValue", 1.0, [&] { sink = zyl::MeanValue(buffer, 0, frames); }},
      {"MultiplyValues", 2.5, [&] { zyl::MultiplyValues(buffer, 0, frames, 0.999); }},
      {"SetValues", 1.0, [&] { zyl::SetValues(buffer, 0, frames, 77); }},
  };
  for (const Edit& edit : edits) {
    const Medians medians =
        InTurn(15, edit.run, [&] { std::memcpy(copy.data(), data.data(), data.size()); });
    const double ratio = medians.first / medians.second;
    Report(edit.name, ratio, edit.bar, ratio <= edit.bar);
  }
}

struct Signal {
  const char* name;
  std::function<double(std::int32_t)> at;  // -1 to 1 by position
  std::uint32_t fineLen = 0;
  std::int32_t threshold = 0;
};

template <class Access>
void BenchSearch(const Signal& signal, const char* width) {
  constexpr std::int32_t candidates = 1'000'000;
  constexpr std::int32_t frames = candidates + 2000;
  std::vector<std::byte> data(std::size_t{frames} * Access::bytesPerValue);
  for (std::int32_t i = 0; i < frames; ++i) {
    Access::Write(data.data(), i,
                  static_cast<std::int32_t>(signal.at(i) * static_cast<double>(Access::highest)));
  }
  const zyl::ValueView view{data.data(), frames, Access::bytesPerValue};
  for (const bool findStart : {true, false}) {
    const zyl::LoopPoints loop{findStart ? 500 : 700, frames - 300, signal.fineLen};
    const std::int32_t low = 1000, high = low + candidates;
    std::int32_t fast = 0, plain = 0;
    const Medians medians = InTurn(
        7, [&] { plain = PlainFind<Access>(findStart, view, loop, low, high, signal.threshold); },
        [&] {
          fast = findStart ? zyl::FindLoopStart(view, loop, low, high, signal.threshold)
                           : zyl::FindLoopEnd(view, loop, low, high, signal.threshold);
        });
    const double ratio = medians.first / medians.second;
    const double bar = findStart ? 40.0 : 20.0;
    Report(std::string(findStart ? "FindLoopStart " : "FindLoopEnd ") + signal.name + width, ratio,
           bar, ratio >= bar && fast == plain);
    if (fast != plain) std::printf("  answers differ: %d, by the rule %d\n", fast, plain);
  }
}

void BenchSearches() {
  std::mt19937 random(12);
  std::uniform_real_distribution<double> uniform(-1.0, 1.0);
  const auto sine = [](double period) {
    return [period](std::int32_t i) { return 0.6 * std::sin(i * 6.283185307179586 / period); };
  };
  const auto chord = [](std::int32_t i) {
    return 0.3 * std::sin(i * 0.0123) + 0.2 * std::sin(i * 0.0391) + 0.1 * std::sin(i * 0.217);
  };
  const auto noise = [&](double level) {
    return [&uniform, &random, level](std::int32_t) { return level * uniform(random); };
  };
  constexpr std::int32_t loose = -2147483647 - 1;
  const Signal signals[] = {
      {"tone 100.3 ", sine(100.3)},
      {"tone of whole period 32 ", sine(32.0)},
      {"low tone 4001.7 ", sine(4001.7)},
      {"chord ", chord},
      {"decaying tone ",
       [](std::int32_t i) { return 0.9 * std::exp(-i * 4e-6) * std::sin(i * 0.0571); }},
      {"noise ", noise(1.0)},
      {"quiet noise ", noise(0.02)},
      {"last-bit noise ", noise(6e-5)},
      {"chord, fine length ", chord, 2000000000},
      {"noise, fine length ", noise(0.5), 4000000000},
      {"chord, negative threshold ", chord, 0, loose},
      {"noise, negative threshold ", noise(1.0), 0, loose},
  };
  for (const Signal& signal : signals) BenchSearch<zyl::ValueAccess<2>>(signal, "16 bit");
  const Signal wideSignals[] = {
      {"tone ", sine(100.3)},
      {"noise ", noise(1.0)},
      {"noise, negative threshold ", noise(1.0), 0, loose},
      {"quiet chord, fine length ", [&](std::int32_t i) { return chord(i) * 2e-5; }, 2000000000},
      {"quiet noise ", noise(1e-5)},
  };
  for (const Signal& signal : wideSignals) BenchSearch<zyl::ValueAccess<4>>(signal, "32 bit");
  BenchSearch<zyl::ValueAccess<3>>({"chord ", chord}, "24 bit");
  BenchSearch<zyl::ValueAccess<3>>({"quiet noise ", noise(0.002)}, "24 bit");
  BenchSearch<zyl::ValueAccess<1>>({"chord ", chord}, "8 bit");
}

}  // namespace

int main() {
  BenchEdits();
  BenchSearches();
  return allHold ? 0 : 1;
}
