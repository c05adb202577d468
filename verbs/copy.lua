-- zyl copy: copies keygroups from one program to another.
local cli = require "cli"
local json = require "json"
local programs = require "programs"
local selection = require "selection"
local text = require "text"

local options, words = cli.parse {
  verb = "copy", repeats = true, operands = "SRC LIST DEST",
  about = "Copies keygroups of program SRC, with their zones, to program DEST. LIST is all, selected, or\n"
       .. "numbers from 1, as in 3-5,8.",
  options = {
    { name = "before", kind = "integer", value = "N", low = 1, high = 65536,
      help = "insert before keygroup N of DEST (default: at its end)" },
    { name = "output", short = "o", kind = "text", value = "FILE", help = "write to FILE instead of DEST" },
    { name = "dry-run", help = "print the keygroups, but write nothing" },
    { name = "json", help = "print a JSON object" },
  },
  more = "SRC is not changed. SRC and DEST may be the same program.",
}
if #words ~= 3 then cli.usage("give SRC, LIST and DEST") end
local source, list, target = table.unpack(words)
local chosen = selection.keygroups("LIST", list)
local output = options.output or target
local obstacle = options.output and programs.whyNotReplaceable(output)
if obstacle then cli.usage(output .. ": " .. obstacle) end

local function open(path)
  local program, reason = programs.open(path)
  return program or error(path .. ": " .. reason, 0)
end

local function copy()
  local from, to = open(source), open(target)
  local count = to:PRGkeyGroups()
  local place = options.before and options.before - 1 or count
  if place > count then error(("--before %d: keygroup %d is outside 1 to %d"):format(place + 1, place + 1, count), 0) end
  local rows = {}
  for i, k in ipairs(chosen(from)) do
    programs.insert(to, place + i - 1, from, k)
    rows[i] = { from = k + 1, to = place + i }
  end
  if #rows == 0 then error(source .. " has no keygroups", 0) end
  if not options["dry-run"] and not programs.write(to, output) then error("could not be written", 0) end
  return rows
end

local rows, failure = cli.try(copy)
if failure then cli.failed(output, failure .. ": not changed") end
if options.json then
  local pairs_ = {}
  for i, row in ipairs(rows or {}) do pairs_[i] = json.object("from", row.from, "to", row.to) end
  io.write(json.encode(json.object("source", source, "file", output, "error", failure, "keygroups",
           json.list(pairs_), "written", rows ~= nil and not options["dry-run"])), "\n")
elseif rows then
  local last = rows[#rows].to
  io.write(("%s: %d keygroup%s %s, now %s\n"):format(text.printable(output), #rows, #rows == 1 and "" or "s",
           options["dry-run"] and "would be copied" or "copied",
           rows[1].to == last and last or rows[1].to .. "-" .. last))
end
cli.finish()
