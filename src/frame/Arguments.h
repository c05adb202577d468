// The kinds of argument that a script method declares in its parameter list. Each kind reads itself
// from the call, left to right, checks type, class and range in that order, and reports what is
// wrong; a method's body runs only when all of them are well.
//
//   int32_t KGFindByKey(ZylSProgram&, LoadedProgram, Arg<int32_t, "KeyToFind">,
//                       Opt<int32_t, "StartAt">);
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>

#include "frame/Call.h"
#include "frame/ZylSProgram.h"

// A text as a template argument.
template <size_t N>
struct FixedText {
  constexpr FixedText(const char (&source)[N]) { std::copy_n(source, N, text); }
  char text[N]{};
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

}  // namespace argument

// A required argument of a plain type.
template <class T, FixedText Name>
struct Arg {
  static bool Read(Call& call, Arg& self) {
    return argument::ReadTyped(call, Name.text, argument::kTypeOf<T>, true, self.param);
  }
  decltype(auto) operator*() const { return argument::ValueOf<T>(*param); }
  const char* Text() const { return param->Str().c_str(); }

  ROCParam* param = nullptr;  // the caller's own value
};

// An optional argument of a plain type.
template <class T, FixedText Name>
struct Opt {
  static bool Read(Call& call, Opt& self) {
    return argument::ReadTyped(call, Name.text, argument::kTypeOf<T>, false, self.param);
  }
  explicit operator bool() const { return param != nullptr; }
  decltype(auto) operator*() const { return argument::ValueOf<T>(*param); }
  const char* Text() const { return param->Str().c_str(); }
  T ValueOr(T fallback) const { return param != nullptr ? T(**this) : fallback; }

  ROCParam* param = nullptr;  // null: absent
};

// A required array.
template <FixedText Name>
struct ArrayArg {
  static bool Read(Call& call, ArrayArg& self) {
    return argument::ReadTyped(call, Name.text, kTypeArray, true, self.param);
  }
  ROCParam* param = nullptr;
};

// The attached program record; no argument, but checked in its place among them.
struct LoadedProgram {
  static bool Read(Call& call, LoadedProgram& self) {
    self.record = call.program.program;
    return self.record != nullptr || call.NoProgram();
  }
  akaiProgram* operator->() const { return record; }

  akaiProgram* record = nullptr;
};

// "KeyGroupIndex" below the count; negative values stand for all or the selected keygroups.
struct KeyGroupIndex {
  static bool Read(Call& call, KeyGroupIndex& self);
  int32_t operator*() const { return param->Int(); }

  ROCParam* param = nullptr;
};

// "KeyGroupIndex" of one keygroup, 0 to count - 1.
struct OneKeyGroup {
  static bool Read(Call& call, OneKeyGroup& self);
  int32_t operator*() const { return param->Int(); }

  ROCParam* param = nullptr;
};

// "ZoneIndex", 0 to 3.
struct OneZone {
  static bool Read(Call& call, OneZone& self);
  int32_t operator*() const { return param->Int(); }

  ROCParam* param = nullptr;
};

enum class Presence { kRequired, kOptional };
enum class NullObject { kRefused, kAllowed };

namespace argument {
bool ReadAlgo(Call& call, const char* name, Presence presence, NullObject null, ROCParam*& param);
bool ReadSample(Call& call, const char* name, NullObject null, CSample*& object);
}  // namespace argument

// An algorithm object.
template <FixedText Name, Presence P = Presence::kRequired, NullObject N = NullObject::kRefused>
struct AlgoArg {
  static bool Read(Call& call, AlgoArg& self) {
    return argument::ReadAlgo(call, Name.text, P, N, self.param);
  }
  RIOObject* Object() const { return param == nullptr ? nullptr : param->Object(); }

  ROCParam* param = nullptr;
};

// The first argument "Sample": a sample object with a record. An object whose record is gone is
// dropped from the program's list.
struct SampleArg {
  static bool Read(Call& call, SampleArg& self);
  genericSample* operator->() const { return object->sample; }
  genericSample* Record() const { return object->sample; }

  CSample* object = nullptr;
};

// A further sample object; its record may be gone.
template <FixedText Name, NullObject N = NullObject::kRefused>
struct OtherSample {
  static bool Read(Call& call, OtherSample& self) {
    return argument::ReadSample(call, Name.text, N, self.object);
  }
  genericSample* Record() const { return object == nullptr ? nullptr : object->sample; }

  CSample* object = nullptr;
};
