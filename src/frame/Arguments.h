// The argument kinds that a script method declares in its parameter list. Read() of each kind takes
// the next argument of the call, checks its type, class and range in that order, and reports an
// error; the body of a method runs only if all arguments are valid.
//
//   int32_t KGFindByKey(ZylSProgram&, LoadedProgram, Arg<int32_t, "KeyToFind">,
//                       Opt<int32_t, "StartAt">);
//
// `kDeclared` describes the kind; the method reference is generated from it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

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

// The attached program record. Not an argument, but checked in the order of the parameter list.
struct LoadedProgram {
  static bool Read(Call& call, LoadedProgram& self) {
    self.record = call.program.program;
    self.attachment = call.program.attachment;
    return self.record != nullptr || call.NoProgram();
  }
  akaiProgram* operator->() const { return record; }
  // False after a called script has detached the record.
  bool IsAttachedTo(const ZylSProgram& object) const {
    return object.program != nullptr && object.attachment == attachment;
  }
  // For code that doesn't receive the arguments.
  static LoadedProgram Of(const ZylSProgram& object) { return {object.program, object.attachment}; }

  akaiProgram* record = nullptr;
  uint32_t attachment = 0;
};

// "KeyGroupIndex" less than the count. `Negative` describes the valid values.
template <FixedText Negative>
struct KeyGroupBelowCount {
  static constexpr DeclaredArgument kDeclared{
      .name = "KeyGroupIndex", .type = kTypeInteger, .values = Negative.text};

  static bool Read(Call& call, KeyGroupBelowCount& self) {
    return argument::ReadKeyGroup(call, self.param, self.value);
  }
  int32_t operator*() const { return value; }

  int32_t value = 0;
  ROCParam* param = nullptr;
};
using KeyGroupIndex =
    KeyGroupBelowCount<"0 to count - 1; -1 for all keygroups, -2 for the selected ones">;
using KeyGroupOrAll = KeyGroupBelowCount<"0 to count - 1; negative for all keygroups">;
using KeyGroupOrNone = KeyGroupBelowCount<"0 to count - 1; negative for none">;

// "KeyGroupIndex" of one keygroup, 0 to count - 1.
struct OneKeyGroup {
  static constexpr DeclaredArgument kDeclared{
      .name = "KeyGroupIndex", .type = kTypeInteger, .values = "0 to count - 1"};

  static bool Read(Call& call, OneKeyGroup& self);
  int32_t operator*() const { return value; }

  int32_t value = 0;
  ROCParam* param = nullptr;
};

// "ZoneIndex", 0 to 3.
struct OneZone {
  static constexpr DeclaredArgument kDeclared{
      .name = "ZoneIndex", .type = kTypeInteger, .last = kZones - 1};

  static bool Read(Call& call, OneZone& self);
  int32_t operator*() const { return value; }

  int32_t value = 0;
  ROCParam* param = nullptr;
};

namespace argument {
bool ReadAlgo(Call& call, const char* name, Presence presence, NullObject null, ROCParam*& param,
              ROCParam& value);
// Gets the sample object of the argument that was read last; false if an error was reported.
bool SampleOf(Call& call, const char* name, NullObject null, const ROCParam& param,
              CSample*& sample);
}  // namespace argument

// An algorithm object.
template <FixedText Name, Presence P = Presence::kRequired, NullObject N = NullObject::kRefused>
struct AlgoArg {
  static constexpr DeclaredArgument kDeclared{
      .name = Name.text, .type = kTypeObject, .className = "ROCAlgo", .presence = P, .null = N};

  static bool Read(Call& call, AlgoArg& self) {
    return argument::ReadAlgo(call, Name.text, P, N, self.param, self.value);
  }
  // Null if the object has been destroyed since.
  RIOObject* Object() const { return value.Object(); }

  ROCParam value;
  ROCParam* param = nullptr;
};

// "Pad": a data pad.
struct PadArg {
  static constexpr DeclaredArgument kDeclared{
      .name = "Pad", .type = kTypeObject, .className = "RODPad"};

  static bool Read(Call& call, PadArg& self);
  RODPad* operator->() const { return object; }

  RODPad* object = nullptr;
};

// "Sample": a sample object with a record. An object whose record has been deleted is removed from
// the program's list.
struct SampleArg {
  static constexpr DeclaredArgument kDeclared{
      .name = "Sample", .type = kTypeObject, .className = "CSample"};

  static bool Read(Call& call, SampleArg& self);
  genericSample* operator->() const { return object->sample; }
  genericSample* Record() const { return object->sample; }

  CSample* object = nullptr;
};

// Another sample object; its record may have been deleted.
template <FixedText Name, NullObject N = NullObject::kRefused>
struct OtherSample {
  static constexpr DeclaredArgument kDeclared{
      .name = Name.text, .type = kTypeObject, .className = "CSample", .null = N};

  static bool Read(Call& call, OtherSample& self) {
    ROCParam* param = nullptr;
    return argument::ReadTyped(call, Name.text, kTypeObject, true, param) &&
           argument::SampleOf(call, Name.text, N, *param, self.object);
  }
  genericSample* Record() const { return object == nullptr ? nullptr : object->sample; }

  CSample* object = nullptr;
};

// An optional sample object, which may be null.
template <FixedText Name>
struct OptionalSample {
  static constexpr DeclaredArgument kDeclared{.name = Name.text,
                                              .type = kTypeObject,
                                              .className = "CSample",
                                              .presence = Presence::kOptional,
                                              .null = NullObject::kAllowed};

  static bool Read(Call& call, OptionalSample& self) {
    if (!argument::ReadTyped(call, Name.text, kTypeObject, false, self.param)) return false;
    return self.param == nullptr ||
           argument::SampleOf(call, Name.text, NullObject::kAllowed, *self.param, self.object);
  }
  bool IsAbsent() const { return param == nullptr; }

  ROCParam* param = nullptr;
  CSample* object = nullptr;
};

// An ignored argument.
template <FixedText Name>
struct Unused {
  static constexpr DeclaredArgument kDeclared{.name = Name.text, .presence = Presence::kOptional};

  static bool Read(Call& call, Unused&) {
    ++call.position;
    return true;
  }
};

// ---- Arguments with their own reading rule. They come last in the list. ----

// Optional at the end of the list, but required if the list has the position: a null entry there is
// an error.
template <class A>
struct IfCounted {
  static constexpr DeclaredArgument kDeclared = [] {
    DeclaredArgument declared = A::kDeclared;
    declared.presence = Presence::kOptional;
    return declared;
  }();

  static bool Read(Call& call, IfCounted& self) {
    self.counted = call.Count() >= call.position;
    return !self.counted || A::Read(call, self.value);
  }

  bool counted = false;
  A value;
};

// Read by the body when needed. Such a body takes the Call.
template <class A>
struct Deferred {
  static bool Read(Call&, Deferred&) { return true; }
  bool ReadNow(Call& call) { return A::Read(call, value); }

  A value;
};

// Groups of arguments up to the end of the list.
template <class... A>
struct Repeated {
  static bool Read(Call& call, Repeated& self) {
    const auto read = [&](auto&... argument) {
      return (std::decay_t<decltype(argument)>::Read(call, argument) && ...);
    };
    while (call.position <= call.Count()) {
      if (!std::apply(read, self.groups.emplace_back())) return false;
    }
    return true;
  }

  std::vector<std::tuple<A...>> groups;
};
