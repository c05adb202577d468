// zyl map by pitch only: 88 notes of each instrument, without notes in their names. Reports how
// much faster than real time they are mapped, by processor time of all threads and by the clock;
// how many root keys are right; and the largest tuning error between 55 Hz and 1.5 kHz.
#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "Measure.h"
#include "support/ScriptSurface.h"
#include "verbs/Notes.h"

namespace {

namespace fs = std::filesystem;
using zyl::test::HertzOfKey;

constexpr int kLowest = 21, kHighest = 108;
constexpr int kFirstJudged = 33, kLastJudged = 90;  // 55 Hz to 1480 Hz
constexpr double kSeconds = 2.0;
constexpr double kOffKey = 0.1;  // every note is 10 cents above its key
constexpr int kRounds = 5;

// The number after a name in the JSON object of a file.
double Number(const std::string& json, const std::string& file, const std::string& name) {
  const size_t object = json.find(file + "\"");
  const size_t at = object == std::string::npos ? object : json.find('"' + name + '"', object);
  return at == std::string::npos ? -1 : std::atof(json.c_str() + json.find(':', at) + 1);
}

// Processor time of all terminated child processes.
double ProcessorSeconds() {
  rusage usage{};
  getrusage(RUSAGE_CHILDREN, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

std::string ReadAll(const fs::path& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

void Measure(const zyl::test::Instrument& instrument, const fs::path& folder) {
  fs::create_directories(folder);
  for (int key = kLowest; key <= kHighest; ++key) {
    zyl::test::WriteWave(folder / ("x" + std::to_string(key) + ".wav"),
                         {zyl::test::Note(instrument, HertzOfKey(key + kOffKey), kSeconds,
                                          static_cast<unsigned>(key))});
  }
  const std::string out = folder.string() + ".json";
  const std::string command = std::string(ZYL_PROGRAM) +
                              " map --json --quiet --dry-run --from pitch '" + folder.string() +
                              "' > '" + out + "' 2>/dev/null";
  std::vector<double> seconds;
  std::vector<double> processor;
  for (int i = 0; i < kRounds; ++i) {
    const double before = ProcessorSeconds();
    seconds.push_back(bench::WallSeconds([&] { static_cast<void>(std::system(command.c_str())); }));
    processor.push_back(ProcessorSeconds() - before);
  }
  const std::string json = ReadAll(out);
  int right = 0;
  int rightInAll = 0;
  double worst = 0;
  for (int key = kLowest; key <= kHighest; ++key) {
    const std::string file = "/x" + std::to_string(key) + ".wav";
    const bool is = Number(json, file, "key") == key;
    rightInAll += is ? 1 : 0;
    if (key < kFirstJudged || key > kLastJudged) continue;
    right += is ? 1 : 0;
    if (is) worst = std::max(worst, std::abs(Number(json, file, "cents") - 100 * kOffKey));
  }
  const double playing = (kHighest - kLowest + 1) * kSeconds;
  const std::string name = std::string("zyl map, ") + instrument.name;
  bench::Report(name + ", times real time by processor time", playing / bench::Median(processor),
                bench::AtLeast(100));
  bench::Report(name + ", times real time by the clock", playing / bench::Median(seconds),
                bench::kNoBar);
  bench::Report(name + ", right keys of 55 Hz to 1.5 kHz", right,
                bench::AtLeast(kLastJudged - kFirstJudged + 1));
  bench::Report(name + ", right keys of 88", rightInAll, bench::kNoBar);
  bench::Report(name + ", largest tuning error in cents", worst, bench::kNoBar);
}

}  // namespace

int main() {
  const fs::path folder = fs::temp_directory_path() / ("zyl-map-bench-" + std::to_string(getpid()));
  for (const auto& instrument : zyl::test::kInstruments)
    Measure(instrument, folder / instrument.name);
  fs::remove_all(folder);
}
