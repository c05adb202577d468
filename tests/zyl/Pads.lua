-- Named pads, their sends from this and other threads, and data pads.
local check = dofile(arg[0]:match("^(.*/)") .. "Check.lua")
local p = host.new("Probe")
local m = host.algo { name = "panel" }

local pad = m:addPad("progress", 0)
check.raises("already", m.addPad, m, "progress", 1)
check.raises("initial value", m.addPad, m, "other")

-- A pad keeps its type.
pad.value = 5
check.equal(pad.value, 5)
check.raises('pad "progress": the value is a string, expected an integer', function() pad.value = "x" end)
check.equal(pad.value, 5)
local gain = m:addPad("gain", 0.5)
gain.value = 2
check.equal(math.type(gain.value), "float")
local object = m:addPad("object", host.null)
object.value = p
check.equal(object.value, p)

-- Sends on the script thread are delivered at once, and separately from updates.
local sent, updated = {}, {}
pad.onSend = function(value) sent[#sent + 1] = value end
pad.onUpdate = function(value) updated[#updated + 1] = value end
p:Send(m, "progress")
p:Update(m, "progress")
check.equal(table.concat(sent, " "), "5")
check.equal(table.concat(updated, " "), "5")

-- Sends of other threads are queued with their values until host.pump.
sent = {}
p:Send(m, "progress", 3)
check.equal(#sent, 0)
check.equal(host.pump(), 3)
check.equal(table.concat(sent, " "), "1 2 3")
check.equal(host.pump(0.02), 0)

-- A callback that pumps receives the next ones; an update keeps its order among the sends.
local inner
sent = {}
pad.onSend = function(value)
  sent[#sent + 1] = value
  if value == 1 then inner = host.pump() end
end
p:Send(m, "progress", 3)
check.equal(host.pump(), 1)
check.equal(inner, 2)
check.equal(table.concat(sent, " "), "1 2 3")
sent = {}
pad.onSend = function(value) sent[#sent + 1] = "send " .. value end
pad.onUpdate = function(value) sent[#sent + 1] = "update " .. value end
p:Send(m, "progress", 2)
pad.value = 7
p:Update(m, "progress")
check.equal(table.concat(sent, ", "), "send 1, send 2, update 7")
check.equal(pad.value, 7)
check.equal(host.pump(), 0)

-- Errors are raised by the call or the pump; the rest of the queue is delivered.
sent = {}
pad.onSend = function(value)
  sent[#sent + 1] = value
  if value == 2 then error("on two") end
end
p:Send(m, "progress", 4)
check.raises("on two", host.pump)
check.equal(table.concat(sent, " "), "1 2 3 4")

-- The callback lives without the pad's variable until the pad is deleted.
sent = {}
pad.onSend = function(value) sent[#sent + 1] = value end
pad = nil  -- luacheck: ignore
collectgarbage()
p:Send(m, "progress")
p:Send(m, "progress", 2)
host.delete(m)
check.equal(host.pump(), 2)
check.equal(#sent, 1)
check.raises("deleted", function() return gain.value end)

-- A pad keeps its algorithm alive; deleting the algorithm inside a send is safe.
local alone = host.algo {}:addPad("alone", 1)
collectgarbage()
check.equal(alone.value, 1)
local doomed = host.algo {}
doomed:addPad("bell", 1).onSend = function() host.delete(doomed) end
p:Send(doomed, "bell")
check.raises("deleted", function() doomed:addPad("x", 1) end)
doomed = host.algo {}
doomed:addPad("bell", 1).onSend = function() host.delete(doomed) end
p:Send(doomed, "bell", 3)
check.equal(host.pump(), 3)

-- Data pads hold bytes.
local data = host.pad("ab\0c")
check.equal(data.bytes, "ab\0c")
data.bytes = ""
check.equal(data.bytes, host.pad().bytes)
