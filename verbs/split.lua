-- zyl split: divides programs by key.
local cli = require "cli"
local fields = require "fields"
local journal = require "journal"
local json = require "json"
local notes = require "notes"
local programs = require "programs"
local progress = require "progress"
local text = require "text"
local values = require "values"

local MOST_KEY, MOST_NAME = 127, 12

local options, files = cli.parse {
  verb = "split", notes = true, folders = "programs",
  about = "Divides programs by key into PROGRAM-1, PROGRAM-2 and so on. A keygroup that plays keys of\n"
       .. "several parts is in each of them, with its range cut to the part.",
  options = {
    { name = "at", kind = "text", value = "KEYS",
      help = "the lowest keys of the second part and further ones: C3, 60, or C2,C4" },
    { name = "ranges", kind = "text", value = "LIST", help = "the ranges of the parts: C1-B2,C3-C5 or 24-47,48-72" },
    { name = "output", short = "o", kind = "text", value = "BASE",
      help = "write to BASE-1, BASE-2 and so on (default: PROGRAM without its\nextension)" },
    { name = "force", help = "replace existing programs" },
    { name = "dry-run", help = "print the parts, but write nothing" },
    { name = "json", help = "print a JSON list, one object per program" },
  },
  more = "The program itself is not changed. Either all of its parts are written, or none.",
}
if (options.at == nil) == (options.ranges == nil) then cli.usage("give either --at KEYS or --ranges LIST") end
if options.output and #files > 1 then cli.usage("-o BASE takes one PROGRAM") end

local function words(list) return (list .. ","):gmatch("%s*(.-)%s*,") end

-- Parses "C-2-B2": the dash between the notes is any one with a key on both sides.
local function rangeOf(word)
  for dash in word:gmatch("()%-") do
    local low, high = notes.key(word:sub(1, dash - 1)), notes.key(word:sub(dash + 1))
    if low and high then return low, high end
  end
  local key = notes.key(word)
  return key, key
end

local ranges = {}
if options.at then
  local from = 0
  for word in words(options.at) do
    local key = notes.key(word)
    if not key then cli.usage("--at: '" .. word .. "' is not " .. notes.accepted()) end
    if key <= from then cli.usage("--at: " .. word .. ": keys must rise, from 1 on") end
    ranges[#ranges + 1], from = { low = from, high = key - 1 }, key
  end
  ranges[#ranges + 1] = { low = from, high = MOST_KEY }
else
  for word in words(options.ranges) do
    local low, high = rangeOf(word)
    if not low or low > high then cli.usage("--ranges: '" .. word .. "' is not a range such as C1-B2 or 24-47") end
    ranges[#ranges + 1] = { low = low, high = high }
  end
end

-- The program's part within a range; nil if it has no keygroup there. Also returns the number of
-- keygroups whose range was cut.
local function part(path, range, number)
  local program, cut = programs.read(path), 0
  for k = program:PRGkeyGroups() - 1, 0, -1 do
    local low, high = program:KGlowKey(k), program:KGhighKey(k)
    if high < range.low or low > range.high then
      program:KGDelete(k)
    elseif low < range.low or high > range.high then
      program:KGlowKey(k, math.max(low, range.low))
      program:KGhighKey(k, math.min(high, range.high))
      cut = cut + 1
    end
  end
  if program:PRGkeyGroups() == 0 then return nil end
  local suffix, name = " " .. number, program:PRGname()
  if #name + #suffix > MOST_NAME then name = name:sub(1, (utf8.offset(name, 0, MOST_NAME - #suffix + 1) or MOST_NAME - #suffix + 1) - 1) end
  if not values.whyNot(fields.find("PRGname"), name .. suffix) then program:PRGname(name .. suffix) end
  return program, cut
end

local function split(path)
  local stem, extension = path:match("^(.*[^/])(%.[^./]*)$")
  stem, extension = options.output or stem or path, extension or ""
  local parts = {}
  for i, range in ipairs(ranges) do
    local program, cut = part(path, range, i)
    local target = ("%s-%d%s"):format(stem, i, extension)
    if program then
      local obstacle = programs.whyNotReplaceable(target)
                       or not options.force and host.fileType(target) and "exists (see --force)"
      if obstacle then error(target .. ": " .. obstacle, 0) end
      parts[#parts + 1] = { low = range.low, high = range.high, program = program, path = target, cut = cut,
                            keygroups = program:PRGkeyGroups() }
    else
      cli.note(path, "no keygroup plays " .. notes.range(range.low, range.high))
    end
  end
  if #parts == 0 then error("no keygroup plays these keys", 0) end
  if not options["dry-run"] then
    local targets = {}
    for i, it in ipairs(parts) do targets[i] = it.path end
    journal.expect(targets)
    journal.all(function()
      for _, it in ipairs(parts) do
        if not programs.write(it.program, it.path) then error(it.path .. ": could not be written", 0) end
      end
    end)
  end
  return parts
end

local function shown(parts)
  local rows = { { "keys", "keygroups", "cut", "program" } }
  for i, it in ipairs(parts) do
    rows[i + 1] = { notes.range(it.low, it.high), tostring(it.keygroups), tostring(it.cut), text.printable(it.path) }
  end
  return text.columns(rows, { [1] = true, [4] = true })
end

local function record(path, parts, failure)
  local list = {}
  for i, it in ipairs(parts or {}) do
    list[i] = json.object("file", it.path, "low_key", it.low, "high_key", it.high, "keygroups", it.keygroups, "cut", it.cut)
  end
  return json.object("file", path, "error", failure, "parts", json.list(list),
                     "written", parts ~= nil and not options["dry-run"])
end

local printer = cli.printer(options.json)
for i, path in ipairs(files) do
  progress.show((i - 1) / #files, path)
  local parts, failure = cli.try(split, path)
  if failure then cli.failed(path, failure .. ": nothing was written") end
  printer.result(i, options.json and record(path, parts, failure) or not options.json and parts and shown(parts) or nil)
end
printer.close()
cli.finish()
