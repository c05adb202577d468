// One row for each field of the program record that scripts can reach: where it lies, how wide it
// is, and what a write of it does besides storing. The field methods, the methods by number, the
// display texts and the pad image all read these rows.
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

// A text field is this long, filled up with NULs; one of full length has no end mark.
inline constexpr size_t kTextFieldBytes = sizeof(akaiProgramHdrImage::name);

enum class Record : uint8_t {
  kProgram,
  kTolmo,  // the program's organ extension
  kKeygroup,
  kExtension,      // of a keygroup
  kZone,           // inside its keygroup
  kKeygroupZones,  // an array of the keygroup with an element for each zone
  kExtensionZones,
};

// How a new value is stored.
enum class Store : uint8_t {
  kField,          // in place, the program is dirty
  kMidiChannel,    // by the program object, whose value it is
  kIndyOutput,     // in place, and the modules hear of the zones' outputs too
  kKeyGroups,      // in place, and in the byte that older readers know
  kByteResonance,  // by the program library, which keeps its own account
  kShortResonance,
  kTolmo,  // in place, and the keygroup's organ extension is switched on
};

// What a typed text stands for when it stands for no value: nothing is stored then.
inline constexpr int32_t kNoValue = INT32_MIN;

// A typed text that contains `part`, in any case, means `value` and is replaced by `canonical`.
struct Keyword {
  const char* part;
  int32_t value;
  const char* canonical;
  int32_t valueWithSlash = kNoValue;  // for a text that also contains "/"
};

// How values are shown and typed.
struct TextForm {
  std::span<const char* const> names = {};  // shown for the values 0, 1, ...
  const char* otherwise = "";               // shown for every other value
  // The first keyword that a typed text contains decides; without keywords MatchText does.
  std::span<const Keyword> keywords = {};
  const char* unmatched = nullptr;  // replaces a typed text that contains no keyword
  // A form that shows the value as a number instead.
  enum class Numbers : uint8_t {
    kNone,
    kFromOne,    // stored from 0, shown from 1
    kOffAtZero,  // "Off" for 0
  } numbers = Numbers::kNone;
};

struct Parameter {
  std::string_view method;  // the field method's name
  Record record;
  FieldType type;
  uint16_t place;  // byte offset in the record; for a zone's field, of zone 0
  uint16_t zoneStride = 0;
  int16_t number = 0;  // 0: reached by name alone
  Store store = Store::kField;
  const TextForm* text = nullptr;  // null: it has no text
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

// A field read with its sign, and written with as many low bits as it has.
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
// The value that a field holds after `newValue` was stored.
inline int32_t AsStored(FieldType type, int32_t newValue) {
  return VisitFieldType(
      type, [&](auto value) -> int32_t { return static_cast<decltype(value)>(newValue); });
}

// A text field's text, and a text stored into one: what is beyond its length is left off.
inline std::string LoadText(const std::byte* field) {
  const char* text = reinterpret_cast<const char*>(field);
  return {text, strnlen(text, kTextFieldBytes)};
}
inline void StoreText(std::byte* field, const char* text) {
  const size_t length = strnlen(text, kTextFieldBytes);
  std::memset(field, 0, kTextFieldBytes);
  std::memcpy(field, text, length);
}

// The bytes of a field. The record and the keygroup must be there: `keygroup` and `zone` are taken
// as they are.
std::byte* ProgramField(akaiProgram& record, const Parameter& row);
std::byte* KeygroupField(akaiProgram& record, const Parameter& row, int keygroup);
std::byte* ZoneField(akaiProgram& record, const Parameter& row, int keygroup, int zone);
