// From a body to a script method: Method reads the arguments that the body's parameter list
// declares, calls the body when all is well, and makes its result a script value. A body is a free
// function whose first parameter is the program object; one that takes the Call itself reads its
// arguments on its own and answers whether all went well.
#pragma once

#include <algorithm>
#include <array>
#include <exception>
#include <string>
#include <tuple>
#include <utility>

#include "frame/Arguments.h"
#include "frame/Call.h"
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

// No exception leaves the module: memory that cannot be had ends the call with a report.
template <class Body>
int Guarded(Call& call, Body body) noexcept {
  try {
    body();
    return call.status;
  } catch (const std::exception& failure) {
    return ZylException(call.result, (std::string(call.method) + ": " + failure.what()).c_str());
  }
}

}  // namespace method

template <FixedText Name, auto Body>
struct Method;

template <FixedText Name, class R, class... P, R (*Body)(ZylSProgram&, P...)>
struct Method<Name, Body> {
  static int Run(ZylSProgram& object, ROCParams* arguments, ROCParam** result) {
    Call call(object, method::QualifiedName<Name>::kText.data(), arguments, result);
    return method::Guarded(call, [&] {
      std::tuple<P...> values;
      const auto read = [&](auto&... value) {
        return (std::decay_t<decltype(value)>::Read(call, value) && ...);
      };
      if (!std::apply(read, values)) return;
      const auto run = [&](auto&... value) -> R { return Body(object, value...); };
      if constexpr (std::is_void_v<R>) {
        std::apply(run, values);
      } else {
        call.Return(newROCParam(std::apply(run, values)));
      }
    });
  }
};

template <FixedText Name, bool (*Body)(Call&)>
struct Method<Name, Body> {
  static int Run(ZylSProgram& object, ROCParams* arguments, ROCParam** result) {
    Call call(object, method::QualifiedName<Name>::kText.data(), arguments, result);
    return method::Guarded(call, [&] { Body(call); });
  }
};
