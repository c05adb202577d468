// From a body to a script method: Method reads the arguments that the body's parameter list
// declares, calls the body when all is well, and makes its result a script value.
//
// A body is a free function whose first parameter is the program object, or the Call itself when it
// reports failures of its own. What it returns is the result: a plain value, a variant of them, or
// an optional one that is empty after a report.
#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <tuple>
#include <utility>
#include <variant>

#include "frame/Arguments.h"
#include "frame/Call.h"
#include "frame/Forms.h"
#include "frame/ZylSProgram.h"

namespace method {

// "ZylSProgram::" and the method's name, put together by the compiler.
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

template <class T>
void SetResult(Call& call, const T& value) {
  call.Return(newROCParam(value));
}
inline void SetResult(Call& call, CSample* object) {
  call.Return(newROCParam(static_cast<RIOObject*>(object)));
}
template <class... T>
void SetResult(Call& call, const std::variant<T...>& value) {
  std::visit([&](const auto& held) { SetResult(call, held); }, value);
}
template <class T>
void SetResult(Call& call, const std::optional<T>& value) {
  if (value) SetResult(call, *value);
}

// Reads a body's arguments and runs it.
template <class R, class Self, class... P>
void RunBody(Call& call, R (*body)(Self&, P...)) {
  std::tuple<P...> values;
  const auto read = [&](auto&... value) {
    return (std::decay_t<decltype(value)>::Read(call, value) && ...);
  };
  if (!std::apply(read, values)) return;
  const auto run = [&](auto&... value) -> R {
    if constexpr (std::is_same_v<Self, Call>) {
      return body(call, std::move(value)...);
    } else {
      return body(call.program, std::move(value)...);
    }
  };
  if constexpr (std::is_void_v<R>) {
    std::apply(run, values);
  } else {
    SetResult(call, std::apply(run, values));
  }
}

// Runs the first body that takes the first argument's type, else the last one.
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

  // The name that failures are reported under.
  static constexpr const char* kName = method::QualifiedName<Name>::kText.data();

  static void Run(Call& call) {
    if constexpr (requires { method::RunForms(call, *Body); }) {
      method::RunForms(call, *Body);
    } else {
      method::RunBody(call, Body);
    }
  }
};
