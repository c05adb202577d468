// Compile-time access to the parameter list and result type of a method's body.
#pragma once

#include <concepts>
#include <cstddef>
#include <type_traits>

#include "frame/Arguments.h"

// A method with several argument lists. A call runs the first body whose first argument has the
// given type, otherwise the last body.
template <auto... Bodies>
struct Forms {};

namespace method {

template <class Kind>
concept Declares = requires {
  { Kind::kDeclared.name } -> std::convertible_to<const char*>;
};

template <class Body>
struct Shape;

template <class R, class Self, class... P>
struct Shape<R (*)(Self&, P...)> {
  using Result = R;

  static constexpr bool kNeedsProgram =
      (std::is_same_v<std::remove_cvref_t<P>, LoadedProgram> || ...);

  // Calls visit.operator()<Kind>() for each argument.
  template <class Visit>
  static constexpr void ForEachKind([[maybe_unused]] Visit visit) {
    (visit.template operator()<std::remove_cvref_t<P>>(), ...);
  }

  static constexpr int FirstType() {
    int type = -1;
    ForEachKind([&]<class Kind>() {
      if constexpr (Declares<Kind>) {
        if (type < 0) type = Kind::kDeclared.type;
      }
    });
    return type;
  }
};

}  // namespace method
