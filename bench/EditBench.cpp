// Sample edits as scripts call them, on 10,000,000 positions of 16 bits.
//
// Edits in place are compared with memcpy of the same bytes between two buffers. Edits that
// allocate a block are compared with memcpy of the bytes that they must move: to a new block while
// the previous one is freed, and ("warm") to an existing buffer. Memory is the increase of the
// process's peak during one edit, in blocks of the sample's size.
#include <malloc.h>

#include <cstring>
#include <fstream>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "Measure.h"
#include "Script.h"
#include "host/akai.h"
#include "host/hostapp.h"
#include "host/valueAccess.h"
#include "sample/CSample.h"

namespace {

using Access = zyl::ValueAccess<2>;

constexpr int32_t kPositions = 10'000'000;
constexpr size_t kBytes = size_t{kPositions} * 2;
constexpr int kRounds = 41;

// A program with the samples in keygroup 0, and its methods by name.
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
  // Creates a 16-bit mono sample in a new zone.
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
    return static_cast<CSample*>(sample)->sample->WritableChannels({0}).channels[0];
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

// A value of /proc/self/status in bytes.
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
  malloc_trim(0);  // so that reused free memory counts, too
  std::ofstream("/proc/self/clear_refs") << 5 << std::flush;
  const double before = ProcessBytes("VmRSS");
  edit.run();
  const double blocks = (ProcessBytes("VmHWM") - before) / static_cast<double>(kBytes);
  bench::Report(std::string(edit.name) + ", peak memory in blocks", blocks, bench::AtMost(bar));
}

void BenchInPlace(const Script& script, RIOObject* sample) {
  const Edit edits[] = {
      {"SampleOffsetValues", 1.0, [&] { script("SampleOffsetValues", sample, 0, kPositions, 3); }},
      {"SampleReverseValues", 1.0, [&] { script("SampleReverseValues", sample, 0, kPositions); }},
      {"SampleGetDCOffset", 1.0, [&] { script("SampleGetDCOffset", sample, 0, kPositions); }},
      {"SampleMultiplyValues", 2.0,
       [&] { script("SampleMultiplyValues", sample, 0, kPositions, 0.999); }},
      {"SampleSetValues", 1.0, [&] { script("SampleSetValues", sample, 0, kPositions, 77); }},
  };
  const std::vector<std::byte> from(kBytes, std::byte{1});
  std::vector<std::byte> to(kBytes);
  for (const Edit& edit : edits) {
    const double ratio =
        bench::Ratio(kRounds, edit.run, [&] { std::memcpy(to.data(), from.data(), kBytes); });
    bench::Report(std::string(edit.name) + ", times memcpy", ratio, bench::AtMost(edit.bar));
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
  std::vector<std::byte> buffer(kBytes);
  std::unique_ptr<std::byte[]> held(new std::byte[kBytes]);
  for (const Edit& edit : edits) {
    std::vector<double> fresh, warm;
    for (int i = 0; i < kRounds; ++i) {
      edit.prepare();
      const double seconds = bench::Seconds(edit.run);
      fresh.push_back(seconds / bench::Seconds([&] {
                        std::unique_ptr<std::byte[]> block(new std::byte[kBytes]);
                        std::memcpy(block.get(), from.data(), kBytes);
                        held = std::move(block);
                      }));
      warm.push_back(seconds /
                     bench::Seconds([&] { std::memcpy(buffer.data(), from.data(), kBytes); }));
    }
    const std::string name = edit.name;
    bench::Report(name + ", times memcpy", bench::Median(fresh), bench::AtMost(edit.bar));
    bench::Report(name + ", times memcpy (warm)", bench::Median(warm), bench::AtMost(edit.bar));
  }
  for (const Edit& edit : edits) BenchMemory(edit, 1.15);
}

}  // namespace

int main() {
  const auto module = bench::LoadModule();
  Script script;
  std::mt19937 random(11);
  const auto noise = [&](int32_t) { return static_cast<int32_t>(static_cast<int16_t>(random())); };
  RIOObject* sample = script.Sample(0, kPositions, noise);
  RIOObject* whole = script.Sample(1, kPositions, noise);
  RIOObject* half = script.Sample(2, kPositions / 2, noise);
  BenchInPlace(script, sample);
  BenchBlocks(script, sample, whole, half);
}
