-- Writes docs/methods.md and docs/zyl.d.lua into the folder that it is given, out of the reference:
-- zyl run tools/reference/WriteDocs.lua docs
local reference = require "zyl.reference"
local hostapi = require "zyl.hostapi"

local folder = arg[1] or error("usage: zyl run WriteDocs.lua FOLDER", 0)

local function write(name, lines)
  local file = assert(io.open(folder .. "/" .. name, "w"))
  assert(file:write(table.concat(lines, "\n"), "\n"))
  assert(file:close())
end

-- ---- docs/methods.md ----

local function cell(text) return (text:gsub("|", "\\|")) end
local function anchor(title) return (title:lower():gsub(" ", "-")) end

local function addArguments(lines, arguments)
  if #arguments > 0 then lines[#lines + 1] = "" end
  for _, argument in ipairs(arguments) do
    local remarks = reference.remarks(argument)
    lines[#lines + 1] = ("- `%s`: %s%s"):format(argument.name, reference.typeName(argument.type),
                                                remarks ~= "" and ", " .. remarks or "")
  end
end

-- Parameters that take the same arguments, a row each.
local function addTable(lines, called, methods)
  local add = function(text) lines[#lines + 1] = text end
  add("Called as `" .. called .. "`; it gives the value, and the one before when `NewValue` sets it.")
  addArguments(lines, methods[1].forms[1].arguments)
  add("")
  add("| method | meaning | stored | number |")
  add("|---|---|---|---|")
  for _, method in ipairs(methods) do
    add(('| <a id="%s"></a>`%s` | %s | %s | %s |'):format(method.name:lower(), method.name,
        cell(method.meaning), method.field.stored, method.field.number or ""))
  end
  add("")
end

local function addMethod(lines, method)
  local add = function(text) lines[#lines + 1] = text end
  add("### " .. method.name)
  add("")
  add(method.meaning)
  for _, note in ipairs(reference.notes(method)) do lines[#lines] = lines[#lines] .. " " .. note end
  for _, form in ipairs(method.forms) do
    add("")
    add("`" .. reference.signature(method.name, form) .. "`")
    addArguments(lines, form.arguments)
  end
  add("")
end

local function methodsPage()
  local lines = { "# The script methods", "", [[
Made by `./dev docs` out of the module's own declarations; `zyl help NAME` prints the same. Optional
arguments stand in brackets. Types are those of Lua: a float is written with a point (`2.0`), an
integer without. A wrong type is refused before anything happens, with the position and name of the
argument as they stand here. Methods that read a value and set it give the value before the call.
A stored range says what the record keeps: what does not fit loses its upper bits.]], "" }
  local function add(text) lines[#lines + 1] = text end
  local groups = reference.groups()
  for _, group in ipairs(groups) do
    add(("- [%s](#%s), %d"):format(group.title, anchor(group.title), #group.methods))
  end
  for _, group in ipairs(groups) do
    add("")
    add("## " .. group.title)
    add("")
    local tables, byForm = {}, {}
    for _, method in ipairs(group.methods) do
      if method.field then
        local called = reference.signature("NAME", method.forms[1])
        if not byForm[called] then
          byForm[called] = {}
          tables[#tables + 1] = called
        end
        table.insert(byForm[called], method)
      end
    end
    for _, called in ipairs(tables) do addTable(lines, called, byForm[called]) end
    for _, method in ipairs(group.methods) do
      if not method.field then addMethod(lines, method) end
    end
    if lines[#lines] == "" then lines[#lines] = nil end
  end
  return lines
end

-- ---- docs/zyl.d.lua ----

-- A declared type as the annotations know it.
local function stubType(argument)
  local type = argument.type
  if argument.null then type = type .. "|host.Null" end
  if argument.changed and argument.type ~= "table" then type = type .. "|host.Var" end
  return type
end

local function resultLine(results)
  return #results > 0 and "---@return " .. table.concat(results, "|") or nil
end

local function addMethodStub(lines, method)
  local add = function(text) lines[#lines + 1] = text end
  local function parameters(form)
    local names, repeated = {}, nil
    for _, argument in ipairs(form.arguments) do
      if argument.repeated then
        local type = stubType(argument)
        repeated = repeated and repeated .. "|" .. type or type
      else
        names[#names + 1] = argument
      end
    end
    return names, repeated
  end
  add("---" .. method.meaning)
  for _, note in ipairs(reference.notes(method)) do add("---" .. note) end
  for i = 2, #method.forms do
    local words, names, repeated = { "self: ZylSProgram" }, parameters(method.forms[i])
    for _, argument in ipairs(names) do
      words[#words + 1] = argument.name .. (argument.optional and "?" or "") .. ": " ..
                          stubType(argument)
    end
    if repeated then words[#words + 1] = "...: " .. repeated end
    local results = method.forms[i].results
    add("---@overload fun(" .. table.concat(words, ", ") .. ")" ..
        (#results > 0 and ": " .. table.concat(results, "|") or ""))
  end
  local names, repeated = parameters(method.forms[1])
  local words = {}
  for i, argument in ipairs(names) do
    words[i] = argument.name
    add(("---@param %s%s %s %s"):format(argument.name, argument.optional and "?" or "",
        stubType(argument), argument.values or ""):gsub("%s+$", ""))
  end
  if repeated then
    add("---@param ... " .. repeated)
    words[#words + 1] = "..."
  end
  lines[#lines + 1] = resultLine(method.forms[1].results)
  add(("function ZylSProgram:%s(%s) end"):format(method.name, table.concat(words, ", ")))
  add("")
end

-- A function `prefix`NAME; `self` is an argument before those of the entry.
local function addStub(lines, entry, prefix, self)
  local words, arguments = {}, table.move(entry, 1, #entry, self and 2 or 1, { self })
  lines[#lines + 1] = "---" .. entry.meaning
  for _, argument in ipairs(arguments) do
    words[#words + 1] = argument[1]:gsub("%?", "")
    lines[#lines + 1] = ("---@param %s %s %s"):format(argument[1], argument[2],
                        argument[3] or ""):gsub("%s+$", "")
  end
  lines[#lines + 1] = entry.result and "---@return " .. entry.result or nil
  lines[#lines + 1] = ("function %s%s(%s) end"):format(prefix, entry.name, table.concat(words, ", "))
  lines[#lines + 1] = ""
end

-- The file is the module zyl for language servers: it returns what require "zyl" gives.
local HEAD = [[
---@meta zyl
-- Annotations for editors with a Lua language server: completion, argument names, types. Made by
-- `./dev docs`; not a file to run.

---@class ROCAlgo
---@class CSample
---@class GOContainer
---@class host.Plain
---@class host.Null

---A value that a method can change in place.
---@class host.Var
---@field value any

---An algorithm object of the script: its functions are its script methods.
---@class host.Algo: ROCAlgo
---@field name string
---@field [string] any
local Algo = {}
---Add a named pad that holds a value of that type.
---@param name string
---@param initial integer|number|boolean|string|host.Null|ROCAlgo
---@return ROCPad
function Algo:addPad(name, initial) end

---@class ROCPad
---@field name string
---@field value any
---@field onSend fun(value: any)?
---@field onUpdate fun(value: any)?

---@class RODPad
---@field bytes string
]]

local EDITOR = [[
---A graphic object. Coordinates are pixels, y down.
---@class host.Graphic
---@field name string
---@field fill integer?
---@field text string?
---@field refreshes integer
---@field fillChanges integer
---@field template string?
local Graphic = {}
---@param name string
---@return host.Graphic?
function Graphic:child(name) end
---@return integer left, integer top, integer right, integer bottom
function Graphic:bounds() end
---@return integer x, integer y
function Graphic:origin() end

---@class host.Cell
---@field value integer
---@field object any
---@field go host.Graphic?

---@class host.List
local List = {}
---@return integer
function List:rowCount() end
---@param row integer
---@param column integer
---@return host.Cell?
function List:cell(row, column) end
function List:clear() end

---@class host.Editor: ROCAlgo
---@field list host.List

---A picture to draw on. Coordinates are pixels, y down; colours are 0xRRGGBB.
---@class host.Picture
local Picture = {}
---@param x number
---@param y number
---@param width number
---@param height number
---@param colour integer
function Picture:rect(x, y, width, height, colour) end
---@param points number[][] pairs { x, y }
---@param width number
---@param colour integer
function Picture:line(points, width, colour) end
---@param points number[][] pairs { x, y }
---@param colour integer
function Picture:polygon(points, colour) end
---@param x number
---@param baseline number
---@param text string
---@param size number font size in pixels
---@param colour integer
---@param anchor? "start"|"middle"|"end" what x is of the text; "start" without it
function Picture:text(x, baseline, text, size, colour, anchor) end
---Write the file, whole or not at all. Nothing can be drawn afterwards.
function Picture:write() end
]]

local SUGAR = [[
-- ---- With require "zyl" ----

---@class zyl.Zone one zone; has the methods that begin with KeyGroupIndex and ZoneIndex
---@field program ZylSProgram
---@field keygroup integer
---@field index integer
---@field [string] function

---@class zyl.Keygroup one keygroup; has the methods that begin with KeyGroupIndex
---@field program ZylSProgram
---@field index integer
---@field zone fun(self: zyl.Keygroup, index: integer): zyl.Zone
---@field zones fun(self: zyl.Keygroup): fun(): zyl.Zone?
---@field [string] function

---@class zyl.Wanted
---@field [integer] integer one of these keygroups
---@field key? integer its range holds the key
---@field keys? integer[] its range meets the keys from the first to the second
---@field sample? string a zone's sample has this in its name
---@field where? fun(keygroup: zyl.Keygroup): boolean
---@field all? boolean
---@field add? boolean keep those that are selected

local zyl = {}
]]

local function stubs()
  local lines = { HEAD }
  lines[#lines + 1] = EDITOR
  lines[#lines + 1] = "---@class ZylSProgram: ROCAlgo\nlocal ZylSProgram = {}\n"
  for _, method in ipairs(reference.methods()) do addMethodStub(lines, method) end
  lines[#lines + 1] = SUGAR
  for _, entry in ipairs(require "zyl.zylapi") do
    addStub(lines, entry, "ZylSProgram:")
    addStub(lines, entry, "zyl.", { "program", "ZylSProgram" })
  end
  lines[#lines + 1] = [[
---@class host
---@field null host.Null an object that is null
---@field sampleRate number the processing rate in Hz, to read and to set
---@field module string the path of the module's library
host = {}
]]
  for _, entry in ipairs(hostapi) do
    addStub(lines, entry, "host.")
  end
  lines[#lines + 1] = [[
---Print help on a method, a function of host, or all methods with that part of a name.
---@param what? string|function
function help(what) end

return zyl]]
  return lines
end

write("methods.md", methodsPage())
write("zyl.d.lua", stubs())
