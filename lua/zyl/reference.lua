-- The reference of the module's script methods, used by help and to generate the documentation. The
-- methods come from methods.lua, which the build generates from the module's declarations;
-- tools/reference/WriteMethods.cpp describes its format.
local reference = {}

local function load()
  local folder = host.module:match("^(.*)/") or "."
  local tried = {}
  for _, place in ipairs { "/methods.lua", "/../share/zyl/methods.lua",
                           "/../../share/zyl/methods.lua" } do
    local chunk, reason = loadfile(folder .. place, "t", {})
    if chunk then return chunk() end
    tried[#tried + 1] = reason
  end
  error("the method reference of this module was not found:\n  " .. table.concat(tried, "\n  "), 0)
end

-- Groups in the order of the documentation. A method belongs to the first group with a matching
-- pattern, or to the first group if none matches.
local groups = {
  { title = "Program object and files", patterns = {} },
  { title = "Keygroup list", patterns = { "^KGCreate$", "^KGDelete$", "^KGMove$", "^KGSort$",
                                          "^KGFindByKey$", "^KGSelect$" } },
  { title = "Parameters by number", patterns = { "IntValue$", "StringValue$",
                                                 "^ModulationSource$" } },
  { title = "Program parameters", patterns = { "^PRG" } },
  { title = "Keygroup parameters", patterns = { "^KG" } },
  { title = "Zone parameters", patterns = { "^Zone" } },
  { title = "Organ parameters", patterns = { "^Tolmo" } },
  { title = "Pitch tracks", patterns = { "^Calc", "^Clear", "^PitchData", "PitchData$" } },
  { title = "Data pads", patterns = { "Pad$", "PadData$" } },
  { title = "Samples", patterns = { "^Sample", "TempSample$", "^GetChannelCount$" } },
  { title = "Editor", patterns = { "^List", "^Draw", "^UpdateKeyboard" } },
}

local function groupOf(name)
  for _, group in ipairs(groups) do
    for _, pattern in ipairs(group.patterns) do
      if name:find(pattern) then return group end
    end
  end
  return groups[1]
end

local methods, byName

-- All methods in table order: the rows of methods.lua.
function reference.methods()
  if not methods then
    methods, byName = load(), {}
    for _, method in ipairs(methods) do byName[method.name] = method end
  end
  return methods
end

function reference.method(name)
  reference.methods()
  return byName[name]
end

-- The groups that have methods, each with title and methods.
function reference.groups()
  local list = {}
  for _, group in ipairs(groups) do
    local members = {}
    for _, method in ipairs(reference.methods()) do
      if groupOf(method.name) == group then members[#members + 1] = method end
    end
    if #members > 0 then list[#list + 1] = { title = group.title, methods = members } end
  end
  return list
end

-- The name of the method, or of the function of host or of require "zyl", that `f` is; nil for any
-- other function.
function reference.nameOf(f)
  local object = host.new("ZylSProgram")
  for _, name in ipairs(host.methods()) do
    if object[name] == f then return name end
  end
  for name, member in pairs(host) do
    if member == f then return "host." .. name end
  end
  for name, member in pairs(package.loaded.zyl or {}) do
    if member == f then return "zyl." .. name end
  end
end

-- The name of a declared type in scripts.
function reference.typeName(type) return type == "number" and "float" or type end

local function resultText(form)
  local names = {}
  for _, result in ipairs(form.results) do names[#names + 1] = reference.typeName(result) end
  return #names > 0 and " -> " .. table.concat(names, " or ") or ""
end

-- "KGtune(KeyGroupIndex, [NewValue]) -> integer"
function reference.signature(name, form)
  local words, repeated = {}, false
  for _, argument in ipairs(form.arguments) do
    words[#words + 1] = argument.optional and "[" .. argument.name .. "]" or argument.name
    repeated = repeated or argument.repeated
  end
  if repeated then words[#words + 1] = "..." end
  return name .. "(" .. table.concat(words, ", ") .. ")" .. resultText(form)
end

-- Everything about an argument except its name and type.
function reference.remarks(argument)
  local words = {}
  if argument.optional then words[#words + 1] = "optional" end
  if argument.repeated then words[#words + 1] = "repeated" end
  if argument.null then words[#words + 1] = "host.null is allowed" end
  if argument.changed then
    words[#words + 1] = argument.type == "table" and "is filled" or "a host.var is updated"
  end
  if argument.values then words[#words + 1] = argument.values end
  return table.concat(words, "; ")
end

-- Everything about a method except its meaning and arguments, one sentence each.
function reference.notes(method)
  local notes = {}
  if method.field then
    local number = method.field.number
    notes[#notes + 1] = "Returns the value; with NewValue, sets it and returns the previous value."
    notes[#notes + 1] = "Stored as " .. method.field.stored ..
                        (number and "; parameter number " .. number or "") .. "."
  end
  local needy = {}
  for _, form in ipairs(method.forms) do
    if form.program then needy[#needy + 1] = form end
  end
  if #needy == #method.forms then
    notes[#notes + 1] = "Requires a program (Create, Read or Find)."
  elseif #needy > 0 then
    notes[#notes + 1] = "With " .. needy[1].arguments[1].name ..
                        ", requires a program (Create, Read or Find)."
  end
  return notes
end

return reference
