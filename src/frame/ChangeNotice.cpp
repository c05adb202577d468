#include "frame/ChangeNotice.h"

void ChangeNotice::Build(ROCParam* number, ROCParam* newValue, ROCParam* keygroup, ROCParam* zone) {
  arguments_.AddTail(newROCParam(object_.owner));
  for (ROCParam* value : {number, newValue}) {
    if (value != nullptr) value->AddReference();
    arguments_.AddTail(value);
  }
  for (ROCParam* index : {keygroup, zone}) {
    if (index != nullptr) index->AddReference();
    arguments_.AddTail(index != nullptr ? index : newROCParam(-1));
  }
}

void ChangeNotice::Build(int32_t number, ROCParam* newValue) {
  const ROCParamPtr numberValue(newROCParam(number));
  Build(numberValue.get(), newValue, nullptr, nullptr);
}

void ChangeNotice::Deliver() {
  object_.CallRegistered(kOnProgramParameterChanged, arguments_, true);
}
