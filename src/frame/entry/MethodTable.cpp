#include <iterator>
#include <string_view>

#include "frame/Method.h"
#include "frame/entry/Bodies.h"
#include "frame/entry/MethodList.h"
#include "frame/entry/Module.h"

namespace {

constexpr uint16_t kUnlinked = 0xFFFF;

template <class M>
constexpr ZylHandler HandlerOf() {
  return static_cast<ZylHandler>(&ZylSProgram::Handle<M>);
}

// NOLINTBEGIN(bugprone-macro-parentheses): names are pasted and quoted here
#define ROW(name, body) {#name, HandlerOf<Method<#name, body>>(), 1, kUnlinked, kUnlinked},
#define METHOD(name, meaning) ROW(name, &name)
#define FIELD_METHOD(name) ROW(name, kFieldMethod<#name>)
// Extra expansion step, so that the name is pasted before it is quoted.
#define WITH_NAME(row, name) row(name)
#define OWN_METHOD(name) METHOD(name, "")
#define FIELD(record, field, ...) WITH_NAME(FIELD_METHOD, ZYL_METHOD_NAME(record, field))
#define OWN(record, field, ...) WITH_NAME(OWN_METHOD, ZYL_METHOD_NAME(record, field))
// NOLINTEND(bugprone-macro-parentheses)

constinit ZylFuncInfo table[] = {
    ZYL_METHOD_LIST(FIELD, OWN, METHOD){nullptr, nullptr, 0, kUnlinked, kUnlinked}};

#define NAME(name, ...) #name,
#define FIELD_NAME(record, field, ...) WITH_NAME(NAME, ZYL_METHOD_NAME(record, field))
constexpr std::string_view kNames[] = {ZYL_METHOD_LIST(FIELD_NAME, FIELD_NAME, NAME)};

consteval bool NamesAreUnique() {
  for (size_t i = 0; i < std::size(kNames); ++i) {
    for (size_t j = 0; j < i; ++j) {
      if (kNames[i] == kNames[j]) return false;
    }
  }
  return true;
}
static_assert(NamesAreUnique(), "a method is in the table twice");

}  // namespace

ZylFuncInfo* MethodTable() { return table; }
