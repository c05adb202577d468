-- Convenience functions for scripts, built on the module's methods: iteration over keygroups and
-- zones, selection of keygroups by criteria, and transactions.
--
--   require "zyl"
--   for kg in prg:keygroups() do print(kg.index, kg:KGlowKey()) end
--   prg:select { sample = "piano", keys = { 36, 59 } }
--   prg:transaction(function() ... end)
local reference = require "zyl.reference"

local ZONES = 4

local zyl = {}

-- ---- Keygroups and zones ----

-- Returns the __index function of a handle: the methods whose first arguments are the handle's
-- indexes, and those in `own`.
local function handleMethods(kind, names, own)
  local found = own
  return function(handle, name)
    if found[name] then return found[name] end
    local method = type(name) == "string" and reference.method(name)
    local fits = false
    for _, form in ipairs(method and method.forms or {}) do
      local all = true
      for i, wanted in ipairs(names) do
        all = all and form.arguments[i] ~= nil and form.arguments[i].name == wanted
      end
      fits = fits or all
    end
    if not fits then
      if not method then local _ = handle.program[name] end  -- raises the error with a suggestion
      error(("%s is not a method of a %s"):format(name, kind), 2)
    end
    if #names == 1 then
      found[name] = function(self, ...)
        return self.program[name](self.program, self.index, ...)
      end
    else
      found[name] = function(self, ...)
        return self.program[name](self.program, self.keygroup, self.index, ...)
      end
    end
    return found[name]
  end
end

local Zone = { __name = "zone", __index = handleMethods("zone", { "KeyGroupIndex", "ZoneIndex" }, {}) }
function Zone.__tostring(zone) return ("zone %d of keygroup %d"):format(zone.index, zone.keygroup) end

local function zone(program, keygroup, index)
  return setmetatable({ program = program, keygroup = keygroup, index = index }, Zone)
end

local ofKeygroup = {}
function ofKeygroup.zone(self, index) return zone(self.program, self.index, index) end
function ofKeygroup.zones(self)
  local index = -1
  return function()
    index = index + 1
    if index < ZONES then return zone(self.program, self.index, index) end
  end
end

local Keygroup = { __name = "keygroup",
                   __index = handleMethods("keygroup", { "KeyGroupIndex" }, ofKeygroup) }
function Keygroup.__tostring(keygroup) return "keygroup " .. keygroup.index end

local function keygroup(program, index)
  return setmetatable({ program = program, index = index }, Keygroup)
end

-- Iterates over the keygroups: for kg in prg:keygroups() do ... end. A handle has the fields
-- `index` and `program`, the methods zone and zones, and every method whose first argument is
-- KeyGroupIndex, without that argument: kg:KGtune(5).
function zyl.keygroups(program)
  local index = -1
  return function()
    index = index + 1
    if index < program:PRGkeyGroups() then return keygroup(program, index) end
  end
end

-- Iterates over the zones of all keygroups. A handle has the fields `index`, `keygroup` and
-- `program`, and every method whose first arguments are KeyGroupIndex and ZoneIndex, without these:
-- zone:Zonename().
function zyl.zones(program)
  local number = -1
  return function()
    number = number + 1
    local index = number // ZONES
    if index < program:PRGkeyGroups() then return zone(program, index, number % ZONES) end
  end
end

-- ---- Selection ----

local function holdsKey(kg, key) return kg:KGlowKey() <= key and key <= kg:KGhighKey() end
local function meetsKeys(kg, keys) return kg:KGlowKey() <= keys[2] and keys[1] <= kg:KGhighKey() end
local function hasSample(kg, part)
  for each in kg:zones() do
    if each:Zonename():lower():find(part:lower(), 1, true) then return true end
  end
  return false
end

-- The criteria: type of the value, and predicate on a keygroup and the value.
local criteria = {
  key = { "number", holdsKey },
  keys = { "table", meetsKeys },
  sample = { "string", hasSample },
  where = { "function", function(kg, test) return test(kg) end },
  all = { "boolean", function(_, wanted) return wanted end },
}

local function checkWanted(program, wanted)
  if type(wanted) ~= "table" then error("select: give a table, as in prg:select{ key = 60 }", 3) end
  for name, value in pairs(wanted) do
    local criterion = criteria[name]
    if math.type(name) == "integer" then
      if math.type(value) ~= "integer" or value < 0 or value >= program:PRGkeyGroups() then
        error(("select: there is no keygroup %s"):format(value), 3)
      end
    elseif not criterion and name ~= "add" then
      error(("select: %s is not one of key, keys, sample, where, all, add"):format(name), 3)
    elseif criterion and type(value) ~= criterion[1] then
      error(("select: %s is a %s, expected a %s"):format(name, type(value), criterion[1]), 3)
    end
  end
  local keys = wanted.keys
  if keys and not (type(keys[1]) == "number" and type(keys[2]) == "number") then
    error("select: keys are the lowest and the highest one, as in keys = { 36, 59 }", 3)
  end
end

-- Selects exactly the keygroups that match all criteria:
--   1, 2, ...   one of these keygroups         key      the range contains the key
--   sample      the name of a zone's sample    keys     the range overlaps the keys from the first
--               contains this, ignoring case            to the second
--   where       the function returns true      all      true: every keygroup
-- With add = true, selected keygroups stay selected. Returns the list of matching keygroups. If the
-- function fails, nothing changes.
function zyl.select(program, wanted)
  checkWanted(program, wanted)
  local listed, asks = {}, #wanted > 0
  for _, index in ipairs(wanted) do listed[index] = true end
  for name in pairs(wanted) do asks = asks or criteria[name] ~= nil end
  local fitting = {}
  for kg in zyl.keygroups(program) do
    local fits = asks and (#wanted == 0 or listed[kg.index] == true)
    for name, criterion in pairs(criteria) do
      if fits and wanted[name] ~= nil then fits = criterion[2](kg, wanted[name]) end
    end
    if fits then fitting[#fitting + 1] = kg.index end
  end
  if not wanted.add then program:KGSelect(-1, false) end
  for _, index in ipairs(fitting) do program:KGSelect(index, true) end
  return fitting
end

-- ---- Transactions ----

-- The saved states of the running transactions, innermost last.
local open = {}

-- Rolls back transactions interrupted by Ctrl-C, for a prompt that continues after it.
function zyl.afterInterrupt()
  while #open > 0 do host.restoreState(table.remove(open)) end
end

-- Takes the results of pcall as arguments, so that a rollback needs no memory.
local function finish(state, done, ...)
  -- Abandoned coroutines may have left transactions above this one.
  repeat until table.remove(open) == state
  if not done then host.restoreState(state) end
  host.delete(state)
  if not done then error((...), 0) end
  return ...
end

-- Calls body(program) and returns its results. If it fails, restores the program and raises the
-- error again. Sound and parameters of samples are not restored.
function zyl.transaction(program, body)
  local state = host.saveState(program)
  open[#open + 1] = state
  return finish(state, pcall(body, program))
end

host.extend("ZylSProgram", {
  keygroups = zyl.keygroups, zones = zyl.zones, select = zyl.select,
  transaction = zyl.transaction,
})

return zyl
