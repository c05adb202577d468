// Reads arbitrary bytes as a program file, unchanged and with a corrected checksum, because almost
// no mutation would pass the checksum. Accepted programs are written, read again and written again
// to the same bytes.
#include <cstring>
#include <span>
#include <vector>

#include "Harness.h"
#include "akai.h"
#include "akai/ProgramStore.h"
#include "hostapp.h"

namespace {

using zyl::fuzz::Require;

constexpr size_t kSealBytes = 12;  // size of the checksum chunk
constexpr char kPath[] = "/nowhere/at/all/program.zprg";

uint32_t Checksum(const std::vector<std::byte>& bytes) {
  uint32_t sum = 0xFFFFFFFFu;
  for (const std::byte byte : bytes) {
    sum ^= std::to_integer<uint32_t>(byte);
    for (int bit = 0; bit < 8; ++bit) sum = sum >> 1 ^ ((sum & 1) != 0 ? 0xEDB88320u : 0);
  }
  return ~sum;
}

// The bytes with a valid checksum, which replaces an existing one.
std::vector<std::byte> Sealed(std::vector<std::byte> bytes) {
  if (bytes.size() >= kSealBytes &&
      std::memcmp(bytes.data() + bytes.size() - kSealBytes, "CSUM", 4) == 0) {
    bytes.resize(bytes.size() - kSealBytes);
  }
  const uint32_t sum = Checksum(bytes);
  const uint8_t seal[kSealBytes] = {'C',
                                    'S',
                                    'U',
                                    'M',
                                    4,
                                    0,
                                    0,
                                    0,
                                    static_cast<uint8_t>(sum),
                                    static_cast<uint8_t>(sum >> 8),
                                    static_cast<uint8_t>(sum >> 16),
                                    static_cast<uint8_t>(sum >> 24)};
  const auto* first = reinterpret_cast<const std::byte*>(seal);
  bytes.insert(bytes.end(), first, first + kSealBytes);
  return bytes;
}

// The file as this version writes it; empty if the bytes are rejected.
std::vector<std::byte> Rewritten(const std::vector<std::byte>& bytes) {
  std::string reason;
  akaiProgram* program = zyl::ProgramFromImage(bytes, kPath, true, reason);
  if (program == nullptr) {
    Require(!reason.empty(), "a refusal has a reason");
    return {};
  }
  Require(program->KeyGroupCount() == program->AllocatedKeyGroups(), "the count is what is there");
  for (int k = 0; k < program->KeyGroupCount(); ++k) {
    for (int z = 0; z < kZones; ++z) program->keyGroupExtensions[k].SamplePath(z);
  }
  program->getTotalMem(true);
  auto image = zyl::ProgramImage(*program, kPath, kWriteRelativePaths | kWriteAbsolutePaths);
  deleteAkaiProgram(program);
  return image;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t count) {
  ZylSetDiagnosticSink([](std::string_view) {});
  const auto* first = reinterpret_cast<const std::byte*>(bytes);
  const std::vector<std::byte> given(first, first + count);
  for (const std::vector<std::byte>& file : {given, Sealed(given)}) {
    const zyl::fuzz::MemoryBound bound(count, size_t{1} << 16);
    const auto once = Rewritten(file);
    if (!once.empty()) Require(Rewritten(once) == once, "writing again changes nothing");
  }
  return 0;
}
