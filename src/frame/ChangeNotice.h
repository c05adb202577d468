// The notification of a changed parameter, "OnProgramParameterChanged".
//
// Build it before the change that it reports: if memory is short, the constructor throws and
// nothing has changed yet. Sending doesn't allocate.
#pragma once

#include <cstdint>

#include "frame/ZylSProgram.h"

class ChangeNotice {
 public:
  // `number`, `newValue` and the indexes are passed to the modules; a null index is sent as -1.
  ChangeNotice(ZylSProgram& object, ROCParam* number, ROCParam* newValue,
               ROCParam* keygroup = nullptr, ROCParam* zone = nullptr)
      : object_(object) {
    if (!object.registeredModules.IsEmpty()) Build(number, newValue, keygroup, zone);
  }
  ChangeNotice(ZylSProgram& object, int32_t number, ROCParam* newValue) : object_(object) {
    if (!object.registeredModules.IsEmpty()) Build(number, newValue);
  }
  ChangeNotice(const ChangeNotice&) = delete;
  ChangeNotice& operator=(const ChangeNotice&) = delete;

  // Calls every registered module, unless notifications are off.
  void Send() {
    if (arguments_.count > 0 && object_.enableRegisterCall) Deliver();
  }
  // Sends the notice for another keygroup. Overwrites the keygroup index that the notice was built
  // with, so the caller must own that value.
  void SendFor(int32_t keygroup) {
    if (arguments_.count > 0) arguments_.Entry(kKeygroup)->SetInt(keygroup);
    Send();
  }

 private:
  static constexpr int kKeygroup = 3;  // index of the keygroup argument

  void Build(ROCParam* number, ROCParam* newValue, ROCParam* keygroup, ROCParam* zone);
  void Build(int32_t number, ROCParam* newValue);
  void Deliver();

  ZylSProgram& object_;
  ROCParams arguments_;  // empty if no module was registered
};
