// Loads the built module for benchmarks that call it like a script.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "host/hostapp.h"

namespace bench {

// Loads the module; exits with the reason on failure.
inline std::unique_ptr<ZylModule> LoadModule() {
  std::string reason;
  auto module = ZylModule::Load(ZYL_MODULE, reason);
  if (module == nullptr) {
    std::fprintf(stderr, "%s\n", reason.c_str());
    std::exit(1);
  }
  return module;
}

// Calls a method of a script object; the result may be null.
template <class... Args>
std::unique_ptr<ROCParam, void (*)(ROCParam*)> Call(ROCAlgo& object, const char* method,
                                                    Args... args) {
  ROCParams arguments;
  (arguments.AddTail(newROCParam(args)), ...);
  ROCParam* result = nullptr;
  object.GetDispatch(true)->CallFunctionIndirect(method, &arguments, &result);
  return {result, deleteROCParam};
}

}  // namespace bench
