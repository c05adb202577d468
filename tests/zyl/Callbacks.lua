-- Calls from the module back into the script.
local check = dofile(arg[0]:match("^(.*/)") .. "Check.lua")
local p = host.new("Probe")

-- Arguments alone, all kinds of them; fields set later; functions replaced and taken away.
local seen
local m = host.algo { name = "panel", On = function(...) seen = table.pack(...) end }
check.equal(m.name, "panel")
p:Register(m)
check.equal(p:Notify("On", 5, nil, "x", { 1 }, p), 1)
check.equal(seen.n, 6)
check.equal(seen[2], 5)
check.equal(seen[3], nil)
check.equal(seen[5][1], 1)
check.equal(seen[6], p)
check.equal(p:Notify("Later"), 0)
m.Later = function() seen = "later" end
check.equal(p:Notify("Later"), 1)
check.equal(seen, "later")
m.Later = nil
check.equal(p:Notify("Later"), 0)
m.Later = "no function"
check.equal(p:Notify("Later"), 0)
check.equal(p:Notify("name"), 0)
check.raises("cannot be set", function() m.name = "x" end)

-- Results.
m.Give = function() return 7, 8 end
m.GiveObject = function() return p end
m.GiveNothing = function() end
check.equal(p:Ask(m, "Give"), 7)
check.equal(p:Ask(m, "GiveObject"), p)
check.equal(select("#", p:Ask(m, "GiveNothing")), 0)
check.raises("no such method", p.Ask, p, m, "GiveMore")
check.equal(host.algo { dispatch = false, On = print } ~= nil, true)
p:Register(host.algo { dispatch = false, On = function() error("reached") end })
check.equal(p:Notify("On"), 1)

-- An error cannot pass through the module: the call that it happened below raises it, as it was.
local calls = 0
local failing = { "a table" }
local second = host.algo { On = function() calls = calls + 1 end }
p:Register(second)
m.On = function() error(failing) end
local done, failure = pcall(p.Notify, p, "On")
check.equal(done, false)
check.equal(failure, failing)
check.equal(calls, 1, "the module went on to the next one")
check.equal(p:Count(), 0, "no error is left over")
m.On = function() error("first") end
second.On = function() error("second") end
check.raises("first", p.Notify, p, "On")
m.Give = function() error("asked") end
check.raises("asked", p.Ask, p, m, "Give")
m.Give = function() return print end
check.raises("a function has no host value", p.Ask, p, m, "Give")

-- Calls inside calls: each raises what happened below it.
local inner
second.On = nil
m.On = function(name, depth)
  if depth > 0 then p:Notify("On", depth - 1) else error("at the bottom") end
end
check.raises("at the bottom", p.Notify, p, "On", 5)
m.On = function() inner = table.pack(pcall(p.Fail, p)) end
p:Notify("On")
check.equal(inner[1], false)
check.equal(inner[2].kind, "Exception")
m.On = function() p:Fail() end
check.equal(select(2, pcall(p.Notify, p, "On")).kind, "Exception")
m.On = function() error("outer") end
second.On = function() inner = p:Count(1, 2) end
check.raises("outer", p.Notify, p, "On")
check.equal(inner, 2, "an error that waits is not raised by a later call")
second.On = nil
m.On = function() p:Notify("On") end
check.raises("stack overflow", p.Notify, p, "On")

-- No yield through the module; a callback may use coroutines of its own.
m.On = function() coroutine.yield() end
local co = coroutine.create(function() p:Notify("On") end)
local resumed, why = coroutine.resume(co)
check.equal(resumed, false)
check.equal(tostring(why):find("yield across", 1, true) ~= nil, true, why)
m.On = function()
  local sum = 0
  for i in coroutine.wrap(function() for i = 1, 3 do coroutine.yield(i) end end) do sum = sum + i end
  inner = sum
end
coroutine.wrap(function() p:Notify("On") end)()
check.equal(inner, 6)

-- Deleting what is being called.
local victim = host.new("Probe")
local killer = host.algo {}
victim:Register(killer)
killer.On = function()
  host.delete(victim)
  inner = table.pack(pcall(victim.Count, victim))
end
check.equal(victim:Notify("On"), 1)
check.equal(inner[1], false)
check.equal(tostring(inner[2]):find("deleted", 1, true) ~= nil, true)
check.raises("deleted", function() victim:Count() end)

local suicide = host.algo {}
p = host.new("Probe")
p:Register(suicide)
suicide.On = function() host.delete(suicide) end
check.equal(p:Notify("On"), 1)
check.equal(p:Notify("On"), 0)

-- A registered module that another one deletes during a notification is not called any more.
local later = host.algo { On = function() error("reached") end }
local murderer = host.algo { On = function() if later then host.delete(later) later = nil end end }
p:Register(murderer)
p:Register(later)
check.equal(p:Notify("On"), 1)
check.equal(p:Notify("On"), 1)

-- Collection in the middle of calls, of the called objects too.
local function chain()
  local program = host.new("Probe")
  local module = host.algo {}
  module.On = function()
    program, module = nil, nil
    for _ = 1, 20 do host.new("Probe") end
    collectgarbage()
    collectgarbage()
  end
  program:Register(module)
  program:Notify("On")
end
for _ = 1, 20 do chain() end
do
  local short = host.algo { On = function() error("reached") end }
  p:Register(short)
end
collectgarbage()
collectgarbage()
check.equal(p:Notify("On"), 1)

-- A module's functions may hold the module itself: it is collected all the same.
local watch = host.var(host.null)
do
  local round = host.algo {}
  round.On = function() return round end
  watch.value = round
end
collectgarbage()
collectgarbage()
check.equal(watch.value, nil)
