// The kinds of argument that a script method declares in its parameter list. Each kind reads itself
// from the call, left to right, checks type, class and range in that order, and reports what is
// wrong; a method's body runs only when all of them are well.
//
//   int32_t KGFindByKey(ZylSProgram&, LoadedProgram, Arg<int32_t, "KeyToFind">,
//                       Opt<int32_t, "StartAt">);
//
// A kind's `kDeclared` says the same to people; the method reference is made of it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "frame/Call.h"
#include "frame/ZylSProgram.h"

// A text as a template argument.
template <size_t N>
struct FixedText {
  constexpr FixedText(const char (&source)[N]) { std::copy_n(source, N, text); }
  char text[N]{};
};

enum class Presence { kRequired, kOptional };
enum class NullObject { kRefused, kAllowed };

// What an argument is, in words that the method reference is made of.
struct DeclaredArgument {
  const char* name;
  int type = 0;                     // its code, 0 for any
  const char* className = nullptr;  // of an object
  Presence presence = Presence::kRequired;
  NullObject null = NullObject::kRefused;
  bool changed = false;     // the caller's value is changed in place
  const char* values = "";  // which values it takes, where its type does not say it
  int32_t count = 0;        // not 0: takes 0 to count - 1
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

// Reads an argument of a plain type; false after a report.
bool ReadTyped(Call& call, const char* name, int type, bool required, ROCParam*& param);
// The same, and takes its value.
template <class T>
bool ReadValue(Call& call, const char* name, bool required, ROCParam*& param, T& value) {
  if (!ReadTyped(call, name, kTypeOf<T>, required, param)) return false;
  if (param != nullptr) value = ValueOf<T>(*param);
  return true;
}
// "KeyGroupIndex" below the count of the attached record.
bool ReadKeyGroup(Call& call, ROCParam*& param, int32_t& value);

}  // namespace argument

// Each kind holds the value that the argument had when it was read. A script that a body calls may
// change the caller's variable, so `param` is only there to be passed on, or to be written.

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
    return argument::ReadValue(call, Name.text, false, self.param, self.value);
  }
  explicit operator bool() const { return param != nullptr; }
  const T& operator*() const { return value; }
  const char* Text() const { return value.c_str(); }
  T ValueOr(T fallback) const { return param != nullptr ? value : fallback; }

  T value{};
  ROCParam* param = nullptr;  // null: absent
};

namespace argument {
// Refuses a text that the system would cut at a zero byte; `position` counts from 1.
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

// An optional one.
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

// An optional one.
template <class T, FixedText Name>
struct OptVar : Opt<T, Name> {
  static constexpr DeclaredArgument kDeclared{.name = Name.text,
                                              .type = argument::kTypeOf<T>,
                                              .presence = Presence::kOptional,
                                              .changed = true};
};

// A required integer, 0 to Count - 1.
template <FixedText Name, int32_t Count>
struct IndexArg {
  static constexpr DeclaredArgument kDeclared{
      .name = Name.text, .type = kTypeInteger, .count = Count};

  static bool Read(Call& call, IndexArg& self) {
    const int position = call.position;
    ROCParam* param = nullptr;
    if (!argument::ReadValue(call, Name.text, true, param, self.value)) return false;
    return (*self >= 0 && *self < Count) || call.ValueError(Name.text, position);
  }
  int32_t operator*() const { return value; }

  int32_t value = 0;
};

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

// The attached program record; no argument, but checked in its place among them.
struct LoadedProgram {
  static bool Read(Call& call, LoadedProgram& self) {
    self.record = call.program.program;
    self.attachment = call.program.attachment;
    return self.record != nullptr || call.NoProgram();
  }
  akaiProgram* operator->() const { return record; }
  // Whether the object still has this record: a script that was called may have taken it away.
  bool IsAttachedTo(const ZylSProgram& object) const {
    return object.program != nullptr && object.attachment == attachment;
  }
  // For code that is called without the arguments.
  static LoadedProgram Of(const ZylSProgram& object) { return {object.program, object.attachment}; }

  akaiProgram* record = nullptr;
  uint32_t attachment = 0;
};

// "KeyGroupIndex" below the count. `Negative` says what negative values stand for.
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
      .name = "ZoneIndex", .type = kTypeInteger, .count = kZones};

  static bool Read(Call& call, OneZone& self);
  int32_t operator*() const { return value; }

  int32_t value = 0;
  ROCParam* param = nullptr;
};

namespace argument {
bool ReadAlgo(Call& call, const char* name, Presence presence, NullObject null, ROCParam*& param,
              ROCParam& value);
// The sample object that the last read argument holds; false after a report.
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
  // Null also when the object has been destroyed since.
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

// The argument "Sample": a sample object with a record. An object whose record is gone is
// dropped from the program's list.
struct SampleArg {
  static constexpr DeclaredArgument kDeclared{
      .name = "Sample", .type = kTypeObject, .className = "CSample"};

  static bool Read(Call& call, SampleArg& self);
  genericSample* operator->() const { return object->sample; }
  genericSample* Record() const { return object->sample; }

  CSample* object = nullptr;
};

// A further sample object; its record may be gone.
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

// A sample object or nothing at all; it may be null.
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

// A position whose value is not looked at.
template <FixedText Name>
struct Unused {
  static constexpr DeclaredArgument kDeclared{.name = Name.text, .presence = Presence::kOptional};

  static bool Read(Call& call, Unused&) {
    ++call.position;
    return true;
  }
};

// ---- Arguments that are read in another way. They stand last. ----

// May be left out at the end of the list, but is required where the list has its position: a null
// entry there is no absent argument.
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

// Read by the body when it comes to look at it. A body with one takes the Call itself.
template <class A>
struct Deferred {
  static bool Read(Call&, Deferred&) { return true; }
  bool ReadNow(Call& call) { return A::Read(call, value); }

  A value;
};

// Groups of arguments, as many as the list has.
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
