-- What require "zyl" adds to programs: loops, selections, transactions. The argument is a folder for
-- files.
local check = dofile(arg[0]:match("^(.*/)") .. "Check.lua")
local folder = arg[1]
local inspect = require "zyl.inspect"

local prg = host.new("ZylSProgram")
check.raises('no method "select"; require "zyl" adds it', function() return prg.select end)
local zyl = require "zyl"
for _, entry in ipairs(require "zyl.zylapi") do
  check.equal(prg[entry.name], zyl[entry.name], entry.name .. " of zyl.zylapi")
end

prg:Create(host.null)
for k = 1, 4 do prg:KGCreate(k) end

-- Loops: methods of handles take no indexes; errors have the positions of the methods.
for kg in prg:keygroups() do
  kg:KGlowKey(12 * kg.index)
  kg:KGhighKey(12 * kg.index + 11)
  for zone in kg:zones() do zone:ZonelowVel(10 * kg.index + zone.index) end
end
check.equal(prg:KGhighKey(3), 47)
check.equal(prg:ZonelowVel(3, 2), 32)
local count = 0
for zone in prg:zones() do count = count + zone:ZonelowVel() end
check.equal(count, 4 * 10 * (0 + 1 + 2 + 3 + 4) + 5 * 6)
local first = prg:keygroups()()
check.equal(first:zone(3):ZonelowVel(), 3)
check.equal(tostring(first:zone(3)), "zone 3 of keygroup 0")
for part, body in pairs {
  ["PRGpoly is not a method of a keygroup"] = function() first:PRGpoly(1) end,
  ["KGtune is not a method of a zone"] = function() first:zone(0):KGtune() end,
  ['no method "KGtuen"; did you mean "KGtune"?'] = function() first:KGtuen() end,
  ['KGtune: argument 2 "NewValue" is a string'] = function() first:KGtune("x") end,
} do
  check.equal(check.raises(part, body) ~= nil, true)
  local line = tostring(debug.getinfo(body, "S").linedefined)
  check.equal(tostring(select(2, pcall(body))):match("^.-Sugar%.lua:(%d+): "), line, part)
end

-- Selections.
prg:SampleCreate(2, 1, "wav")
prg:SampleName(prg:SampleGet(2, 1), "a tone")
assert(prg:SampleWrite(prg:SampleGet(2, 1), folder .. "/a tone.wav"))
local function selected()
  local list = {}
  for kg in prg:keygroups() do if kg:KGSelect() then list[#list + 1] = kg.index end end
  return table.concat(list, " ")
end
for _, case in ipairs {
  { { 0, 3 }, "0 3" }, { { key = 30 }, "2" }, { { keys = { 11, 24 } }, "0 1 2" },
  { { all = true }, "0 1 2 3 4" }, { {}, "" }, { { sample = "TON" }, "2" },
  { { sample = "none" }, "" }, { { 1, 2, 3, keys = { 0, 30 } }, "1 2" },
  { { where = function(kg) return kg.index % 2 == 1 end }, "1 3" },
  { { 4, add = true }, "1 3 4" }, { { add = true }, "1 3 4" },
} do
  local fitting = prg:select(case[1])
  check.equal(selected(), case[2])
  if not case[1].add then check.equal(table.concat(fitting, " "), case[2]) end
end
for part, wanted in pairs {
  ["no keygroup 5"] = { 1, 5 }, ["kye is not one of"] = { kye = 5 },
  ["key is a string, expected a number"] = { key = "C4" }, ["lowest and the highest"] = { keys = {} },
  ["give a table"] = 3, ["in the test"] = { where = function() error("in the test") end },
} do
  check.raises(part, prg.select, prg, wanted)
  check.equal(selected(), "1 3 4", part)
end

-- Transactions: the file and the methods before and after.
local function bytes(program)
  local path = folder .. "/now.zprg"
  local dirty = program:Dirty()
  check.equal(program:Write(path, 1), true)
  program:Dirty(dirty)
  local file = assert(io.open(path, "rb"))
  local content = file:read("a")
  file:close()
  return content
end
local function state(program)
  return inspect { program:FileName(), program:Dirty(), program:PRGmidiChannel(),
                   program:PRGtmMidiChannel(), program:PRGkeyGroups(), program:MaxIndyOut(),
                   program:EnableRegisterCall(), program:Zonename(2, 1), program:IsValid() }
end

local changes = {
  function(p) p:PRGpoly(3) p:PRGname("CHANGED") p:PRGmasterDetune(4, 5) p:PRGmute(1) end,
  function(p) p:KGtune(-1, 77) p:ZonelowVel(0, 0, 5) p:select { all = true } end,
  function(p) p:KGDelete(2) p:KGCreate(0) p:KGMove(0, 2) p:KGSort(100, 1) p:PRGkeyGroups(1) end,
  function(p) p:TolmoPRGreverb(5) p:TolmoKGecho(0, 3) p:FileName("elsewhere.zprg") end,
  function(p) p:ZoneSampleSet(2, 1) p:ZoneSamplePath(0, 0, "there.wav") end,
  function(p) p:PRGmidiChannel(9) p:MaxIndyOut(8) p:EnableRegisterCall(false) end,
  function(p) p:Create(host.null) p:Dirty(false) end,
  function(p) p:Read(folder .. "/nothing.zprg") end,
  function(p) p:Write(folder .. "/other.zprg") p:Dirty(not p:Dirty()) end,
  function(p)
    pcall(p.transaction, p, function() p:PRGpoly(1) error("inner") end)
    p:KGDelete(0)
  end,
}
-- Also with a record whose MIDI channel differs from the object's.
prg:PRGmidiChannel(3)
check.equal(prg:Write(folder .. "/start.zprg"), true)
for _, channel in ipairs { 3, 11, -1 } do
  for _, dirty in ipairs { true, false } do
    for i, change in ipairs(changes) do
      check.equal(prg:Read(folder .. "/start.zprg", 1, channel), true)
      prg:select { 1, 3 }
      if dirty then
        -- A mask and a count that other methods would not set.
        prg:PRGtmMidiChannel(0x50)
        prg:PRGkeyGroups(4)
      end
      prg:Dirty(dirty)
      local users = prg:SampleGetRefCount(prg:SampleGet(2, 1))
      local beforeBytes, before = bytes(prg), state(prg)
      local failure = {}
      local done, reason = pcall(prg.transaction, prg, function(p)
        change(p)
        error(failure)
      end)
      check.equal(done, false)
      check.equal(reason, failure)
      local what = ("change %d, channel %d"):format(i, channel)
      check.equal(state(prg), before, what)
      check.equal(bytes(prg) == beforeBytes, true, what .. ": the bytes are the same")
      check.equal(selected(), "1 3", what)
      check.equal(prg:SampleGetRefCount(prg:SampleGet(2, 1)), users, what .. ": users")
    end
  end
end

-- A successful transaction keeps the changes and returns the function's results.
local users = prg:SampleGetRefCount(prg:SampleGet(2, 1))
local before = state(prg)
local a, b = prg:transaction(function(p) p:PRGpoly(5) return 1, nil end)
check.equal(a, 1)
check.equal(b, nil)
check.equal(prg:PRGpoly(), 5)
prg:PRGpoly(15)
prg:Dirty(false)
check.equal(state(prg), before)
check.equal(prg:SampleGetRefCount(prg:SampleGet(2, 1)), users, "samples are released")

-- Objects that share the record see the rollback, also when the object has detached it. Zones follow
-- a sample that is reloaded.
local other = host.new("ZylSProgram")
assert(prg:Read(folder .. "/start.zprg") and other:Find(folder .. "/start.zprg", 5))
before = bytes(prg)
local sound = prg:SampleFilePath(prg:SampleGet(2, 1))
check.raises("here", prg.transaction, prg, function(p)
  other:KGDelete(0)
  p:SampleReload(sound)
  p:FileName("elsewhere.zprg")
  check.equal(host.new("ZylSProgram"):Find(folder .. "/start.zprg"), false, "the copy is not found")
  p:Create(host.null)
  error("here")
end)
check.equal(bytes(other) == before, true)
check.equal(prg:SampleFilePath(prg:SampleGet(2, 1)), sound)
prg:PRGpoly(9)
check.equal(other:PRGpoly(), 9)

-- The function may delete the program; its error is raised.
local doomed = host.new("ZylSProgram")
doomed:Create(host.null)
check.raises("here", doomed.transaction, doomed, function(p) host.delete(p) error("here") end)

-- An empty object is empty again afterwards.
local empty = host.new("ZylSProgram")
check.raises("here", empty.transaction, empty, function(p) p:Create(host.null) error("here") end)
check.equal(empty:IsValid(), false)

-- States are restored once.
local saved = host.saveState(prg)
prg:PRGpoly(7)
check.equal(host.restoreState(saved), true)
check.equal(prg:PRGpoly(), 9)
check.equal(host.restoreState(saved), false)
check.raises("a ROCAlgo has no state to save", host.saveState, host.algo {})
check.raises("expected a state from host.saveState", host.restoreState, prg)
