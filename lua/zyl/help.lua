-- Help on methods, for `zyl help` and the function help(...).
local reference = require "zyl.reference"

local WIDTH = 100  -- columns of a line of text

-- Wraps `text` to lines of at most WIDTH characters, each starting with `indent`.
local function wrapped(text, indent)
  local lines, line = {}, indent
  for word in text:gmatch("%S+") do
    if #line > #indent and #line + 1 + #word > WIDTH then
      lines[#lines + 1] = line
      line = indent
    end
    line = line .. (#line > #indent and " " or "") .. word
  end
  lines[#lines + 1] = line
  return table.concat(lines, "\n") .. "\n"
end

local function argumentLines(arguments)
  local names, types = 0, 0
  for _, argument in ipairs(arguments) do
    names = math.max(names, #argument.name)
    types = math.max(types, #reference.typeName(argument.type))
  end
  local lines = {}
  for i, argument in ipairs(arguments) do
    local form = ("    %%-%ds  %%-%ds  %%s"):format(names, types)
    lines[i] = form:format(argument.name, reference.typeName(argument.type),
                           reference.remarks(argument)):gsub("%s+$", "") .. "\n"
  end
  return table.concat(lines)
end

local function methodText(method)
  local parts = {}
  for _, form in ipairs(method.forms) do
    parts[#parts + 1] = reference.signature(method.name, form) .. "\n" ..
                        argumentLines(form.arguments)
  end
  parts[#parts + 1] = wrapped(method.meaning, "  ")
  for _, note in ipairs(reference.notes(method)) do parts[#parts + 1] = wrapped(note, "  ") end
  return table.concat(parts)
end

-- The help text of an entry of zyl.hostapi or zyl.zylapi.
local function entryText(entry, prefix)
  local arguments = {}
  for i, argument in ipairs(entry) do
    local name, optional = argument[1]:match("^(%w+)(%??)$")
    arguments[i] = { name = name, type = argument[2], values = argument[3],
                     optional = optional == "?" }
  end
  local form = { arguments = arguments, results = { entry.result } }
  return reference.signature(prefix .. entry.name, form) .. "\n" .. argumentLines(arguments) ..
         wrapped(entry.meaning, "  ")
end

-- The help text of a function of require "zyl": NAME or zyl.NAME.
local function zylText(name)
  local bare = name:match("^zyl%.([%w_]+)$") or name
  for _, entry in ipairs(require "zyl.zylapi") do
    if entry.name == bare then
      return entryText(entry, "prg:") .. wrapped('Requires require "zyl".', "  ")
    end
  end
end

local function list(methods)
  local width, lines = 0, {}
  for _, method in ipairs(methods) do width = math.max(width, #method.name) end
  for i, method in ipairs(methods) do
    lines[i] = ("%-" .. width .. "s  %s\n"):format(method.name, method.meaning)
  end
  return table.concat(lines)
end

local function overview()
  local lines = { [[
help NAME            describe a method: arguments, result, meaning
help PART            list the methods with PART in their names
help --search WORD   list the methods with WORD in name, arguments or meaning

In scripts: help("KGSort"), help(prg.KGSort), help(host.pump). For require "zyl": help("zyl.select"),
also keygroups, zones and transaction. The groups of methods, with an example of each:
]] }
  for _, group in ipairs(reference.groups()) do
    lines[#lines + 1] = ("  %-26s %3d  %s\n"):format(group.title, #group.methods,
                                                     group.methods[1].name)
  end
  return table.concat(lines)
end

local help = {}

-- The help text for a name or part of a name; nil and the reason if nothing matches.
function help.named(name)
  local method = reference.method(name)
  if method then return methodText(method) end
  for _, entry in ipairs(require "zyl.hostapi") do
    if name == "host." .. entry.name then return entryText(entry, "host.") end
  end
  local ofZyl = zylText(name)
  if ofZyl then return ofZyl end
  local fitting, part = {}, name:lower()
  for _, candidate in ipairs(reference.methods()) do
    local whole = candidate.name:lower()
    if whole == part then return methodText(candidate) end
    if whole:find(part, 1, true) then fitting[#fitting + 1] = candidate end
  end
  if #fitting == 1 then return methodText(fitting[1]) end
  if #fitting > 1 then return list(fitting) end
  local known = host.methods()
  for _, entry in ipairs(require "zyl.hostapi") do known[#known + 1] = "host." .. entry.name end
  for _, entry in ipairs(require "zyl.zylapi") do known[#known + 1] = entry.name end
  return nil, ('no method "%s"%s'):format(name, host.suggestion(name, known))
end

-- Lists the methods that contain all words in name, arguments or meaning.
function help.search(words)
  local found = {}
  for _, method in ipairs(reference.methods()) do
    local text = { method.name, method.meaning }
    for _, form in ipairs(method.forms) do
      for _, argument in ipairs(form.arguments) do
        text[#text + 1] = argument.name
        text[#text + 1] = argument.values
      end
    end
    local all, whole = true, table.concat(text, "\n"):lower()
    for _, word in ipairs(words) do all = all and whole:find(word:lower(), 1, true) ~= nil end
    if all then found[#found + 1] = method end
  end
  for _, entry in ipairs(require "zyl.zylapi") do
    local whole, all = ("zyl.%s\n%s"):format(entry.name, entry.meaning):lower(), true
    for _, word in ipairs(words) do all = all and whole:find(word:lower(), 1, true) ~= nil end
    if all then found[#found + 1] = { name = "zyl." .. entry.name, meaning = entry.meaning } end
  end
  if #found > 0 then return list(found) end
  return nil, 'nothing matches "' .. table.concat(words, '" and "') .. '"'
end

help.overview = overview

-- help(), help("KGSort"), help(prg.KGSort): prints.
return setmetatable(help, { __call = function(_, what)
  if what == nil or type(what) == "userdata" then
    io.write(overview())
    return
  end
  local name = what
  if type(what) == "function" then name = reference.nameOf(what) end
  if type(name) ~= "string" then
    error("help: give a method, as in help(prg.KGSort), or part of a name", 0)
  end
  local text, reason = help.named(name)
  io.write(text or reason .. "\n")
end })
