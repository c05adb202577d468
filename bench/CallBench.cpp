// What a method call from a script costs: PRGpoly() of a loaded program against an empty C
// function that is registered in the same Lua state, and a parameter by number against one by name,
// all called in the same loop of one run.
#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "Script.h"
#include "host/hostapp.h"
#include "zyl/ScriptHost.h"

namespace {

int Empty(lua_State*) { return 0; }

// The rounds alternate and the fastest of each counts, so that other work on the machine weighs on
// neither.
const char* const kScript = R"(
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
print(("empty C function:  %6.1f ns"):format(bare / calls * 1e9))
print(("PRGpoly()          %6.1f ns   ratio %.2f   bar 5"):format(get / calls * 1e9, get / bare))
print(("PRGIntValue(n)     %6.1f ns   to PRGpoly() %.2f   bar 1.5"):format(number / calls * 1e9,
  number / get))
print(("PRGpoly(n)         %6.1f ns   ratio %.2f"):format(set / calls * 1e9, set / bare))
)";

}  // namespace

int main() {
  const auto module = bench::LoadModule();
  zyl::ScriptHost script;
  lua_register(script.State(), "empty", Empty);
  return script.RunText(kScript, {"bench"});
}
