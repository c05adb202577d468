-- zyl merge: joins programs into one.
local cli = require "cli"
local fields = require "fields"
local json = require "json"
local programs = require "programs"
local text = require "text"
local values = require "values"

local MOST_NAMES = 3  -- of fields in a note

local options, words = cli.parse {
  verb = "merge", repeats = true, mixed = true, folders = "programs", operands = "PROGRAM|FOLDER… -o OUT",
  about = "Joins programs into one: the header of the first, and the keygroups of all, in order.",
  options = {
    { name = "output", short = "o", kind = "text", value = "OUT", help = "the program file to write" },
    { name = "name", kind = "text", value = "NAME",
      help = "name of the program, up to 12 bytes (default: that of the first)" },
    { name = "dry-run", help = "print the keygroups, but write nothing" },
    { name = "json", help = "print a JSON list, one object per program" },
  },
  more = "A note names fields of the headers that differ from the first. Keygroups over the same keys sound\n"
      .. "together. Mute groups of different programs with the same number mute each other.",
}
if not options.output then cli.usage("-o OUT is missing") end
local given = {}
for _, path in ipairs(words) do
  local real = host.absolutePath(path) or path
  if given[real] then cli.usage(path .. " is given twice: 'zyl copy' duplicates keygroups") end
  given[real] = true
end
local files = cli.withoutFolders(words)
if #files < 2 then cli.usage("give at least two programs") end
local obstacle = programs.whyNotReplaceable(options.output)
if obstacle then cli.usage(options.output .. ": " .. obstacle) end
if options.name then
  obstacle = values.whyNot(fields.find("PRGname"), options.name)
  if obstacle then cli.usage(obstacle) end
end

-- Prints a note with the header fields that differ from the first program.
local function compareHeaders(first, other, path)
  local names = {}
  for _, field in ipairs(fields.all()) do
    if field.family == "PRG" and field.method ~= "PRGname"
       and fields.read(first, field) ~= fields.read(other, field) then
      names[#names + 1] = field.name
    end
  end
  if #names > 0 then
    cli.note(path, ("%d header field%s not used, the first program has other values: %s%s"):format(#names,
             #names == 1 and " is" or "s are", table.concat(names, ", ", 1, math.min(#names, MOST_NAMES)),
             #names > MOST_NAMES and ", ..." or ""))
  end
end

local function muteGroups(program)
  local groups = {}
  for k = 0, program:PRGkeyGroups() - 1 do
    local group = program:KGmuteGroup(k)
    if group > 0 then groups[group] = true end
  end
  return groups
end

local function merge()
  local merged, rows, used = nil, {}, {}
  for i, path in ipairs(files) do
    local program, reason = programs.open(path)
    if not program then error(path .. ": " .. reason, 0) end
    local from, count = merged and merged:PRGkeyGroups() or 0, program:PRGkeyGroups()
    for group in pairs(muteGroups(program)) do
      if used[group] then cli.note(path, ("mute group %d is also used by %s"):format(group, used[group])) end
      used[group] = used[group] or path
    end
    if i == 1 then
      merged = program
    else
      compareHeaders(merged, program, path)
      programs.append(merged, program, 0, count - 1)
      host.delete(program)
    end
    rows[i] = { path = path, from = from + 1, to = from + count, count = count }
  end
  if options.name then merged:PRGname(options.name) end
  if not options["dry-run"] and not programs.writeNamed(merged, options.output) then error("could not be written", 0) end
  return rows
end

local rows, failure = cli.try(merge)
if failure then cli.failed(options.output, failure .. ": not written") end
if options.json then
  local printer = cli.printer(true)
  for i, path in ipairs(files) do
    local row = rows and rows[i] or { count = 0 }
    printer.result(i, json.object("file", path, "error", failure, "first_keygroup",
      row.count > 0 and row.from or json.null, "keygroups", row.count, "written",
      not failure and not options["dry-run"] and options.output or json.null))
  end
  printer.close()
elseif rows then
  local lines, total = { { "keygroups", "from" } }, 0
  for i, row in ipairs(rows) do
    lines[i + 1] = { row.count > 0 and row.from .. "-" .. row.to or "none", text.printable(row.path) }
    total = row.to
  end
  io.write(text.columns(lines, { true, true }), ("%d keygroups %s %s\n"):format(total,
           options["dry-run"] and "for" or "in", text.printable(options.output)))
end
cli.finish()
