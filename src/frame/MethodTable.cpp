#include <iterator>
#include <string_view>

#include "frame/Bodies.h"
#include "frame/Method.h"
#include "frame/MethodList.h"
#include "frame/Module.h"

namespace {

constexpr uint16_t kUnlinked = 0xFFFF;

template <class M>
ZylHandler HandlerOf() {
  return static_cast<ZylHandler>(&ZylSProgram::Handle<M>);
}

// NOLINTBEGIN(bugprone-macro-parentheses): names are pasted and quoted here
#define ROW(name, body) {#name, HandlerOf<Method<#name, body>>(), 1, kUnlinked, kUnlinked},
#define METHOD(name, meaning) ROW(name, &name)
#define FIELD(name, meaning) ROW(name, kFieldMethod<#name>)
// NOLINTEND(bugprone-macro-parentheses)

ZylFuncInfo table[] = {ZYL_METHOD_LIST(METHOD, FIELD){nullptr, nullptr, 0, kUnlinked, kUnlinked}};

#define NAME(name, meaning) #name,
constexpr std::string_view kNames[] = {ZYL_METHOD_LIST(NAME, NAME)};

consteval bool AllDiffer() {
  for (size_t i = 0; i < std::size(kNames); ++i) {
    for (size_t j = 0; j < i; ++j) {
      if (kNames[i] == kNames[j]) return false;
    }
  }
  return true;
}
static_assert(std::size(kNames) == 295, "the method table has 295 methods");
static_assert(AllDiffer(), "a method stands in the table twice");

}  // namespace

ZylFuncInfo* MethodTable() { return table; }
