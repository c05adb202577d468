// zyl map by pitch only: 88 notes of each instrument, without notes in their names, and of one
// instrument in stereo with three layers. Reports how much faster than real time they are mapped,
// by processor time of all threads and by the clock; how many root keys and layers are right; and
// the largest tuning error between 55 Hz and 1.5 kHz.
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

struct Batch {
  std::string name;
  const zyl::test::Instrument& instrument;
  std::vector<double> peaks;  // of the layers, rising
  int channels;
};

std::string File(int key, size_t layer) {
  return "/x" + std::to_string(key) + "-" + std::to_string(9 - layer) + ".wav";
}

void Write(const Batch& batch, const fs::path& folder) {
  fs::create_directories(folder);
  for (int key = kLowest; key <= kHighest; ++key) {
    for (size_t layer = 0; layer < batch.peaks.size(); ++layer) {
      std::vector<std::vector<int16_t>> channels;
      for (int c = 0; c < batch.channels; ++c) {
        channels.push_back(zyl::test::Note(batch.instrument, HertzOfKey(key + kOffKey), kSeconds,
                                           static_cast<unsigned>(key + 1000 * c),
                                           batch.peaks[layer]));
      }
      zyl::test::WriteWave(folder.string() + File(key, layer), channels);
    }
  }
}

void Measure(const Batch& batch, const fs::path& folder) {
  Write(batch, folder);
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
  int rightLayers = 0;
  double worst = 0;
  const auto layers = static_cast<int>(batch.peaks.size());
  for (int key = kLowest; key <= kHighest; ++key) {
    for (int layer = 0; layer < layers; ++layer) {
      const std::string file = File(key, static_cast<size_t>(layer));
      const bool is = Number(json, file, "key") == key;
      rightInAll += is ? 1 : 0;
      rightLayers += Number(json, file, "low_velocity") == 128 * layer / layers ? 1 : 0;
      if (key < kFirstJudged || key > kLastJudged) continue;
      right += is ? 1 : 0;
      if (is) worst = std::max(worst, std::abs(Number(json, file, "cents") - 100 * kOffKey));
    }
  }
  const int files = (kHighest - kLowest + 1) * layers;
  const double playing = files * kSeconds;
  const std::string name = "zyl map, " + batch.name;
  bench::Report(name + ", times real time by processor time", playing / bench::Median(processor),
                bench::AtLeast(500));
  bench::Report(name + ", times real time by the clock", playing / bench::Median(seconds),
                bench::kNoBar);
  bench::Report(name + ", right keys of 55 Hz to 1.5 kHz", right,
                bench::AtLeast((kLastJudged - kFirstJudged + 1) * layers));
  bench::Report(name + ", right keys of " + std::to_string(files), rightInAll, bench::kNoBar);
  bench::Report(name + ", right layers of " + std::to_string(files), rightLayers,
                layers > 1 ? bench::AtLeast(files) : bench::kNoBar);
  bench::Report(name + ", largest tuning error in cents", worst, bench::kNoBar);
}

}  // namespace

int main() {
  const fs::path folder = fs::temp_directory_path() / ("zyl-map-bench-" + std::to_string(getpid()));
  for (const auto& instrument : zyl::test::kInstruments) {
    Measure({instrument.name, instrument, {0.5}, 1}, folder / instrument.name);
  }
  const auto& plucked = zyl::test::kInstruments[2];
  Measure({"three stereo layers", plucked, {0.05, 0.2, 0.8}, 2}, folder / "layers");
  fs::remove_all(folder);
}
