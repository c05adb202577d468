// Cost of a method call from a script: PRGpoly() of a loaded program compared with an empty C
// function registered in the same Lua state, and a parameter by number compared with one by name.
// All are called in the same loop in one run.
#include "Measure.h"
#include "Script.h"
#include "host/hostapp.h"
#include "zyl/ScriptHost.h"

namespace {

int Empty(lua_State*) { return 0; }

int Report(lua_State* state) {
  bench::Report(luaL_checkstring(state, 1), luaL_checknumber(state, 2),
                bench::AtMost(luaL_checknumber(state, 3)));
  return 0;
}

// The rounds alternate and the fastest of each counts, so that other work on the machine does not
// bias the ratios.
const char* const kScript = R"lua(
local calls, rounds = 200000, 15
local program = host.new("ZylSProgram")
program:Create(host.null)
local object = { Empty = empty }

local function fastest(best, loop)
  local start = os.clock()
  loop()
  return math.min(best, os.clock() - start)
end

local bare, get, set, number = math.huge, math.huge, math.huge, math.huge
for _ = 1, rounds do
  bare = fastest(bare, function() for _ = 1, calls do object:Empty() end end)
  get = fastest(get, function() for _ = 1, calls do program:PRGpoly() end end)
  number = fastest(number, function()
    for _, n in ipairs{4, 18, 36, 80} do
      for _ = 1, calls // 4 do program:PRGIntValue(n) end
    end
  end)
  set = fastest(set, function() for i = 1, calls do program:PRGpoly(i & 15) end end)
end
report("PRGpoly(), times an empty C function", get / bare, 5)
report("PRGpoly(v), times an empty C function", set / bare, 5)
report("PRGIntValue(n), times PRGpoly()", number / get, 1.5)
)lua";

}  // namespace

int main() {
  const auto module = bench::LoadModule();
  zyl::ScriptHost script;
  lua_register(script.State(), "empty", Empty);
  lua_register(script.State(), "report", Report);
  return script.RunText(kScript, {"bench"});
}
