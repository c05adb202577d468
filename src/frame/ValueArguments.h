// The arguments of plain types; see Arguments.h.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>

#include "frame/Call.h"
#include "frame/ZylSProgram.h"

// A string as a template argument.
template <size_t N>
struct FixedText {
  constexpr FixedText(const char (&source)[N]) { std::copy_n(source, N, text); }
  char text[N]{};
};

enum class Presence { kRequired, kOptional };
enum class NullObject { kRefused, kAllowed };

// The description of an argument in the method reference.
struct DeclaredArgument {
  const char* name;
  int type = 0;                     // type code, 0 for any
  const char* className = nullptr;  // for objects
  Presence presence = Presence::kRequired;
  NullObject null = NullObject::kRefused;
  bool changed = false;     // the caller's value is changed in place
  const char* values = "";  // valid values, if the type doesn't imply them
  int32_t first = 0;        // with `last` at or above `first`: the range of valid values
  int32_t last = -1;
};

namespace argument {

template <class T>
inline constexpr int kTypeOf = 0;
template <>
inline constexpr int kTypeOf<int32_t> = kTypeInteger;
template <>
inline constexpr int kTypeOf<bool> = kTypeBool;
template <>
inline constexpr int kTypeOf<double> = kTypeDouble;
template <>
inline constexpr int kTypeOf<std::string> = kTypeString;

template <class T>
decltype(auto) ValueOf(const ROCParam& param) {
  if constexpr (std::is_same_v<T, int32_t>) {
    return param.Int();
  } else if constexpr (std::is_same_v<T, bool>) {
    return param.Bool();
  } else if constexpr (std::is_same_v<T, double>) {
    return param.Double();
  } else {
    return param.Str();
  }
}

// Reads an argument of a plain type; false if an error was reported.
inline bool ReadTyped(Call& call, const char* name, int type, bool required, ROCParam*& param) {
  const int position = call.position++;
  param = call.Argument(position);
  const bool valid = param == nullptr ? !required : param->Type() == type;
  return valid || call.TypeError(name, type, position);
}
// Also copies its value.
template <class T>
bool ReadValue(Call& call, const char* name, bool required, ROCParam*& param, T& value) {
  if (!ReadTyped(call, name, kTypeOf<T>, required, param)) return false;
  if (param != nullptr) value = ValueOf<T>(*param);
  return true;
}
// Reports a value outside `first` to `last`; `position` counts from 1.
bool CheckRange(Call& call, const char* name, int position, int32_t value, int32_t first,
                int32_t last);
// "KeyGroupIndex", less than the keygroup count of the attached record.
bool ReadKeyGroup(Call& call, ROCParam*& param, int32_t& value);

}  // namespace argument

// Each kind copies the argument's value when it is read: a script called by the body may change the
// caller's variable. Use `param` only to forward the variable or to write to it.

// A required argument of a plain type.
template <class T, FixedText Name>
struct Arg {
  static constexpr DeclaredArgument kDeclared{.name = Name.text, .type = argument::kTypeOf<T>};

  static bool Read(Call& call, Arg& self) {
    return argument::ReadValue(call, Name.text, true, self.param, self.value);
  }
  const T& operator*() const { return value; }
  const char* Text() const { return value.c_str(); }

  T value{};
  ROCParam* param = nullptr;
};

// An optional argument of a plain type.
template <class T, FixedText Name>
struct Opt {
  static constexpr DeclaredArgument kDeclared{
      .name = Name.text, .type = argument::kTypeOf<T>, .presence = Presence::kOptional};

  static bool Read(Call& call, Opt& self) {
    self.position = call.position;
    return argument::ReadValue(call, Name.text, false, self.param, self.value);
  }
  // Reports a value that is invalid in the state that the body finds.
  std::nullopt_t Reject(Call& call) const {
    call.ValueError(Name.text, position);
    return std::nullopt;
  }
  explicit operator bool() const { return param != nullptr; }
  const T& operator*() const { return value; }
  const char* Text() const { return value.c_str(); }
  T ValueOr(T fallback) const { return param != nullptr ? value : fallback; }

  T value{};
  ROCParam* param = nullptr;  // null: absent
  int position = 0;           // in the argument list, from 1
};

namespace argument {
// Rejects a path with a NUL byte, which system calls would truncate; `position` counts from 1.
bool CheckPath(Call& call, const std::string& path, int position);
}  // namespace argument

// A required path or file name.
template <FixedText Name>
struct PathArg : Arg<std::string, Name> {
  static bool Read(Call& call, PathArg& self) {
    const int position = call.position;
    return Arg<std::string, Name>::Read(call, self) && argument::CheckPath(call, *self, position);
  }
};

// An optional path or file name.
template <FixedText Name>
struct OptPath : Opt<std::string, Name> {
  static bool Read(Call& call, OptPath& self) {
    const int position = call.position;
    return Opt<std::string, Name>::Read(call, self) &&
           (!self || argument::CheckPath(call, *self, position));
  }
};

// A required argument of a plain type whose value the method changes in place.
template <class T, FixedText Name>
struct VarArg : Arg<T, Name> {
  static constexpr DeclaredArgument kDeclared{
      .name = Name.text, .type = argument::kTypeOf<T>, .changed = true};
};

// The optional form of VarArg.
template <class T, FixedText Name>
struct OptVar : Opt<T, Name> {
  static constexpr DeclaredArgument kDeclared{.name = Name.text,
                                              .type = argument::kTypeOf<T>,
                                              .presence = Presence::kOptional,
                                              .changed = true};
};

// A required integer, First to Last.
template <FixedText Name, int32_t First, int32_t Last>
struct ArgInRange : Arg<int32_t, Name> {
  static constexpr DeclaredArgument kDeclared{
      .name = Name.text, .type = kTypeInteger, .first = First, .last = Last};

  static bool Read(Call& call, ArgInRange& self) {
    const int position = call.position;
    return Arg<int32_t, Name>::Read(call, self) &&
           argument::CheckRange(call, Name.text, position, *self, First, Last);
  }
};

// The optional form.
template <FixedText Name, int32_t First, int32_t Last>
struct OptInRange : Opt<int32_t, Name> {
  static constexpr DeclaredArgument kDeclared{.name = Name.text,
                                              .type = kTypeInteger,
                                              .presence = Presence::kOptional,
                                              .first = First,
                                              .last = Last};

  static bool Read(Call& call, OptInRange& self) {
    return Opt<int32_t, Name>::Read(call, self) &&
           (!self || argument::CheckRange(call, Name.text, self.position, *self, First, Last));
  }
};

// A required index less than Count.
template <FixedText Name, int32_t Count>
using IndexArg = ArgInRange<Name, 0, Count - 1>;

// A required array, filled by the method.
template <FixedText Name>
struct ArrayArg {
  static constexpr DeclaredArgument kDeclared{
      .name = Name.text, .type = kTypeArray, .changed = true};

  static bool Read(Call& call, ArrayArg& self) {
    return argument::ReadTyped(call, Name.text, kTypeArray, true, self.param);
  }
  ROCParam* param = nullptr;
};
