#include "FlacChunks.h"

#include <cstring>
#include <string_view>

namespace zyl {
namespace {

constexpr uint64_t kBlockHeadBytes = 4;
constexpr std::byte kLastBlock{0x80};
constexpr unsigned kApplicationBlock = 2;
// Bounds the time for a file full of empty blocks.
constexpr int kMaxBlocks = 4096;

bool OpensWith(const Bytes& bytes, std::string_view id) {
  return bytes.size() >= id.size() && std::memcmp(bytes.data(), id.data(), id.size()) == 0;
}

// Appends the contents of a "riff" block to the file.
void AddBlock(const Bytes& block, Bytes& file) {
  constexpr size_t kIdBytes = 4;
  Bytes chunk(block.begin() + kIdBytes, block.end());
  // The block has only the header of the "data" chunk, not its data.
  if (OpensWith(chunk, "data") && chunk.size() >= 8) std::memset(chunk.data() + 4, 0, 4);
  file.insert(file.end(), chunk.begin(), chunk.end());
}

}  // namespace

Bytes WaveChunksOfFlac(const ByteSource& source) {
  Bytes file;
  uint64_t offset = 4;  // after "fLaC"
  for (int i = 0; i < kMaxBlocks; ++i) {
    std::byte head[kBlockHeadBytes];
    if (source.ReadAt(offset, head, sizeof head) != sizeof head) break;
    const unsigned type = std::to_integer<unsigned>(head[0] & ~kLastBlock);
    const uint32_t size = FieldReader(head, sizeof head, ByteOrder::kBig).U32() & 0xFFFFFF;
    offset += kBlockHeadBytes;
    if (size > source.Size() - offset) break;
    if (type == kApplicationBlock) {
      Bytes block(size);
      if (source.ReadAt(offset, block.data(), size) != size) break;
      if (OpensWith(block, "riff")) AddBlock(block, file);
    }
    if ((head[0] & kLastBlock) != std::byte{0}) break;
    offset += size;
  }
  // Set the form's size to the assembled length.
  if (file.size() >= 8) {
    const FieldWriter size =
        FieldWriter(ByteOrder::kLittle).U32(static_cast<uint32_t>(file.size() - 8));
    std::memcpy(file.data() + 4, size.block.data(), size.block.size());
  }
  return file;
}

}  // namespace zyl
