#include <optional>
#include <string>

#include "../hostapp.h"

namespace {

// The last error reported on this thread, until ZylTakeError.
thread_local std::optional<ZylScriptError> pending;

int Report(ZylScriptError error) {
  const int status = 1 + static_cast<int>(error.kind);
  pending = std::move(error);
  return status;
}

std::string Article(int typeCode) {
  const std::string name = ZylTypeName(typeCode);
  const bool vowel = std::string_view("aeiou").find(name[0]) != std::string_view::npos;
  return (vowel ? "an " : "a ") + name;
}

}  // namespace

int ZylArgTypeException(ROCParam**, const char* method, const char* argument, int expectedType,
                        int position) {
  ZylScriptError error;
  error.kind = ZylScriptError::kArgType;
  error.method = method;
  error.argument = argument;
  error.expected = expectedType;
  error.position = position;
  error.message = error.Readable();
  return Report(std::move(error));
}

int ZylArgPTypeException(ROCParam**, const char* method, const char* givenClass,
                         const char* requiredClass, int position) {
  ZylScriptError error;
  error.kind = ZylScriptError::kArgPType;
  error.method = method;
  error.given = givenClass;
  error.required = requiredClass;
  error.position = position;
  error.message = error.Readable();
  return Report(std::move(error));
}

int ZylArgValueException(ROCParam**, const char* method, const char* argument, int position) {
  ZylScriptError error;
  error.kind = ZylScriptError::kArgValue;
  error.method = method;
  error.argument = argument;
  error.position = position;
  error.message = error.Readable();
  return Report(std::move(error));
}

int ZylArgUserException(ROCParam**, const char* method, const char* text, int position) {
  ZylScriptError error;
  error.kind = ZylScriptError::kArgUser;
  error.method = method;
  error.message = text;
  error.position = position;
  return Report(std::move(error));
}

int ZylException(ROCParam**, const char* text) {
  ZylScriptError error;
  error.message = text;
  return Report(std::move(error));
}

void ZylErrorIndex(int32_t index, int32_t count) {
  if (pending) pending->range = {index, count};
}

int ZylHandleException(int status, ROCParam**) { return status; }

bool ZylTakeError(ZylScriptError& error) {
  if (!pending) return false;
  error = std::move(*pending);
  pending.reset();
  return true;
}

const char* ZylScriptError::KindName() const {
  switch (kind) {
    case kArgType:
      return "ArgType";
    case kArgPType:
      return "ArgPType";
    case kArgValue:
      return "ArgValue";
    case kArgUser:
      return "ArgUser";
    default:
      return "Exception";
  }
}

std::string ZylScriptError::Readable() const {
  const std::string place = method + ": argument " + std::to_string(position);
  switch (kind) {
    case kArgType:
      return place + " \"" + argument + "\": " + Article(expected) + " was expected";
    case kArgPType:
      return place + ": an object of class " + required + " was expected, not " + given;
    case kArgValue:
      return place + " \"" + argument + "\": the value is not allowed";
    case kArgUser:
      return place + ": " + message;
    default:
      return message;
  }
}

const char* ZylTypeName(int typeCode) {
  switch (typeCode) {
    case kTypeInteger:
      return "integer";
    case kTypeBool:
      return "bool";
    case kTypeString:
      return "string";
    case kTypeDouble:
      return "double";
    case kTypeData:
      return "byte block";
    case kTypeArray:
      return "array";
    case kTypeObject:
      return "object";
    default:
      return "value";
  }
}
