// A call that runs out of memory raises an error of one short line, whichever allocation fails.
#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <string>

#include "ScriptHost.h"
#include "host/hostapp.h"
#include "support/AllocationWatch.h"
#include "support/Paths.h"

namespace zyl::test {
namespace {

// Counts each Lua allocation as one of operator new.
void* CountedAllocation(void* wrapped, void* memory, size_t oldSize, size_t newSize) {
  if (newSize > (memory == nullptr ? 0 : oldSize)) {
    const std::unique_ptr<char> counted(new (std::nothrow) char);
    if (counted == nullptr) return nullptr;
  }
  const auto& [allocate, data] = *static_cast<std::pair<lua_Alloc, void*>*>(wrapped);
  return allocate(data, memory, oldSize, newSize);
}

TEST(ScriptMemory, AnErrorIsOneShortLineWhicheverAllocationFails) {
  std::string reason;
  const auto module = ZylModule::Load(ZYL_PROBE_MODULE, reason);
  ASSERT_NE(module, nullptr) << reason;
  ScriptHost host;
  lua_State* L = host.State();
  std::pair<lua_Alloc, void*> original;
  original.first = lua_getallocf(L, &original.second);
  const auto run = [&](const std::string& code) {
    ASSERT_EQ(luaL_dostring(L, code.c_str()), LUA_OK) << lua_tostring(L, -1);
  };
  run("big = ('x'):rep(100000) p = host.new('Probe') m = host.algo{ On = function() end }"
      " m:addPad('pad', big) p:Register(m)");
  lua_setallocf(L, CountedAllocation, &original);
  for (const char* code :
       {"p:Echo(big)", "p:Fail(big, 'ArgValue')", "p:Fail({}, 'ArgType')", "p:Fail()",
        "p:Notify('On', big)", "p:Register(host.algo{ On = print })", "host.var(big)",
        "local x = p.Ehco", "host.new('Probe')", "m.OnDeletingprg = print", "p:Send(m, 'pad')"}) {
    for (const bool once : {true, false}) {
      ASSERT_EQ(luaL_loadstring(L, code), LUA_OK);
      bool failed = true;
      for (uint64_t n = 1; failed; ++n) {
        lua_pushvalue(L, -1);
        AllocationWatch::FailAt(
            n, once ? AllocationWatch::kThisAlone : AllocationWatch::kThisAndAllLater);
        const int status = lua_pcall(L, 0, 0, 0);
        failed = AllocationWatch::HasFailed();
        AllocationWatch::FailAt(0);
        if (status == LUA_OK) continue;
        const std::string text = luaL_tolstring(L, -1, nullptr);
        EXPECT_LT(text.size(), 200u) << code << ", allocation " << n;
        if (!once && failed) {
          EXPECT_TRUE(text.ends_with("not enough memory")) << code << n << text;
        }
        lua_pop(L, 2);
      }
      lua_pop(L, 1);
    }
  }
  lua_setallocf(L, original.first, original.second);

  // With memory for it, the line names position and method.
  AllocationWatch::SetLargest(50000);
  run("local done, failure = pcall(function() p:Echo(big) end) text = tostring(failure)"
      " kind = failure.kind");
  AllocationWatch::SetLargest(SIZE_MAX);
  lua_getglobal(L, "text");
  EXPECT_TRUE(std::string(lua_tostring(L, -1)).ends_with(":1: Echo: not enough memory"));
  lua_getglobal(L, "kind");
  EXPECT_STREQ(lua_tostring(L, -1), "Exception");
}

TEST(ScriptMemory, ATransactionRollsBackWhicheverAllocationFails) {
  std::string reason;
  const auto module = ZylModule::Load(ModulePath(), reason);
  ASSERT_NE(module, nullptr) << reason;
  ScriptHost host;
  lua_State* L = host.State();
  std::pair<lua_Alloc, void*> original;
  original.first = lua_getallocf(L, &original.second);
  const auto run = [&](const char* code) {
    ASSERT_EQ(luaL_dostring(L, code), LUA_OK) << lua_tostring(L, -1);
  };
  run("require 'zyl' p = host.new('ZylSProgram') p:Create(host.null) p:KGCreate(1)"
      " p:FileName(('far/'):rep(50) .. 'a.zprg') p:TolmoPRGreverb(5) p:Dirty(false)"
      " other = host.new('ZylSProgram') other:Find(p:FileName(), 4)"
      " function state() return table.concat({ p:FileName(), tostring(p:Dirty()), p:PRGpoly(),"
      "   p:PRGtmMidiChannel(), other:PRGkeyGroups(), other:TolmoPRGreverb() }, ' ') end"
      " function change() p:PRGpoly(3) p:KGDelete(0) p:TolmoPRGreverb(6) p:FileName('b')"
      "   p:Create(host.null) error('undo') end"
      " before = state()");
  for (const auto failing : {AllocationWatch::kThisAlone, AllocationWatch::kThisAndAllLater}) {
    ASSERT_EQ(luaL_loadstring(L, "p:transaction(change)"), LUA_OK);
    bool failed = true;
    for (uint64_t n = 1; failed; ++n) {
      lua_setallocf(L, CountedAllocation, &original);
      lua_pushvalue(L, -1);
      AllocationWatch::FailAt(n, failing);
      EXPECT_NE(lua_pcall(L, 0, 0, 0), LUA_OK);
      failed = AllocationWatch::HasFailed();
      AllocationWatch::FailAt(0);
      lua_pop(L, 1);
      lua_setallocf(L, original.first, original.second);
      SCOPED_TRACE(n);
      run("local now = state() assert(now == before, now)");
    }
    lua_pop(L, 1);
  }
}

}  // namespace
}  // namespace zyl::test
