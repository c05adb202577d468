// Sample edits and loop searches as scripts call them, on 10,000,000 positions of 16 bits
// (searches: 1,000,000 candidates). Prints `name  ratio  bar`.
//
// Edits in place stand against memcpy of the same bytes between two buffers that are there. Edits
// that make a new block stand against memcpy of the bytes that they must move, twice: into a block
// that is allocated for it while the one before is freed, as the edit does, and ("warm") into a
// buffer that is there. Searches stand against the rule candidate by candidate (times as fast).
// Memory is the rise of the process's peak during one edit, in blocks of the sample's size. Both
// sides of a time ratio run in turn, and the ratio is that of the medians.
#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "Measure.h"
#include "PlainLoopRule.h"
#include "Script.h"
#include "host/akai.h"
#include "host/hostapp.h"
#include "sample/CSample.h"

namespace {

using Access = zyl::ValueAccess<2>;

constexpr int32_t kPositions = 10'000'000;
constexpr size_t kBytes = size_t{kPositions} * 2;
constexpr int kRounds = 41;

bool allHold = true;

void Report(const std::string& name, double ratio, double bar, bool holds) {
  allHold = allHold && holds;
  std::printf("%-40s %8.2f  %5.2f%s\n", name.c_str(), ratio, bar, holds ? "" : "  missed");
}

// A program whose keygroup 0 holds the samples, and its methods by name.
class Script {
 public:
  Script() : program_(ZylNewScriptObject("ZylSProgram")) {
    (*this)("Create", static_cast<RIOObject*>(nullptr));
  }
  template <class... Args>
  int32_t operator()(const char* method, Args... args) const {
    const auto result = bench::Call(*program_, method, args...);
    const int32_t answer = result != nullptr && result->Type() == kTypeInteger ? result->Int() : 0;
    object_ = result != nullptr && result->Type() == kTypeObject ? result->Object() : nullptr;
    return answer;
  }
  // A new mono sample of 16 bits in a zone of its own.
  RIOObject* Sample(int zone, int32_t positions, const std::function<int32_t(int32_t)>& value) {
    (*this)("SampleCreate", 0, zone, "wav", 1);
    (*this)("SampleGet", 0, zone);
    RIOObject* sample = object_;
    (*this)("SampleSize", sample, positions);
    std::byte* values = Values(sample);
    for (int32_t i = 0; i < positions; ++i) Access::Write(values, i, value(i));
    return sample;
  }
  static std::byte* Values(RIOObject* sample) {
    return static_cast<CSample*>(sample)->sample->WritableChannel(0);
  }

 private:
  std::unique_ptr<ROCAlgo> program_;
  mutable RIOObject* object_ = nullptr;
};

struct Edit {
  const char* name;
  double bar;
  std::function<void()> run;
  std::function<void()> prepare = [] {};
};

// A figure of /proc/self/status in bytes.
double ProcessBytes(const std::string& name) {
  std::ifstream status("/proc/self/status");
  std::string word;
  double kilobytes = 0;
  while (status >> word) {
    if (word == name + ":") status >> kilobytes;
  }
  return kilobytes * 1024;
}

void BenchMemory(const Edit& edit, double bar) {
  edit.prepare();
  malloc_trim(0);  // what is free counts as taken again
  std::ofstream("/proc/self/clear_refs") << 5 << std::flush;
  const double before = ProcessBytes("VmRSS");
  edit.run();
  const double blocks = (ProcessBytes("VmHWM") - before) / static_cast<double>(kBytes);
  Report(std::string(edit.name) + " peak memory", blocks, bar, blocks <= bar);
}

void BenchInPlace(const Script& script, RIOObject* sample) {
  const Edit edits[] = {
      {"SampleOffsetValues", 1.0, [&] { script("SampleOffsetValues", sample, 0, kPositions, 3); }},
      {"SampleReverseValues", 1.0, [&] { script("SampleReverseValues", sample, 0, kPositions); }},
      {"SampleGetDCOffset", 1.0, [&] { script("SampleGetDCOffset", sample, 0, kPositions); }},
      {"SampleMultiplyValues", 2.5,
       [&] { script("SampleMultiplyValues", sample, 0, kPositions, 0.999); }},
      {"SampleSetValues", 1.0, [&] { script("SampleSetValues", sample, 0, kPositions, 77); }},
  };
  const std::vector<std::byte> from(kBytes, std::byte{1});
  std::vector<std::byte> to(kBytes);
  for (const Edit& edit : edits) {
    std::vector<double> editTimes, copyTimes;
    for (int i = 0; i < kRounds; ++i) {
      editTimes.push_back(bench::Seconds(edit.run));
      copyTimes.push_back(bench::Seconds([&] { std::memcpy(to.data(), from.data(), kBytes); }));
    }
    const double ratio = bench::Median(editTimes) / bench::Median(copyTimes);
    Report(edit.name, ratio, edit.bar, ratio <= edit.bar);
  }
  for (const Edit& edit : edits) BenchMemory(edit, 0.05);
}

// Every edit here moves all 10,000,000 positions but one or two.
void BenchBlocks(const Script& script, RIOObject* sample, RIOObject* whole, RIOObject* half) {
  const auto fill = [&] { script("SampleCopyFrom", sample, whole, 0, kPositions); };
  const auto fillHalf = [&] { script("SampleCopyFrom", sample, half, 0, kPositions); };
  const Edit edits[] = {
      {"SampleExtract", 1.5, [&] { script("SampleExtract", sample, 1, kPositions - 2); }, fill},
      {"SampleDelete", 1.5,
       [&] { script("SampleDelete", sample, kPositions / 2, kPositions / 2 + 1); }, fill},
      {"SampleCopyTo", 1.5, [&] { script("SampleCopyTo", sample, half, kPositions / 4); },
       fillHalf},
      {"SampleCopyFrom", 1.5, fill, fill},
  };
  const std::vector<std::byte> from(kBytes, std::byte{1});
  std::vector<std::byte> warm(kBytes);
  std::unique_ptr<std::byte[]> held(new std::byte[kBytes]);
  for (const Edit& edit : edits) {
    std::vector<double> editTimes, freshTimes, warmTimes;
    for (int i = 0; i < kRounds; ++i) {
      edit.prepare();
      editTimes.push_back(bench::Seconds(edit.run));
      freshTimes.push_back(bench::Seconds([&] {
        std::unique_ptr<std::byte[]> fresh(new std::byte[kBytes]);
        std::memcpy(fresh.get(), from.data(), kBytes);
        held = std::move(fresh);
      }));
      warmTimes.push_back(bench::Seconds([&] { std::memcpy(warm.data(), from.data(), kBytes); }));
    }
    const double fresh = bench::Median(editTimes) / bench::Median(freshTimes);
    Report(edit.name, fresh, edit.bar, fresh <= edit.bar);
    const double ratio = bench::Median(editTimes) / bench::Median(warmTimes);
    Report(std::string(edit.name) + " (warm)", ratio, edit.bar, ratio <= edit.bar);
  }
  for (const Edit& edit : edits) BenchMemory(edit, 1.15);
}

void BenchSearch(Script& script, const char* name, const std::function<int32_t(int32_t)>& value) {
  constexpr int32_t kCandidates = 1'000'000;
  constexpr int32_t kFrames = kCandidates + 2000;
  constexpr int32_t kLow = 1000, kHigh = kLow + kCandidates;
  RIOObject* sample = script.Sample(3, kFrames, value);
  script("SampleLoopCount", sample, 1);
  const zyl::ValueView view{Script::Values(sample), kFrames, 2};
  for (const bool findStart : {true, false}) {
    const zyl::LoopPoints loop{findStart ? 500 : 700, kFrames - 300, 0};
    const char* method = findStart ? "SampleLoopFindStart" : "SampleLoopFindEnd";
    std::vector<double> plainTimes, fastTimes;
    int32_t plain = 0, fast = 0;
    for (int i = 0; i < 15; ++i) {
      script("SampleLoopStart", sample, 0, loop.start);
      script("SampleLoopEnd", sample, 0, loop.end);
      plainTimes.push_back(bench::Seconds(
          [&] { plain = PlainFind<Access>(findStart, view, loop, kLow, kHigh, 0); }));
      fastTimes.push_back(
          bench::Seconds([&] { fast = script(method, sample, 0, kLow, kHigh, 0); }));
    }
    const double ratio = bench::Median(plainTimes) / bench::Median(fastTimes);
    const double bar = findStart ? 40.0 : 20.0;
    Report(std::string(method) + ", " + name, ratio, bar, ratio >= bar && fast == plain);
    if (fast != plain) std::printf("  answers differ: %d, by the rule %d\n", fast, plain);
  }
}

}  // namespace

int main() {
  const auto module = bench::LoadModule();
  std::printf(
      "bars of edits: memcpy of the same bytes; of new blocks: into a block allocated for it\n"
      "while the one before is freed, then (warm) into one that is there\n");
  Script script;
  std::mt19937 random(11);
  const auto noise = [&](int32_t) { return static_cast<int32_t>(static_cast<int16_t>(random())); };
  RIOObject* sample = script.Sample(0, kPositions, noise);
  RIOObject* whole = script.Sample(1, kPositions, noise);
  RIOObject* half = script.Sample(2, kPositions / 2, noise);
  BenchInPlace(script, sample);
  BenchBlocks(script, sample, whole, half);
  BenchSearch(script, "noise", noise);
  BenchSearch(script, "tone",
              [](int32_t i) { return static_cast<int32_t>(19660 * std::sin(i * 0.0626)); });
  return allHold ? 0 : 1;
}
