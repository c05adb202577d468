// Cost of a query while a worker analyses a long sample: median and 99th percentile of the elapsed
// time of PitchDataProgressRatio, called like a script call.
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "Measure.h"
#include "Script.h"

namespace {

using Clock = std::chrono::steady_clock;

// A mono WAVE file with 16-bit noise.
void WriteNoise(const std::string& path, uint32_t frames) {
  std::vector<uint32_t> words = {0x46464952, 36 + 2 * frames, 0x45564157, 0x20746D66,
                                 16,         0x00010001,      44100,      88200,
                                 0x00100002, 0x61746164,      2 * frames};
  std::mt19937 random(1);
  for (uint32_t i = 0; i < frames / 2; ++i) words.push_back(static_cast<uint32_t>(random()));
  std::FILE* file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) return;
  std::fwrite(words.data(), sizeof words[0], words.size(), file);
  std::fclose(file);
}

}  // namespace

int main() {
  const auto module = bench::LoadModule();
  const std::string path = (std::filesystem::temp_directory_path() /
                            ("zyl-bench-" + std::to_string(::getpid()) + ".wav"))
                               .string();
  WriteNoise(path, 100000000);
  std::vector<double> micros;
  {
    const std::unique_ptr<ROCAlgo> program(ZylNewScriptObject("ZylSProgram"));
    const auto sample = bench::Call(*program, "ReadTempSample", path.c_str());
    bench::Call(*program, "CalcSamplePitch", sample->Object());
    while (bench::Call(*program, "PitchDataProgressRatio")->Int() == 0) std::this_thread::yield();
    // Spread the calls over the whole analysis.
    for (int ratio = 1; ratio > 0 && micros.size() < 20000;) {
      const auto start = Clock::now();
      ratio = bench::Call(*program, "PitchDataProgressRatio")->Int();
      micros.push_back(std::chrono::duration<double, std::micro>(Clock::now() - start).count());
      std::this_thread::sleep_for(std::chrono::microseconds(20));
    }
    bench::Call(*program, "DeleteTempSample");
  }
  std::filesystem::remove(path);
  std::sort(micros.begin(), micros.end());
  const auto at = [&](double share) {
    return micros[static_cast<size_t>(share * static_cast<double>(micros.size() - 1))];
  };
  bench::Report("PitchDataProgressRatio, p50 us", at(0.5), bench::kNoBar);
  bench::Report("PitchDataProgressRatio, p99 us", at(0.99), bench::AtMost(50));
}
