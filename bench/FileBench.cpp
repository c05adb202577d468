// Time to read sample files compared with libsndfile reading the same file as shorts, to one buffer
// for the whole sound; and, without a bar, block by block to a small buffer.
#include <sndfile.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "Measure.h"
#include "host/riff.h"

namespace {

constexpr size_t kFileBytes = 100u * 1000 * 1000;
constexpr int kRepetitions = 9;

bool StoreFile(const std::string& path, unsigned channels) {
  const size_t frames = kFileBytes / 2 / channels;
  std::vector<int16_t> sound(frames);
  for (size_t i = 0; i < frames; ++i) sound[i] = static_cast<int16_t>(i * 40503u >> 3);
  WavSample wav;
  wav.SetChannelCount(channels);
  for (unsigned c = 0; c < channels; ++c) {
    wav.SetLinBuffer(sound.data(), 2, static_cast<unsigned>(frames), c);
  }
  RiffFile file(path);
  return wav.CreateInterleavedBuffer() && wav.Write(file) && file.Close();
}

void ReadOwn(const std::string& path) {
  std::string reason;
  const auto sample = ReadSampleFile(path, true, reason);
  if (sample == nullptr || !sample->IsValid()) std::abort();
}

// One call to a buffer for the whole sound, like a program that keeps the sound.
void ReadPeer(const std::string& path) {
  SF_INFO info{};
  SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
  if (file == nullptr) std::abort();
  const auto values = static_cast<size_t>(info.frames * info.channels);
  const std::unique_ptr<int16_t[]> buffer(new int16_t[values]);
  if (sf_readf_short(file, buffer.get(), info.frames) != info.frames) std::abort();
  sf_close(file);
}

// Block by block to one small buffer, which needs no memory for the sound.
void ReadPeerBlocks(const std::string& path) {
  SF_INFO info{};
  SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
  if (file == nullptr) std::abort();
  constexpr sf_count_t kBlockFrames = 32768;
  std::vector<int16_t> buffer(static_cast<size_t>(kBlockFrames * info.channels));
  while (sf_readf_short(file, buffer.data(), kBlockFrames) > 0) {
  }
  sf_close(file);
}

}  // namespace

int main() {
  std::string folder = (std::filesystem::temp_directory_path() / "zylbench-XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) return 1;
  bool good = true;
  for (const unsigned channels : {1u, 2u, 6u}) {
    const std::string path = folder + "/sound.wav";
    if (!StoreFile(path, channels)) {
      std::fprintf(stderr, "cannot store %s\n", path.c_str());
      good = false;
      break;
    }
    ReadOwn(path);  // fills the file cache
    const std::string name =
        "reading 100 MB, " + std::to_string(channels) + " ch, times libsndfile";
    bench::Report(name,
                  bench::Ratio(
                      kRepetitions, [&] { ReadOwn(path); }, [&] { ReadPeer(path); }),
                  bench::AtMost(2.0));
    bench::Report(name + "'s blocks",
                  bench::Ratio(
                      kRepetitions, [&] { ReadOwn(path); }, [&] { ReadPeerBlocks(path); }),
                  bench::kNoBar);
  }
  std::filesystem::remove_all(folder);
  return good ? 0 : 1;
}
