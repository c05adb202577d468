// One running script call: its arguments, its result and its errors.
#pragma once

#include <string>

#include "host/base.h"

class ZylSProgram;

class Call {
 public:
  Call(ZylSProgram& object, const char* qualifiedName, ROCParams* argumentList,
       ROCParam** resultPlace)
      : program(object), method(qualifiedName), result(resultPlace), arguments_(argumentList) {}

  // The number of positions in the list; entries may be null (absent).
  int Count() const { return arguments_ == nullptr ? 0 : arguments_->count; }
  // The argument at a position, counted from 1; null if absent.
  ROCParam* Argument(int position) const {
    return arguments_ == nullptr ? nullptr : arguments_->Entry(position - 1);
  }

  // Each of these reports an error to the host, sets the status of the call and returns false.
  bool TypeError(const char* argument, int expectedType, int position);
  bool ClassError(const RIOObject& given, const char* required, int position);
  bool ValueError(const char* argument, int position);
  bool UserError(const char* text, int position);
  // `format` contains one %s for the method's name.
  bool Failure(const char* format);
  bool NoProgram() { return Failure("%s: No program loaded. Method can not execute!"); }
  // Reports an exception that ended the call. Doesn't throw if memory is short.
  void Exception(const char* what) noexcept;
  // Also report the index and the count.
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
  int position = 1;  // of the next argument to read
  int status = 0;

 private:
  bool RangeError(const char* format, int32_t index, int32_t count);

  ROCParams* arguments_;
};
