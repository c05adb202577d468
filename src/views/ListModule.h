// A list module of the editor: the algorithm object that has a list and the graphics for it.
#pragma once

#include "frame/Arguments.h"
#include "host/lists.h"

using ListModuleArg = AlgoArg<"ListModule", Presence::kRequired, NullObject::kAllowed>;

// A graphic container, or null.
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

// What a module's method "GetList" gave. That method is a script and may have changed anything: the
// program's record among it, and whether the module is still there.
struct ModuleList {
  GOContainer* root = nullptr;
  List* list = nullptr;  // null: nothing to do, or a failure that has become the call's status
  ListView* view = nullptr;
};
ModuleList AskForList(Call& call, const ListModuleArg& module);
