// The argument kinds that a script method declares in its parameter list. Read() of each kind takes
// the next argument of the call, checks its type, class and range in that order, and reports an
// error; the body of a method runs only if all arguments are valid.
//
//   int32_t KGFindByKey(ZylSProgram&, LoadedProgram, Arg<int32_t, "KeyToFind">,
//                       Opt<int32_t, "StartAt">);
//
// `kDeclared` describes the kind; the method reference is generated from it.
#pragma once

#include <cstdint>
#include <tuple>
#include <type_traits>
#include <vector>

#include "frame/ValueArguments.h"

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

// Read by the body when it needs the value, so the body must take the Call.
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
