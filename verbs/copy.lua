-- zyl copy: copies keygroups from one program to another.
local cli = require "cli"
local journal = require "journal"
local json = require "json"
local programs = require "programs"
local selection = require "selection"
local text = require "text"

local options, words = cli.parse {
  verb = "copy", folders = "programs", mixed = true, repeats = true, operands = "SRC LIST DEST|FOLDER…",
  about = "Copies keygroups of program SRC, with their zones, to the programs DEST. LIST is all,\n"
       .. "selected, or numbers from 1, as in 3-5,8.",
  options = {
    { name = "before", kind = "integer", value = "N", low = 1, high = 65536,
      help = "insert before keygroup N of DEST (default: at its end)" },
    { name = "output", short = "o", kind = "text", value = "FILE", help = "write to FILE instead of DEST" },
    { name = "dry-run", help = "print the keygroups, but write nothing" },
    { name = "json", help = "print a JSON list, one object per DEST" },
  },
  more = "SRC is not changed. DEST may be SRC.",
}
if #words < 3 then cli.usage("give SRC, LIST and DEST") end
local source, list = words[1], words[2]
local targets = cli.withoutFolders(table.move(words, 3, #words, 1, {}))
local chosen = selection.keygroups("LIST", list)
if options.output then
  if #targets > 1 then cli.usage("-o FILE takes one DEST") end
  local obstacle = programs.whyNotReplaceable(options.output)
  if obstacle then cli.usage(options.output .. ": " .. obstacle) end
end

-- Copies the keygroups to a program; returns a list of { from, to }, numbers from 1.
local function copy(from, target)
  local to = programs.read(target)
  local count = to:PRGkeyGroups()
  local place = options.before and options.before - 1 or count
  if place > count then error(("--before %d: keygroup %d is outside 1 to %d"):format(place + 1, place + 1, count), 0) end
  local rows = {}
  for i, k in ipairs(chosen(from)) do
    programs.insert(to, place + i - 1, from, k)
    rows[i] = { from = k + 1, to = place + i }
  end
  if #rows == 0 then error(source .. " has no keygroups", 0) end
  local write = options.output and programs.writeNamed or programs.write
  if not options["dry-run"] and not write(to, options.output or target) then error("could not be written", 0) end
  return rows
end

local function shown(file, rows)
  local first, last = rows[1].to, rows[#rows].to
  return ("%s: %d keygroup%s %s, now %s\n"):format(text.printable(file), #rows, #rows == 1 and "" or "s",
         options["dry-run"] and "would be copied" or "copied", first == last and last or first .. "-" .. last)
end

local function record(file, rows, failure)
  local copied = {}
  for i, row in ipairs(rows or {}) do copied[i] = json.object("from", row.from, "to", row.to) end
  return json.object("file", file, "error", failure, "source", source, "keygroups", json.list(copied),
                     "written", rows ~= nil and not options["dry-run"])
end

if not options.output and not options["dry-run"] then journal.expect(targets) end
local from, unreadable = programs.open(source)
local printer = cli.printer(options.json)
for i, target in ipairs(targets) do
  local file, rows, failure = options.output or target, nil, unreadable and source .. ": " .. unreadable
  if from then rows, failure = cli.try(copy, from, target) end
  if failure then cli.failed(file, failure .. ": not changed") end
  printer.result(i, options.json and record(file, rows, failure) or not options.json and rows and shown(file, rows) or nil)
end
printer.close()
cli.finish()
