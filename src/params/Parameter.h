// One row for each field of the program record that scripts can access: its offset, its type, and
// the side effects of storing it. The field methods, the methods by number, the display texts and
// the pad slots use these rows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

#include "host/akai.h"
#include "host/base.h"

enum class FieldType : uint8_t { kNone, kU8, kI8, kU16, kI16, kI32, kText };

// The length of a text field. Shorter texts are padded with NULs; a full one isn't terminated.
inline constexpr size_t kTextFieldBytes = sizeof(akaiProgramHdrImage::name);

enum class Record : uint8_t {
  kProgram,
  kTolmo,  // the organ extension of the program
  kKeygroup,
  kExtension,      // of a keygroup
  kZone,           // part of the keygroup record
  kKeygroupZones,  // an array in the keygroup with one element per zone
  kExtensionZones,
};

// How a new value is stored.
enum class Store : uint8_t {
  kField,          // in place; sets the dirty flag
  kMidiChannel,    // by the program object, which owns the value
  kIndyOutput,     // in place; also notifies of the zones' outputs
  kKeyGroups,      // in place, and in the byte that older readers use
  kByteResonance,  // by akaiProgram's functions
  kShortResonance,
  kTolmo,  // in place; enables the organ extension of the keygroup
};

// Whether akaiProgram's functions write the field. Storing such a value sets no dirty flag.
constexpr bool StoredByLibrary(Store store) {
  return store == Store::kByteResonance || store == Store::kShortResonance;
}

// What a typed text without a value means: nothing is stored.
inline constexpr int32_t kNoValue = INT32_MIN;

// A typed text that contains `part` (ignoring case) means `value` and is replaced with `canonical`.
struct Keyword {
  const char* part;
  int32_t value;
  const char* canonical;
  int32_t valueWithSlash = kNoValue;  // for a text that also contains "/"
};

// How values are shown and parsed.
struct TextForm {
  std::span<const char* const> names = {};  // shown for the values 0, 1, ...
  const char* otherwise = "";               // shown for every other value
  // The first keyword that a typed text contains determines its value; without keywords, MatchText
  // does.
  std::span<const Keyword> keywords = {};
  const char* unmatched = nullptr;  // replaces a typed text that contains no keyword
  // Shows the value as a number instead.
  enum class Numbers : uint8_t {
    kNone,
    kFromOne,    // shown as the value plus 1
    kOffAtZero,  // "Off" for 0
  } numbers = Numbers::kNone;
};

struct Parameter {
  std::string_view method;  // name of the field method
  Record record;
  FieldType type;
  uint16_t offset;  // byte offset in the record; for zone fields, of zone 0
  uint16_t zoneStride = 0;
  int16_t number = 0;  // 0: accessible only by name
  Store store = Store::kField;
  const TextForm* text = nullptr;  // null: no text
};

template <class T>
constexpr FieldType FieldTypeOf() {
  using Field = std::remove_all_extents_t<T>;
  if constexpr (std::is_same_v<Field, char>) return FieldType::kText;
  if constexpr (std::is_same_v<Field, uint8_t>) return FieldType::kU8;
  if constexpr (std::is_same_v<Field, int8_t>) return FieldType::kI8;
  if constexpr (std::is_same_v<Field, uint16_t>) return FieldType::kU16;
  if constexpr (std::is_same_v<Field, int16_t>) return FieldType::kI16;
  if constexpr (std::is_same_v<Field, int32_t>) return FieldType::kI32;
}

// Calls `visit` with a value of the field's C++ type.
template <class Visitor>
decltype(auto) VisitFieldType(FieldType type, Visitor&& visit) {
  switch (type) {
    case FieldType::kU8:
      return visit(uint8_t{});
    case FieldType::kI8:
      return visit(int8_t{});
    case FieldType::kU16:
      return visit(uint16_t{});
    case FieldType::kI16:
      return visit(int16_t{});
    default:
      return visit(int32_t{});
  }
}

// Loads a field, sign-extended if its type is signed. Storing truncates to the width of the field.
inline int32_t LoadField(const std::byte* field, FieldType type) {
  return VisitFieldType(type, [&](auto value) -> int32_t {
    std::memcpy(&value, field, sizeof(value));
    return value;
  });
}
inline void StoreField(std::byte* field, FieldType type, int32_t newValue) {
  VisitFieldType(type, [&](auto value) {
    value = static_cast<decltype(value)>(newValue);
    std::memcpy(field, &value, sizeof(value));
  });
}
// The value that a field has after storing `newValue`.
inline int32_t AsStored(FieldType type, int32_t newValue) {
  return VisitFieldType(
      type, [&](auto value) -> int32_t { return static_cast<decltype(value)>(newValue); });
}

// Load and store a text field. Texts that are too long are truncated.
inline std::string LoadText(const std::byte* field) {
  const char* text = reinterpret_cast<const char*>(field);
  return {text, strnlen(text, kTextFieldBytes)};
}
inline void StoreText(std::byte* field, const char* text) {
  const size_t length = strnlen(text, kTextFieldBytes);
  std::memset(field, 0, kTextFieldBytes);
  std::memcpy(field, text, length);
}

// The address of a field. The record and the keygroup must exist: `keygroup` and `zone` aren't
// checked.
std::byte* ProgramField(akaiProgram& record, const Parameter& row);
std::byte* KeygroupField(akaiProgram& record, const Parameter& row, int keygroup);
std::byte* ZoneField(akaiProgram& record, const Parameter& row, int keygroup, int zone);
