// Makes a script method from a body: Method reads the arguments that the body's parameter list
// declares, calls the body if all are valid, and converts its result to a script value.
//
// A body is a free function whose first parameter is the program object, or the Call if it reports
// errors itself. It takes the arguments by value or by constant reference. Copying an argument
// right after it was stored is slow (the load waits for narrower stores), so frequent methods take
// references. It returns a plain value, a variant of plain values, or an optional that is empty
// after an error.
#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <variant>

#include "frame/Arguments.h"
#include "frame/Call.h"
#include "frame/Forms.h"
#include "frame/ZylSProgram.h"

namespace method {

// "ZylSProgram::" followed by the method's name, concatenated at compile time.
template <FixedText Name>
struct QualifiedName {
  static constexpr auto kText = [] {
    constexpr char kPrefix[] = "ZylSProgram::";
    constexpr size_t kPrefixLength = sizeof(kPrefix) - 1;
    std::array<char, kPrefixLength + sizeof(Name.text)> joined{};
    std::copy_n(kPrefix, kPrefixLength, joined.begin());
    std::copy_n(Name.text, sizeof(Name.text), joined.begin() + kPrefixLength);
    return joined;
  }();
};

// The result value is created before the body runs, so that a call that can't allocate it changes
// nothing. Setting it afterwards doesn't allocate.
template <class T>
struct Result {
  static ROCParam* Make() { return newROCParam(T{}); }
  // False if the body returned no result.
  static bool Set(ROCParam& place, T value) {
    if constexpr (std::is_same_v<T, int32_t>) {
      place.SetInt(value);
    } else if constexpr (std::is_same_v<T, bool>) {
      place.SetBool(value);
    } else {
      place.SetDouble(value);
    }
    return true;
  }
};
template <>
struct Result<std::string> {
  static ROCParam* Make() { return newROCParam(std::string_view()); }
  static bool Set(ROCParam& place, std::string value) {
    place.SwapStr(value);
    return true;
  }
};
template <>
struct Result<CSample*> {
  static ROCParam* Make() { return newROCParam(static_cast<RIOObject*>(nullptr)); }
  static bool Set(ROCParam& place, CSample* object) {
    place.SetRIOPtr(object);  // sample objects are created with their anchor
    return true;
  }
};
template <>
struct Result<std::variant<CSample*, int32_t>> : Result<CSample*> {
  static bool Set(ROCParam& place, const std::variant<CSample*, int32_t>& value) {
    if (const auto* object = std::get_if<CSample*>(&value)) {
      return Result<CSample*>::Set(place, *object);
    }
    place = ROCParam(std::get<int32_t>(value));
    return true;
  }
};
template <class T>
struct Result<std::optional<T>> : Result<T> {
  static bool Set(ROCParam& place, std::optional<T> value) {
    return value.has_value() && Result<T>::Set(place, *std::move(value));
  }
};

// Reads a body's arguments and runs it.
template <class R, class Self, class... P>
void RunBody(Call& call, R (*body)(Self&, P...)) {
  std::tuple<std::remove_cvref_t<P>...> values;
  const auto read = [&](auto&... value) {
    return (std::decay_t<decltype(value)>::Read(call, value) && ...);
  };
  if (!std::apply(read, values)) return;
  const auto run = [&](auto&... value) -> R {
    if constexpr (std::is_same_v<Self, Call>) {
      return body(call, static_cast<P&&>(value)...);
    } else {
      return body(call.program, static_cast<P&&>(value)...);
    }
  };
  if constexpr (std::is_void_v<R>) {
    std::apply(run, values);
  } else {
    ROCParamPtr result(Result<R>::Make());
    if (Result<R>::Set(*result, std::apply(run, values))) call.Return(result.release());
  }
}

// Runs the first body whose first argument has the given type, otherwise the last body.
template <auto Body, auto... Others>
void RunFirstFitting(Call& call) {
  if constexpr (sizeof...(Others) != 0) {
    const ROCParam* first = call.Argument(1);
    if (first == nullptr || first->Type() != Shape<decltype(Body)>::FirstType()) {
      return RunFirstFitting<Others...>(call);
    }
  }
  RunBody(call, Body);
}

template <auto... Bodies>
void RunForms(Call& call, const Forms<Bodies...>&) {
  RunFirstFitting<Bodies...>(call);
}

}  // namespace method

template <FixedText Name, auto Body>
struct Method {
  static_assert(
      !std::is_same_v<decltype(Body), bool (*)(Call&)>,
      "declare the arguments in the parameter list: frame/Arguments.h has a kind for each");

  // The name in error reports.
  static constexpr const char* kName = method::QualifiedName<Name>::kText.data();

  static void Run(Call& call) {
    if constexpr (requires { method::RunForms(call, *Body); }) {
      method::RunForms(call, *Body);
    } else {
      method::RunBody(call, Body);
    }
  }
};
