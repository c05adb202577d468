// Runs a harness without a fuzzer on its seeds: each seed, its prefixes, and empty input.
// replay-NAME FOLDER
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t count);

namespace {

// Maximum number of prefixes per seed; those of longer seeds are evenly spread.
constexpr size_t kMostPrefixes = 2500;

void Run(const std::vector<uint8_t>& seed, size_t count) {
  // An exact-size allocation, so that a sanitizer detects reads past the end.
  const std::vector<uint8_t> exact(seed.begin(), seed.begin() + static_cast<ptrdiff_t>(count));
  LLVMFuzzerTestOneInput(exact.data(), exact.size());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  size_t seeds = 0;
  size_t runs = 0;
  for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::vector<uint8_t> seed(std::istreambuf_iterator<char>(file), {});
    const size_t step = std::max<size_t>(1, seed.size() / kMostPrefixes);
    for (size_t count = 0; count < seed.size(); count += step, ++runs) Run(seed, count);
    Run(seed, seed.size());
    ++runs;
    ++seeds;
  }
  std::printf("%zu seeds, %zu runs\n", seeds, runs);
  return seeds == 0 ? 1 : 0;  // a missing corpus is a failure
}
