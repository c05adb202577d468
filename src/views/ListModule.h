// A list module of the editor: an algorithm object with a list and the graphics that show it.
#pragma once

#include "frame/Arguments.h"
#include "host/lists.h"

using ListModuleArg = AlgoArg<"ListModule", Presence::kRequired, NullObject::kAllowed>;

// An argument that is a graphic container or a null object.
template <FixedText Name>
struct ContainerArg {
  static constexpr DeclaredArgument kDeclared{.name = Name.text,
                                              .type = kTypeObject,
                                              .className = "GOContainer",
                                              .null = NullObject::kAllowed};

  static bool Read(Call& call, ContainerArg& self) {
    const int position = call.position;
    ROCParam* param = nullptr;
    if (!argument::ReadTyped(call, Name.text, kTypeObject, true, param)) return false;
    RIOObject* object = param->Object();
    self.container = dynamic_cast<GOContainer*>(object);
    return object == nullptr || self.container != nullptr ||
           call.ClassError(*object, "GOContainer", position);
  }

  GOContainer* container = nullptr;
};

// The result of calling a module's method "GetList". That method is a script and may change
// anything: read the program's record again after the call, and expect the module to be deleted.
// The pointers are not owned.
struct ModuleList {
  GOContainer* root = nullptr;
  List* list = nullptr;  // null: no list, or the call failed and set call.status
  ListView* view = nullptr;
};
ModuleList CallGetList(Call& call, const ListModuleArg& module);
