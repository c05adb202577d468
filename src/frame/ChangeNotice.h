// The notification of a changed parameter, "OnProgramParameterChanged".
//
// It is built before the change that it reports: building may run out of memory, and then nothing
// has changed yet. Sending it allocates nothing.
#pragma once

#include <cstdint>

#include "frame/ZylSProgram.h"

class ChangeNotice {
 public:
  // `number`, `newValue` and the indexes are passed on to the modules; a null index travels as -1.
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

  // Calls every registered module, unless notifications are switched off.
  void Send() {
    if (arguments_.count > 0 && object_.enableRegisterCall) Deliver();
  }
  // The same for another keygroup. Only for a notice that was built with a value of its sender as
  // keygroup index, which is overwritten.
  void SendFor(int32_t keygroup) {
    if (arguments_.count > 0) arguments_.Entry(kKeygroup)->SetInt(keygroup);
    Send();
  }

 private:
  static constexpr int kKeygroup = 3;  // its position among the arguments

  void Build(ROCParam* number, ROCParam* newValue, ROCParam* keygroup, ROCParam* zone);
  void Build(int32_t number, ROCParam* newValue);
  void Deliver();

  ZylSProgram& object_;
  ROCParams arguments_;  // empty while no module is registered
};
