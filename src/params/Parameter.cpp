#include "params/Parameter.h"

namespace {
std::byte* Bytes(void* record) { return static_cast<std::byte*>(record); }
}  // namespace

std::byte* ProgramField(akaiProgram& record, const Parameter& row) {
  void* image = row.record == Record::kTolmo ? static_cast<void*>(record.tolmoChunk.get())
                                             : static_cast<akaiProgramHdrImage*>(&record);
  return Bytes(image) + row.offset;
}

std::byte* KeygroupField(akaiProgram& record, const Parameter& row, int keygroup) {
  const bool extension = row.record == Record::kExtension || row.record == Record::kExtensionZones;
  void* image = extension ? static_cast<void*>(static_cast<vendlKeyGroupImage*>(
                                record.keyGroupExtensions + keygroup))
                          : static_cast<void*>(record.keyGroupArray + keygroup);
  return Bytes(image) + row.offset;
}

std::byte* ZoneField(akaiProgram& record, const Parameter& row, int keygroup, int zone) {
  return KeygroupField(record, row, keygroup) + row.zoneStride * zone;
}
