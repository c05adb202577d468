-- The method reference against the module: every method is listed, and each declared argument is
-- refused by name, type and position when it has a wrong type.
local check = dofile(arg[0]:match("^(.*/)") .. "Check.lua")
local reference = require "zyl.reference"

local names = host.methods()
check.equal(#reference.methods(), #names)
local grouped = 0
for i, method in ipairs(reference.methods()) do
  check.equal(method.name, names[i], "table order")
  check.equal(method.meaning:match("%S.*%.$") ~= nil, true, method.name .. " has a meaning")
end
for _, group in ipairs(reference.groups()) do grouped = grouped + #group.methods end
check.equal(grouped, #names, "methods in groups")

local inApi = {}
for _, entry in ipairs(require "zyl.hostapi") do inApi[entry.name] = true end
for name, member in pairs(host) do
  if type(member) == "function" then
    check.equal(inApi[name], true, "host." .. name .. " in lua/zyl/hostapi.lua")
  end
end

-- ---- Wrong types ----

local path = os.tmpname()
os.remove(path)
path = path .. ".wav"  -- a file that does not exist
local program = host.new("ZylSProgram")
program:Create(host.null)
local other = host.new("ZylSProgram")
other:Create(host.null)
local sample = program:CreateTempSample(path, 0)

local CODES = { integer = 1, boolean = 4, number = 8, string = 5, table = 10 }
local function good(argument)
  local values = { integer = 0, boolean = true, number = 0.5, string = path, table = {},
                   CSample = sample, ROCAlgo = other, RODPad = host.pad(),
                   GOContainer = host.keyboard(), any = true }
  local value = values[argument.type]
  if argument.changed and argument.type ~= "table" then return host.var(value) end
  return value
end
-- A value of none of these types.
local function wrong(types)
  for _, candidate in ipairs { { "boolean", true }, { "table", {} }, { "integer", 0 },
                               { "number", 0.5 } } do
    if not types[candidate[1]] then return candidate[2] end
  end
end

-- Methods that report wrong arguments with their own text.
local OWN_TEXT = { ModulationSource = true }

local function expectRefused(method, arguments, i, value)
  local list = {}
  for j, argument in ipairs(arguments) do list[j] = good(argument) end
  list[i] = value
  local done, failure = pcall(program[method.name], program, table.unpack(list))
  local what = ("%s, argument %d"):format(method.name, i)
  check.equal(done, false, what .. " refused")
  check.equal(type(failure), "table", what .. ": " .. tostring(failure))
  check.equal(failure.method, "ZylSProgram::" .. method.name, what)
  check.equal(failure.position, i, what .. ", position")
  return failure, what
end

local refused = 0
local function try(method, form, i, otherTypes)
  local argument = form.arguments[i]
  -- A pad accepts any value as a parameter number.
  if argument.type == "any" or argument.name == "ParamNumber" then return end
  local types = { [argument.type] = true }
  for _, name in ipairs(otherTypes) do types[name] = true end
  local failure, what = expectRefused(method, form.arguments, i, wrong(types))
  refused = refused + 1
  if OWN_TEXT[method.name] then
    check.equal(failure.kind, "ArgUser", what)
    return
  end
  check.equal(failure.kind, "ArgType", what)
  check.equal(failure.argument, argument.name, what)
  check.equal(failure.expected, CODES[argument.type] or 11, what)
  if CODES[argument.type] then return end
  failure = expectRefused(method, form.arguments, i, host.object("Gadget"))
  check.equal(failure.kind, "ArgPType", what)
  check.equal(failure.required, argument.type, what)
end

for _, method in ipairs(reference.methods()) do
  for f, form in ipairs(method.forms) do
    -- A wrong first argument picks the last form.
    local firstTypes = {}
    for i, each in ipairs(method.forms) do
      firstTypes[i] = each.arguments[1] and each.arguments[1].type
    end
    for i in ipairs(form.arguments) do
      if i > 1 or f == #method.forms then try(method, form, i, i == 1 and firstTypes or {}) end
    end
  end
end
check.equal(refused > 450, true, refused .. " arguments")
check.equal(program:IsValid() and program:PRGkeyGroups(), 1, "refused calls change nothing")
check.equal(program:SampleLock(sample), false)
