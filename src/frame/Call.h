// One running script call: its arguments, the place of its result, and its failures.
#pragma once

#include <string>

#include "host/base.h"

class ZylSProgram;

class Call {
 public:
  Call(ZylSProgram& object, const char* qualifiedName, ROCParams* argumentList,
       ROCParam** resultPlace)
      : program(object), method(qualifiedName), result(resultPlace), arguments_(argumentList) {}

  // How many positions the list has; an entry among them may still be absent.
  int Count() const { return arguments_ == nullptr ? 0 : arguments_->count; }
  // The argument at a position from 1; null when it is absent.
  ROCParam* Argument(int position) const {
    return arguments_ == nullptr ? nullptr : arguments_->Entry(position - 1);
  }

  // Each failure is reported to the host, becomes the call's status, and answers false.
  bool TypeError(const char* argument, int expectedType, int position);
  bool ClassError(const RIOObject& given, const char* required, int position);
  bool ValueError(const char* argument, int position);
  bool UserError(const char* text, int position);
  // A text with one %s for the method's name.
  bool Failure(const char* format);
  bool NoProgram() { return Failure("%s: No program loaded. Method can not execute!"); }
  // The report for an exception that ended the call. It does not throw without memory.
  void Exception(const char* what) noexcept;
  // The index and how many there are are reported besides the text.
  bool KeygroupRange(int32_t index, int32_t count) {
    return RangeError("%s: Keygroup index out of range!", index, count);
  }
  bool ZoneRange(int32_t index, int32_t count) {
    return RangeError("%s: Zone index out of range!", index, count);
  }

  void Return(ROCParam* value) { *result = value; }

  ZylSProgram& program;
  const char* const method;  // "ZylSProgram::" and the method's name
  ROCParam** const result;
  int position = 1;  // of the next argument to be read
  int status = 0;

 private:
  bool RangeError(const char* format, int32_t index, int32_t count);

  ROCParams* arguments_;
};
