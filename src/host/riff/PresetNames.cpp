#include "PresetNames.h"

#include "../platform/InputFile.h"
#include "ChunkWalker.h"

namespace zyl {
namespace {

// "phdr": records of 38 bytes that open with the name; the last one only ends the list.
constexpr size_t kRecordBytes = 38;
constexpr size_t kNameChars = 20;
constexpr size_t kMaxRecords = 65537;

std::optional<std::vector<std::string>> NamesOf(const Bytes& headers) {
  const size_t records = headers.size() / kRecordBytes;
  if (headers.size() % kRecordBytes != 0 || records == 0 || records > kMaxRecords) {
    return std::nullopt;
  }
  std::vector<std::string> names;
  names.reserve(records - 1);
  for (size_t i = 0; i + 1 < records; ++i) {
    const auto* text = reinterpret_cast<const char*>(headers.data() + i * kRecordBytes);
    const std::string_view field(text, kNameChars);
    names.emplace_back(field.substr(0, field.find('\0')));
  }
  return names;
}

}  // namespace

std::optional<std::vector<std::string>> ReadPresetNames(const std::string& path) {
  const InputFile file(path);
  if (!file.Good()) return std::nullopt;
  return ReadPresetNames(FileSource(file));
}

std::optional<std::vector<std::string>> ReadPresetNames(const ByteSource& source) {
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
      if (head.Is("phdr")) return NamesOf(ReadChunk(source, head));
    }
  }
  return std::nullopt;
}

}  // namespace zyl
