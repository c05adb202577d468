-- Calls from the module back into the script.
local check = dofile(arg[0]:match("^(.*/)") .. "Check.lua")
local p = host.new("Probe")

-- Arguments of all kinds; fields set later; functions replaced and removed.
local seen
local m = host.algo { name = "panel", On = function(...) seen = table.pack(...) end }
check.equal(m.name, "panel")
p:Register(m)
check.equal(p:Notify("On", 5, nil, { 1 }, p), 1)
check.equal(seen.n, 5)
check.equal(seen[3], nil)
check.equal(seen[4][1], 1)
check.equal(seen[5], p)
m.Later = function() end
check.equal(p:Notify("Later"), 1)
m.Later = "no function"
check.equal(p:Notify("Later"), 0)
m.Later = nil
check.equal(p:Notify("Later"), 0)

-- Results.
m.Give = function() return p, 8 end
check.equal(p:Ask(m, "Give"), p)
m.Give = function() end
check.equal(select("#", p:Ask(m, "Give")), 0)
check.raises("no such method", p.Ask, p, m, "GiveMore")
p:Register(host.algo { dispatch = false, On = function() error("reached") end })
check.equal(p:Notify("On"), 1)

-- An error does not unwind through the module: the outermost call raises the same error value.
local calls = 0
local failing = { "a table" }
local second = host.algo { On = function() calls = calls + 1 end }
p:Register(second)
m.On = function() error(failing) end
check.equal(select(2, pcall(p.Notify, p, "On")), failing)
check.equal(calls, 1, "the module called the next one")
check.equal(p:Types(), "", "no error is pending")
m.Give = function() return print end
check.raises("a function has no host value", p.Ask, p, m, "Give")

-- Nested calls raise the errors of their own callbacks.
local inner
second.On = nil
m.On = function(_, depth)
  if depth > 0 then p:Notify("On", depth - 1) else p:Fail() end
end
check.equal(select(2, pcall(p.Notify, p, "On", 5)).kind, "Exception")
m.On = function() error("outer") end
second.On = function() inner = p:Types(1) end
check.raises("outer", p.Notify, p, "On")
check.equal(inner, "1", "a pending error is not raised by a nested call")
second.On = nil
m.On = function() p:Notify("On") end
check.raises("stack overflow", p.Notify, p, "On")

-- No yield through the module; a callback may run coroutines.
m.On = function() coroutine.yield() end
check.raises("yield across", coroutine.wrap(function() p:Notify("On") end))
m.On = function() inner = coroutine.wrap(function() coroutine.yield(6) end)() end
coroutine.wrap(function() p:Notify("On") end)()
check.equal(inner, 6)

-- Deleting the object that is being called.
local victim = host.new("Probe")
local killer = host.algo {}
victim:Register(killer)
killer.On = function()
  host.delete(victim)
  check.raises("deleted", victim.Types, victim)
end
check.equal(victim:Notify("On"), 1)

local suicide = host.algo {}
p = host.new("Probe")
p:Register(suicide)
suicide.On = function() host.delete(suicide) end
check.equal(p:Notify("On"), 1)
check.equal(p:Notify("On"), 0)

-- A module that another one deletes during a notification is not called.
local later = host.algo { On = function() error("reached") end }
local murderer = host.algo { On = function() if later then host.delete(later) later = nil end end }
p:Register(murderer)
p:Register(later)
check.equal(p:Notify("On"), 1)

-- Collecting the called objects during the call.
for _ = 1, 20 do
  local program = host.new("Probe")
  local module = host.algo {}
  module.On = function()
    program, module = nil, nil
    collectgarbage()
  end
  program:Register(module)
  program:Notify("On")
end

-- An object keeps the algorithms it references alive, and cycles through their callbacks are
-- collected; arguments it did not keep, and deleted ones, are collected before it.
local gone
local function collect()
  gone = {}
  collectgarbage()
  collectgarbage()
  return gone
end
local function marked(name, fields)
  local mark = setmetatable({}, { __gc = function() gone[name] = true end })
  fields.On = function() return mark, fields.holds end
  return host.algo(fields)
end
local held = { keeper = host.new("Probe") }
held.keeper:Register(marked("registered", { holds = held.keeper }))
held.variable = host.var(marked("replaced", {}))
held.keeper:Register(held.variable)
held.variable.value = marked("in a variable", {})
held.list = host.var({ marked("in a list", {}) })
held.keeper:Types(marked("only given", {}), 1)
local deleted = marked("deleted", {})
held.keeper:Register(deleted)
held.keeper:Register(deleted)
host.delete(deleted)
collect()
check.equal(gone["only given"] and gone["deleted"], true)
check.equal(gone["replaced"], true)
check.equal(gone["registered"] or gone["in a variable"] or gone["in a list"], nil)
held.variable = nil
collect()
check.equal(gone["in a variable"], nil, "the program keeps the variable")
check.equal(held.keeper:Notify("On"), 2)
held.keeper, held.list = nil, nil
collect()
check.equal(gone["registered"] and gone["in a variable"] and gone["in a list"], true)
held.keeper = host.new("Probe")
held.keeper:Register(marked("of a deleted object", { holds = held.keeper }))
host.delete(held.keeper)
collect()
check.equal(gone["of a deleted object"], true)

-- A module whose functions reference it is collected.
do
  local round = marked("round", {})
  round.Again = function() return round end
end
check.equal(collect()["round"], true)
