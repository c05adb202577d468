#include "frame/Call.h"

#include <exception>

bool Call::TypeError(const char* argument, int expectedType, int at) {
  status = ZylArgTypeException(result, method, argument, expectedType, at);
  return false;
}
bool Call::ClassError(const RIOObject& given, const char* required, int at) {
  status = ZylArgPTypeException(result, method, given.GetTypeName(), required, at);
  return false;
}
bool Call::ValueError(const char* argument, int at) {
  status = ZylArgValueException(result, method, argument, at);
  return false;
}
bool Call::UserError(const char* text, int at) {
  status = ZylArgUserException(result, method, text, at);
  return false;
}
bool Call::Failure(const char* format) {
  std::string text = format;
  text.replace(text.find("%s"), 2, method);
  status = ZylException(result, text.c_str());
  return false;
}
bool Call::RangeError(const char* format, int32_t index, int32_t count) {
  Failure(format);
  ZylErrorIndex(index, count);
  return false;
}
void Call::Exception(const char* what) noexcept {
  deleteROCParam(*result);
  *result = nullptr;
  try {
    status = ZylException(result, (std::string(method) + ": " + what).c_str());
  } catch (const std::exception&) {
    // Fits the small-string buffer, so it needs no allocation.
    status = ZylException(result, "out of memory");
  }
}
