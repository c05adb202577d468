#include "params/Parameter.h"

#include <algorithm>

#include "params/ParameterTable.h"

namespace {

// ---- Every field of the records has a row or is listed here ----

// clang-format off
constexpr std::string_view kNoParameters[] = {
    "keyGroupsByte", "fileName", "tmMidiChannel", "lockCount", "zones", "selected",
    "tolmoChunkReference", "keyGroupArrayReference", "sampleTableReference",
    "keyGroupExtensionsReference", "SamplePathReference"};
// clang-format on

// Fields at `kBase` in these records.
template <size_t kBase, Record... kRecords>
struct Fields {
  static consteval bool HaveRow(size_t offset, std::string_view name) {
    const auto isRow = [&](const Parameter& row) {
      return ((row.record == kRecords) || ...) && row.offset == kBase + offset;
    };
    return std::ranges::any_of(parameter_rows::kRows, isRow) ||
           std::ranges::find(kNoParameters, name) != std::end(kNoParameters);
  }
};

#define ZYL_CHECK_FIELD(offset, type, name)      \
  static_assert(Checked::HaveRow(offset, #name), \
                "the field has no row in ParameterTable.h: " #name);
#define ZYL_CHECK_ARRAY(offset, type, name, count) ZYL_CHECK_FIELD(offset, type, name)
#define ZYL_SKIP_LIBRARY(offset, count)
#define ZYL_CHECK_FIELDS(list, ...)                          \
  namespace list##_rows {                                    \
    using Checked = Fields<__VA_ARGS__>;                     \
    list(ZYL_CHECK_FIELD, ZYL_CHECK_ARRAY, ZYL_SKIP_LIBRARY) \
  }

ZYL_CHECK_FIELDS(ZYL_PROGRAM_HEADER_FIELDS, 0, Record::kProgram)
ZYL_CHECK_FIELDS(ZYL_ORGAN_FIELDS, 0, Record::kTolmo)
ZYL_CHECK_FIELDS(ZYL_KEYGROUP_FIELDS, 0, Record::kKeygroup, Record::kKeygroupZones)
ZYL_CHECK_FIELDS(ZYL_KEYGROUP_EXTENSION_FIELDS, 0, Record::kExtension, Record::kExtensionZones)
ZYL_CHECK_FIELDS(ZYL_ZONE_FIELDS, offsetof(akaiKeyGroup, zones), Record::kZone)

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
