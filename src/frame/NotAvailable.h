// The methods that this build does not have yet. Their arguments are declared here, so that the
// method reference knows them.
#pragma once

#include "frame/Forms.h"

template <auto Body>
struct NotAvailable {};

namespace later {

template <FixedText Name, FixedText Class>
struct ObjectArg {
  static constexpr DeclaredArgument kDeclared{
      .name = Name.text, .type = kTypeObject, .className = Class.text};
};

}  // namespace later

template <auto Body>
inline constexpr NotAvailable<Body> kNotAvailable;
