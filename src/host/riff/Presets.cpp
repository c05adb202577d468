#include "Presets.h"

#include "../platform/InputFile.h"
#include "ChunkWalker.h"

namespace zyl {
namespace {

// "phdr" has records of 38 bytes that begin with the name, program number and bank number. The last
// record is a terminator.
constexpr size_t kRecordBytes = 38;
constexpr size_t kNameChars = 20;
constexpr size_t kMaxRecords = 65537;

std::optional<std::vector<ZylPreset>> PresetsOf(const Bytes& headers) {
  const size_t records = headers.size() / kRecordBytes;
  if (headers.size() % kRecordBytes != 0 || records == 0 || records > kMaxRecords) {
    return std::nullopt;
  }
  std::vector<ZylPreset> presets;
  presets.reserve(records - 1);
  for (size_t i = 0; i + 1 < records; ++i) {
    FieldReader in(headers.data() + i * kRecordBytes, kRecordBytes, ByteOrder::kLittle);
    const std::string_view field = in.Text(kNameChars);
    ZylPreset& preset = presets.emplace_back();
    preset.name = field.substr(0, field.find('\0'));
    preset.program = in.U16();
    preset.bank = in.U16();
  }
  return presets;
}

}  // namespace

std::optional<std::vector<ZylPreset>> ReadPresets(const std::string& path) {
  const InputFile file(path);
  if (!file.Good()) return std::nullopt;
  return ReadPresets(FileSource(file));
}

std::optional<std::vector<ZylPreset>> ReadPresets(const ByteSource& source) {
  ChunkWalker walker(source);
  if (walker.Form() != "RIFF" || walker.Type() != "sfbk" || walker.FormCut()) return std::nullopt;
  ChunkHead list;
  while (walker.Next(list)) {
    char type[4];
    if (!list.Whole()) return std::nullopt;
    if (!list.Is("LIST") || source.ReadAt(list.offset, type, 4) != 4) continue;
    if (std::string_view(type, 4) != "pdta") continue;
    ChunkWalker records(source, list, ByteOrder::kLittle);
    ChunkHead head;
    while (records.Next(head)) {
      if (head.offset + head.size > list.offset + list.size) return std::nullopt;
      if (head.Is("phdr")) return PresetsOf(ReadChunk(source, head));
    }
  }
  return std::nullopt;
}

}  // namespace zyl

bool ZylReadPresets(const std::string& path, std::vector<ZylPreset>& presets) {
  auto read = zyl::ReadPresets(path);
  if (read) presets = std::move(*read);
  return read.has_value();
}
